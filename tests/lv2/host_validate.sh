#!/usr/bin/env bash
# The bundle's Turtle validates against the LV2 schemas shipped with lv2-dev.
#   host_validate.sh BUNDLE_DIR
set -u
bundle=$1
if ! command -v sord_validate >/dev/null; then
  echo "SKIP: sord_validate (Debian package sordi) is missing"
  exit 77
fi
shopt -s nullglob
schemas=(/usr/lib/lv2/*/*.ttl)
if [ ${#schemas[@]} -eq 0 ]; then
  echo "SKIP: no LV2 schemas under /usr/lib/lv2 (Debian package lv2-dev)"
  exit 77
fi

report=$(sord_validate "${schemas[@]}" "$bundle"/*.ttl 2>&1)
echo "$report" | tail -n 20
if ! echo "$report" | grep -q "^Found 0 errors"; then
  echo "FAIL: sord_validate found errors in $bundle"
  exit 1
fi
