#!/usr/bin/env bash
# cmake --install puts the whole bundle, and nothing else, into the configured LV2 folder;
# staged under DESTDIR here so the test never touches the real one.
#   host_install.sh BUILD_DIR INSTALL_DIR
set -u
build=$1
destination=$2
stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT

if ! DESTDIR=$stage cmake --install "$build" --component lv2 >"$stage.log" 2>&1; then
  cat "$stage.log"; rm -f "$stage.log"
  echo "FAIL: cmake --install failed"
  exit 1
fi
rm -f "$stage.log"
bundle=$stage$destination/tarn.lv2
expected=$'manifest.ttl\ntarn.so\ntarn.ttl'
found=$(cd "$bundle" 2>/dev/null && find . -type f | sed 's|^\./||' | sort)
if [ "$found" != "$expected" ]; then
  echo "FAIL: $bundle holds:"; echo "$found"
  exit 1
fi
for f in manifest.ttl tarn.so tarn.ttl; do
  cmp -s "$bundle/$f" "$build/lv2/tarn.lv2/$f" || { echo "FAIL: installed $f differs from the built one"; exit 1; }
done
echo "the bundle installs into $destination/tarn.lv2"
