#!/usr/bin/env bash
# The bundle's Turtle validates against the LV2 schemas, and against nothing else: the system
# LV2 folder also holds other projects' plug-ins, whose own mistakes are not ours to report.
# The schemas are the Turtle files Debian's lv2-dev package installs.
#   host_validate.sh BUNDLE_DIR
set -euo pipefail
bundle=$1
if ! command -v sord_validate >/dev/null; then
  echo "SKIP: sord_validate (Debian package sordi) is missing"
  exit 77
fi

mapfile -t schemas < <(dpkg-query -L lv2-dev 2>/dev/null | grep -E '^/usr/lib/lv2/[^/]+/[^/]+\.ttl$')
if [ ${#schemas[@]} -eq 0 ]; then
  echo "SKIP: no LV2 schemas installed (Debian package lv2-dev)"
  exit 77
fi
shopt -s nullglob
own=("$bundle"/*.ttl)
if [ ${#own[@]} -eq 0 ]; then
  echo "FAIL: no Turtle files in $bundle"
  exit 1
fi

report=$(sord_validate "${schemas[@]}" "${own[@]}" 2>&1) || true
echo "$report" | tail -n 20
# sord_validate skips a file it cannot read or parse with a message of its own, not an error.
if ! grep -q "^Found 0 errors" <<<"$report" || grep -qE "^(Skipping file|error reading)" <<<"$report"; then
  echo "FAIL: sord_validate found errors in $bundle (checked against ${#schemas[@]} schema files)"
  exit 1
fi
echo "$bundle validates against ${#schemas[@]} LV2 schema files"
