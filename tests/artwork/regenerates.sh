#!/usr/bin/env bash
# The committed editor images are what tools/artwork draws, byte for byte.   regenerates.sh ROOT
set -u
out=$(mktemp -d) && trap 'rm -rf "$out"' EXIT || exit 1
for python in /usr/bin/python3 python3; do "$python" -c 'import cairo' 2>/dev/null && break; done
"$python" "$1/tools/artwork/tarn_artwork.py" "$out" >/dev/null || { echo "FAIL: the generator failed"; exit 1; }
diff -r "$1/resources/img" "$out" && echo "PASS: all $(ls "$out" | wc -l) images as committed"
