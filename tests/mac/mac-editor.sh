#!/usr/bin/env bash
# Tarn's Cocoa editor, built against GNUstep, in tarn_mac_host on the X display given (run it
# under with-xvfb.sh), worked with xdotool as a user would. GNUstep's daemons are started here, in
# a private folder that keeps them and their names from any others, and ended by their ids with
# everything else started here.   mac-editor.sh TARN_MAC_HOST SOURCE_DIR
set -u
host_program=$1 source=$2 scratch=$(mktemp -d) pids=() failures=0
trap 'for pid in "${pids[@]}"; do kill "$pid" && wait "$pid"; done 2>/dev/null; rm -rf "$scratch"' EXIT
for tool in xdotool import compare gdnc gpbs; do
  command -v $tool >/dev/null || { echo "SKIP: no $tool"; exit 77; }
done
fail() { echo "FAIL: $*"; failures=$((failures + 1)); }
cd "$scratch" || exit 1
# GNUstep keeps its defaults under HOME and the names its daemons register under TMPDIR.
export HOME=$scratch TMPDIR=$scratch GNUSTEP_USER_ROOT=$scratch/GNUstep
gdnc --no-fork >gdnc.log 2>&1 & pids+=($!)
gpbs --no-fork >gpbs.log 2>&1 & pids+=($!)
# A flat GNUstep bundle with the editor's images, found by its identifier.
mkdir -p tarn.bundle/Resources && cp "$source"/resources/img/*.png tarn.bundle/Resources/
echo '{ CFBundleIdentifier = "com.tessmoral.tarn.test"; }' >tarn.bundle/Resources/Info-gnustep.plist
timeout -k 2 60 "$host_program" -Bundle "$scratch/tarn.bundle" -Snapshot "$scratch/headless.png" \
  >host.log 2>host.err & pids+=($!)
# wait_for LINE: until the host has printed LINE (at most 10 s)
wait_for() { timeout 10 sh -c "until grep -qxF -- '$1' host.log; do sleep 0.1; done" || { fail "the host never said '$1'"; return 1; }; }
wait_for "opened Cocoa gui 304x416" || { cat host.err; exit 1; }
sleep 1
# The editor fills the host's window at the top left of the screen; it shows the headless editor's
# picture of the same state.
xdotool key s && wait_for snapshot
import -window root -crop 304x416+0+0 +repage shown.png
differ=$(compare -metric AE shown.png headless.png diff.png 2>&1)
[ "$differ" = 0 ] || fail "the window differs from the headless editor in $differ pixels"
# Drive, at (84, 168): a drag 19 up turns it by 19/400 of its 0 to 10; a double click restores 0;
# a wheel notch up turns it by 0.01. A right press on Output opens its field, -6 typed over the
# selected text sets it. The VU Mode lamps' menu lists its three modes below them: "Output" is the
# third. The first click only takes GNUstep's focus: its release is lost.
xdotool mousemove 10 400 click 1 sleep 0.3
xdotool mousemove 84 168 mousedown 1 mousemove 84 160 mousemove 84 149 mouseup 1 sleep 0.3
xdotool mousemove 84 168 click --repeat 2 --delay 100 1 sleep 0.3 click 4 sleep 0.3
xdotool mousemove 219 168 click 3 sleep 0.5 type -- -6
xdotool key Return sleep 0.3 mousemove 183 25 mousedown 3 sleep 0.5 mousemove 150 86 sleep 0.3 mouseup 3
# A key the editor does not take reaches the host's window; the needle fed for two seconds is
# repainted about 25 times a second.
xdotool sleep 0.3 key q m
wait_for "host key m" && sleep 2.5
edits=$(grep '^edit' host.log | tr '\n' '|')
# (the drag may also pass through values on its way)
grep -qE '^(edit 1 0\.[0-9]+\|)*edit 1 0\.475\|edit 1 0\|edit 1 0\.1\|edit 2 -6\|edit 6 2\|$' <<<"$edits" ||
  fail "edits: $edits"
grep -qx "host key q" host.log || fail "the host did not get the key q"
awk '/^repaints/ { rate = $2 / $4 } END { exit !(rate >= 20 && rate <= 27) }' host.log ||
  fail "$(grep repaints host.log): not about 25 a second"
# Closed, the editor repaints nothing more, and once the window has been clicked elsewhere (GNUstep's
# window keeps the view it last pressed) no object of its classes is left.
xdotool key Escape sleep 1 click 1 click 3 key r
wait_for done
[ "$(grep -c '^repaints 0 ' host.log)" = 1 ] || fail "the closed editor still repaints: $(grep repaints host.log)"
grep '^alive' host.log | grep -v ' 0$' | while read -r line; do echo "FAIL: $line"; done | grep . && failures=$((failures + 1))
[ $failures -eq 0 ] || { cat host.log; grep -v "offsets for style" host.err | head -20; }
[ $failures -eq 0 ] && echo "PASS: the Cocoa editor under GNUstep"
