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

# Settings as lv2apply's controls and as tarn-render's parameters, with values a float control
# port carries exactly, so both hosts hand the effect the same doubles (tarn-render takes the
# names without their spaces).
lv2_controls=(
  "-c input_trim 4 -c drive 6.5 -c output_compensation -2 -c asymmetry 2.5 -c freq_response 3 -c crosstalk_level -70 -c vu_mode 2"
  "-c bypass 1 -c input_trim -6 -c drive 9"
)
render_params=(
  "-p InputTrim=4 -p Drive=6.5 -p OutputCompensation=-2 -p Asymmetry=2.5 -p FreqResponse=3 -p CrosstalkLevel=-70 -p VUMode=Output"
  "-p Bypass=on -p InputTrim=-6 -p Drive=9"
)

for layout in mono:1:44100 stereo:2:48000; do
  IFS=: read -r name channels rate <<<"$layout"
  in=$scratch/in-$name.wav
  "$wavtool" make "$in" "$channels" 30000 "$rate" || { fail "cannot write $in"; continue; }
  lv2apply -i "$in" -o "$scratch/lv2-default-$name.wav" "urn:tessmoral:tarn#$name" || fail "lv2apply failed with defaults"
  for block in 1 4096; do
    "$render" "$in" -o "$scratch/render-default-$name-$block.wav" --block $block --quiet >/dev/null
    "$wavtool" compare "$scratch/lv2-default-$name.wav" "$scratch/render-default-$name-$block.wav" \
      || fail "$name with defaults: lv2apply and tarn-render --block $block differ"
  done

  for set in "${!lv2_controls[@]}"; do
    out=$scratch/lv2-$name-$set.wav
    # shellcheck disable=SC2086 # each set is a list of options
    if ! lv2apply -i "$in" -o "$out" ${lv2_controls[set]} "urn:tessmoral:tarn#$name"; then
      fail "lv2apply failed on the $name plug-in with settings $set"
      continue
    fi
    for block in 1 4096; do
      # shellcheck disable=SC2086
      "$render" "$in" -o "$scratch/render-$name-$set-$block.wav" ${render_params[set]} --block $block --quiet >/dev/null \
        || { fail "tarn-render failed ($name, settings $set, block $block)"; continue; }
      "$wavtool" compare "$out" "$scratch/render-$name-$set-$block.wav" \
        || fail "$name, settings $set: lv2apply and tarn-render --block $block differ"
    done
    # The settings must matter, or the comparison proves little.
    "$wavtool" compare "$out" "$scratch/lv2-default-$name.wav" >/dev/null 2>&1 \
      && fail "$name: settings $set changed nothing"
  done
done

[ $failures -eq 0 ] && echo "lv2apply renders bit-identically to tarn-render"
[ $failures -eq 0 ]
