#!/usr/bin/env bash
# Runs the built tarn-render end to end on bad inputs. Each must exit non-zero, print exactly one
# line on standard error that names the file or value, leave no file behind in the working
# folder and leave the input untouched.
# A few good renders run as well, so a refusal is never mistaken for a broken program.
#   bad_inputs.sh PATH/TO/tarn-render
set -u
exe=$1

if ! command -v python3 >/dev/null; then
  echo "SKIP: python3 (used to write the test's sound files) is missing"
  exit 77
fi

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
mkdir "$scratch/run"
cd "$scratch/run" || exit 1
failures=0

# write_wav NAME CHANNELS FRAMES: a 16-bit WAV of a quiet ramp.
write_wav() {
  python3 - "$1" "$2" "$3" <<'PY'
import struct, sys, wave
name, channels, frames = sys.argv[1], int(sys.argv[2]), int(sys.argv[3])
with wave.open(name, "wb") as w:
    w.setnchannels(channels)
    w.setsampwidth(2)
    w.setframerate(44100)
    w.writeframes(b"".join(struct.pack("<h", (i % 200) * 50) * channels for i in range(frames)))
PY
}

write_wav in.wav 2 10000
write_wav mono.wav 1 3000
write_wav three.wav 3 100
write_wav empty.wav 1 0
echo "not audio" > notes.txt
head -c 63 /dev/zero > short.state
python3 -c 'import struct; open("nan.state", "wb").write(struct.pack("<8d", 0, 0, 0, float("nan"), 0, -90, 0, 0))'

fail() {
  echo "FAIL: $*"
  failures=$((failures + 1))
}

# expect_failure TEXT ARGS...: the run fails with one line containing TEXT and changes nothing.
expect_failure() {
  local named=$1
  shift
  local before input_sum
  before=$(ls -A)
  input_sum=$(cksum < in.wav)
  "$exe" "$@" > "$scratch/out" 2> "$scratch/err"
  local status=$?
  local what="tarn-render $*"
  [ "$status" -ne 0 ] || fail "$what: exit status 0"
  [ "$(wc -l < "$scratch/err")" -eq 1 ] || fail "$what: expected one line on stderr, got: $(cat "$scratch/err")"
  grep -qF -- "$named" "$scratch/err" || fail "$what: message does not name $named: $(cat "$scratch/err")"
  [ "$(ls -A)" = "$before" ] || fail "$what: files changed: $(ls -A | tr '\n' ' ')"
  [ "$(cksum < in.wav)" = "$input_sum" ] || fail "$what: the input changed"
}

# expect_success OUTPUT ARGS...: the run succeeds, writes OUTPUT and prints a summary.
expect_success() {
  local output=$1
  shift
  rm -f "$output"
  "$exe" "$@" > "$scratch/out" 2> "$scratch/err" || fail "tarn-render $*: failed: $(cat "$scratch/err")"
  [ -s "$output" ] || fail "tarn-render $*: no $output"
  grep -q "needle" "$scratch/out" || fail "tarn-render $*: no summary: $(cat "$scratch/out")"
  rm -f "$output"
}

expect_failure '"missing.wav"' missing.wav
expect_failure '"notes.txt"' notes.txt
expect_failure '"three.wav" has 3 channels' three.wav
expect_failure '"empty.wav"' empty.wav
expect_failure '"0"' in.wav --block 0
expect_failure '"8193"' in.wav --block 8193
expect_failure '"0"' in.wav --rate 0
expect_failure '"7999"' in.wav --rate 7999
expect_failure '"800000"' in.wav --rate 800000
expect_failure '"fast"' in.wav --rate fast
expect_failure '"./in.wav"' in.wav -o ./in.wav
expect_failure '"in.wav"' in.wav --save-state in.wav
expect_failure '"nofolder/out.wav"' in.wav -o nofolder/out.wav
expect_failure '"--bogus"' in.wav --bogus
expect_failure '"-o" needs a value' in.wav -o
expect_failure '"--block" needs a value' in.wav --block

expect_failure '"volume"' in.wav -p volume=3
expect_failure '"loud"' in.wav -p drive=loud
expect_failure '"Sideways"' in.wav -p vumode=Sideways
expect_failure '"short.state"' in.wav --load-state short.state
expect_failure '"nan.state" holds NaN for "Asymmetry"' in.wav --load-state nan.state --save-state s.state
expect_success tarn-demo.wav
expect_success in-tarn.wav in.wav -p drive=4 -p vumode=Output -p bypass=off --block 100 --quiet
expect_success mono-tarn.wav mono.wav --rate 96000 --save-state s.state
[ "$(wc -c < s.state)" -eq 64 ] || fail "the saved state is not 64 bytes"
expect_success again.wav mono.wav --load-state s.state -o again.wav

if [ "$failures" -ne 0 ]; then
  echo "$failures failure(s)"
  exit 1
fi
echo "all bad inputs refused cleanly"
