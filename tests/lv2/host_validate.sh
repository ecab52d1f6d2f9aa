#!/usr/bin/env bash
# The bundle's Turtle validates against the LV2 schemas, and against nothing else: the system
# LV2 folder also holds other projects' plug-ins, whose own mistakes are not ours to report.
# The schemas are the bundles whose manifest gives a resource the type lv2:Specification or
# owl:Ontology (lv2-dev installs them into /usr/lib/lv2; LV2_SCHEMA_DIR names another folder).
#   host_validate.sh BUNDLE_DIR
set -euo pipefail
bundle=$1
schema_dir=${LV2_SCHEMA_DIR:-/usr/lib/lv2}
for tool in sord_validate sordi; do
  if ! command -v $tool >/dev/null; then
    echo "SKIP: $tool (Debian package sordi) is missing"
    exit 77
  fi
done

rdf_type='<http://www.w3.org/1999/02/22-rdf-syntax-ns#type>'
declares_schema="$rdf_type <(http://lv2plug.in/ns/lv2core#Specification|http://www.w3.org/2002/07/owl#Ontology)> \.\$"
shopt -s nullglob
schemas=()
# A plain text search picks the candidates first, so sordi reads a few manifests, not hundreds.
manifests=("$schema_dir"/*/manifest.ttl)
candidates=()
if [ ${#manifests[@]} -gt 0 ]; then
  mapfile -t candidates < <(grep -lE 'Specification|Ontology' "${manifests[@]}")
fi
for manifest in "${candidates[@]}"; do
  triples=$(sordi -o ntriples "$manifest" 2>/dev/null) || continue
  if grep -qE " $declares_schema" <<<"$triples"; then
    schemas+=("$(dirname "$manifest")"/*.ttl)
  fi
done
if [ ! -f "$schema_dir/core.lv2/lv2core.ttl" ] || [ ${#schemas[@]} -eq 0 ]; then
  echo "SKIP: no LV2 schemas in $schema_dir (Debian package lv2-dev)"
  exit 77
fi
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
