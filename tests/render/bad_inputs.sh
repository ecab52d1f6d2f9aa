#!/usr/bin/env bash
# The built tarn-render end to end: the demo renders with its summary and, standard error being
# no terminal, no progress; bad inputs exit 1 (2 for a wrong command line) with one line on
# standard error naming the culprit, and leave every file as it was.
set -u
exe=$1 failures=0
cd "$(mktemp -d)" && trap 'rm -rf "$PWD"' EXIT || exit 1
fail() { echo "FAIL: $*"; failures=$((failures + 1)); }
# Runs of one frame are slow enough for progress, were it drawn.
"$exe" --block 1 >out 2>err && [ -s tarn-demo.wav ] && grep -q needle out && [ ! -s err ] || fail "demo: $(cat err)"
refuse() {  # STATUS TEXT ARGS...
  local before err
  before=$(ls -l --full-time) err=$("$exe" "${@:3}" 2>&1 >/dev/null)
  [ $? -eq "$1" ] && [ "$(wc -l <<<"$err")" -eq 1 ] && [[ $err == *"$2"* ]] &&
    [ "$(ls -l --full-time)" = "$before" ] || fail "${*:3}: $err"
}
refuse 1 'cannot read input "out" as audio' out
refuse 2 'option "--block" needs a value' tarn-demo.wav --block
# A FIFO whose reader goes away after one byte: one line naming it and status 1, not SIGPIPE.
mkfifo gone.fifo && { timeout 20 head -c 1 gone.fifo >/dev/null & }
"$exe" -q -o gone.fifo >/dev/null 2>err; status=$? && wait
[ $status -eq 1 ] && grep -q '"gone.fifo": Broken pipe' err || fail "reader gone: $status $(cat err)"
# Images it cannot read are named, and the editor snapshot is written all the same.
TARN_RESOURCE_ROOT=. "$exe" -q --editor-snapshot s.png >/dev/null 2>err && [ -s s.png ] &&
  grep -q 'image "resources/img/KnobS1.png" is missing' err || fail "snapshot without images: $(cat err)"
# The analysis report, a PNG of the size the help text states, with a file a row taller; an
# analysis writes nothing but its report.
for input in "" tarn-demo.wav; do
  size=$("$exe" -q --analyze a.png $input >/dev/null 2>err && identify -format %wx%h a.png)
  [ "$size" = "1600x$([ -z "$input" ] && echo 992 || echo 1442)" ] || fail "analysis of '$input': $size $(cat err)"
done
refuse 2 'option "--output" cannot be used with --analyze' --analyze r.png -o r.wav
refuse 1 'the analysis report "tarn-demo.wav" is the same file as the input' --analyze tarn-demo.wav tarn-demo.wav
refuse 1 'unknown parameter "nope"' --analyze r.png -p nope=1
refuse 1 'cannot write "no/r.png"' --analyze no/r.png
[ "$failures" -eq 0 ] && echo "all renders and refusals as expected"
