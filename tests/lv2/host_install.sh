#!/usr/bin/env bash
# cmake --install puts the whole bundle into the LV2 folder and tarn-render into <prefix>/bin,
# and nothing else anywhere. The LV2 folder is the one given at configure time, or else ~/.lv2
# of whoever runs the install: HOME here is another than at configure time. Everything is
# staged under DESTDIR, so the test never touches the real folders.
#   host_install.sh BUILD_DIR
set -euo pipefail
build=$1
stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT
fail() {
  echo "FAIL: $*"
  exit 1
}

configured=$(sed -n 's/^TARN_LV2_INSTALL_DIR:[A-Z]*=//p' "$build/CMakeCache.txt")
home=/tarn-install-test-home
prefix=/tarn-install-test-prefix
lv2_dir=${configured:-$home/.lv2}

if ! HOME=$home DESTDIR=$stage/root cmake --install "$build" --prefix "$prefix" >"$stage/log" 2>&1; then
  cat "$stage/log"
  fail "cmake --install failed"
fi

expected=$(printf '%s\n' "$lv2_dir"/tarn.lv2/{manifest.ttl,tarn.so,tarn.ttl} "$prefix/bin/tarn-render" | sort)
found=$(cd "$stage/root" && find . -type f | sed 's|^\.||' | sort)
[ "$found" = "$expected" ] || fail "the install wrote"$'\n'"$found"$'\n'"instead of"$'\n'"$expected"

bundle=$stage/root$lv2_dir/tarn.lv2
for f in manifest.ttl tarn.so tarn.ttl; do
  cmp -s "$bundle/$f" "$build/lv2/tarn.lv2/$f" || fail "installed $f differs from the built one"
done
"$stage/root$prefix/bin/tarn-render" --help >"$stage/help" 2>&1 || fail "the installed tarn-render --help failed"
grep -qi usage "$stage/help" || fail "the installed tarn-render --help printed no usage"
echo "the bundle installs into $lv2_dir/tarn.lv2 and tarn-render into $prefix/bin"
