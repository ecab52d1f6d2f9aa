#!/usr/bin/env bash
# The built tarn-render end to end: renders write their output and a summary, with no progress
# when standard error is no terminal; bad inputs exit 1 (2 for a wrong command line) with one line
# on standard error naming the culprit, and leave every file as it was.
set -u
exe=$1 failures=0
cd "$(mktemp -d)" && trap 'rm -rf "$PWD"' EXIT || exit 1
fail() { echo "FAIL: $*"; failures=$((failures + 1)); }
render() {  # OUTPUT ARGS...
  "$exe" "${@:2}" >out 2>err && [ -s "$1" ] && grep -q needle out && [ ! -s err ] || fail "${*:2}: $(cat err)"
}
render tarn-demo.wav --block 1  # slow enough for progress, were it drawn
mv tarn-demo.wav in.wav
render in-tarn.wav in.wav -p drive=4 --rate 96000 --save-state s.state
render again.wav in.wav --load-state s.state -o again.wav
[ "$(wc -c <s.state)" -eq 64 ] && ! cmp -s in-tarn.wav again.wav || fail "state or --rate ignored"
refuse() {  # STATUS TEXT ARGS...
  local before err
  before=$(ls -l --full-time) err=$("$exe" "${@:3}" 2>&1 >/dev/null)
  [ $? -eq "$1" ] && [ "$(wc -l <<<"$err")" -eq 1 ] && [[ $err == *"$2"* ]] &&
    [ "$(ls -l --full-time)" = "$before" ] || fail "${*:3}: $err"
}
refuse 1 'cannot read input "s.state" as audio' s.state
refuse 2 'option "--block" needs a value' in.wav --block
[ "$failures" -eq 0 ] && echo "all renders and refusals as expected"
