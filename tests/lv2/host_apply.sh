#!/usr/bin/env bash
# lilv's lv2apply renders a file through the bundle; the result is bit-identical to
# tarn-render's for the same input and parameters, mono and stereo. lv2apply runs the plug-in
# one frame at a time; tarn-render is run with blocks of 1 and of 4096 frames, since the
# effect's output does not depend on the block size.
#   host_apply.sh LV2_DIR TARN_RENDER WAVTOOL
set -u
export LV2_PATH=$(cd "$1" && pwd)  # lilv needs an absolute path
render=$2
wavtool=$3
if ! command -v lv2apply >/dev/null; then
  echo "SKIP: lv2apply (Debian package lilv-utils) is missing"
  exit 77
fi

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
failures=0
fail() { echo "FAIL: $*"; failures=$((failures + 1)); }

# Values a float control port carries exactly, so both hosts hand the effect the same doubles.
lv2_controls=(-c input_trim 4 -c drive 6.5 -c output_compensation -2 -c asymmetry 2.5
              -c freq_response 3 -c crosstalk_level -70 -c vu_mode 2)
render_params=(-p "Input Trim=4" -p Drive=6.5 -p "Output Compensation=-2" -p Asymmetry=2.5
               -p "Freq Response=3" -p "Crosstalk Level=-70" -p "VU Mode=Output")

for layout in mono:1:44100 stereo:2:48000; do
  IFS=: read -r name channels rate <<<"$layout"
  in=$scratch/in-$name.wav
  "$wavtool" make "$in" "$channels" 30000 "$rate" || { fail "cannot write $in"; continue; }

  if ! lv2apply -i "$in" -o "$scratch/lv2-$name.wav" "${lv2_controls[@]}" "urn:tessmoral:tarn#$name"; then
    fail "lv2apply failed on the $name plug-in"
    continue
  fi
  lv2apply -i "$in" -o "$scratch/lv2-default-$name.wav" "urn:tessmoral:tarn#$name" || fail "lv2apply failed with defaults"

  for block in 1 4096; do
    "$render" "$in" -o "$scratch/render-$name-$block.wav" "${render_params[@]}" --block $block --quiet >/dev/null \
      || { fail "tarn-render failed ($name, block $block)"; continue; }
    "$wavtool" compare "$scratch/lv2-$name.wav" "$scratch/render-$name-$block.wav" \
      || fail "$name: lv2apply and tarn-render --block $block differ"
    "$render" "$in" -o "$scratch/render-default-$name-$block.wav" --block $block --quiet >/dev/null
    "$wavtool" compare "$scratch/lv2-default-$name.wav" "$scratch/render-default-$name-$block.wav" \
      || fail "$name with defaults: lv2apply and tarn-render --block $block differ"
  done
  # The settings must matter, or the comparison above proves little.
  "$wavtool" compare "$scratch/lv2-$name.wav" "$scratch/lv2-default-$name.wav" >/dev/null 2>&1 \
    && fail "$name: the control settings changed nothing"
done

[ $failures -eq 0 ] && echo "lv2apply renders bit-identically to tarn-render"
[ $failures -eq 0 ]
