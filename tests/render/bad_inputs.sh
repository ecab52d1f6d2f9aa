#!/usr/bin/env bash
# The built tarn-render end to end: good renders write their output and a summary, and no
# progress as standard error is no terminal; bad inputs exit 1 (2 for a wrong command line) with
# one line on standard error naming the file or value, and leave every file as it was.
set -u
exe=$1
cd "$(mktemp -d)" || exit 1
trap 'rm -rf "$PWD"' EXIT
failures=0
fail() { echo "FAIL: $*"; failures=$((failures + 1)); }
good() {  # OUTPUT ARGS...
  "$exe" "${@:2}" >out 2>err && [ -s "$1" ] && grep -q needle out && [ ! -s err ] || fail "${*:2}: $(cat err)"
}
good tarn-demo.wav --block 1  # slow enough for progress, were it drawn
mv tarn-demo.wav in.wav
good in-tarn.wav in.wav -p drive=4 -p vumode=Output --rate 96000 --save-state s.state
[ "$(wc -c <s.state)" -eq 64 ] || fail "the saved state is not 64 bytes"
good again.wav in.wav --load-state s.state -o again.wav
cmp -s in-tarn.wav again.wav && fail "--rate 96000 made no difference"
expect() {  # STATUS TEXT ARGS...
  local before err
  before=$(ls -l --full-time)
  err=$("$exe" "${@:3}" 2>&1 >/dev/null)
  [ $? -eq "$1" ] && [ "$(wc -l <<<"$err")" -eq 1 ] && [[ $err == *"$2"* ]] &&
    [ "$(ls -l --full-time)" = "$before" ] || fail "${*:3}: $err"
}
expect 1 'cannot read input "s.state" as audio' s.state
expect 1 'the output "./in.wav" is the same file as the input "in.wav"' in.wav -o ./in.wav
expect 2 'option "--block" needs a value' in.wav --block
[ "$failures" -eq 0 ] && echo "all bad inputs refused cleanly"
