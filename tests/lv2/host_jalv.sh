#!/usr/bin/env bash
# jalv runs the stereo plug-in in a private dummy JACK server (no audio device is touched) for
# a few seconds, with a metronome feeding its left input, and takes a control change from its
# command prompt. Every wait is bounded; the servers started here are stopped at the end.
#   host_jalv.sh LV2_DIR
set -u
export LV2_PATH=$(cd "$1" && pwd)  # lilv needs an absolute path
for tool in jackd jack_wait jack_metro jack_connect jalv timeout; do
  if ! command -v $tool >/dev/null; then
    echo "SKIP: $tool (Debian packages jackd2, jalv, coreutils) is missing"
    exit 77
  fi
done

export JACK_NO_AUDIO_RESERVATION=1
export JACK_DEFAULT_SERVER=tarn-lv2-test-$$
scratch=$(mktemp -d)
pids=()
# stop PID: asks the process (a `timeout` wrapper) and its child to end; a JACK client or server
# can hang in its own shutdown, so whatever is still there after two seconds is killed.
stop() {
  local pid=$1 tries
  kill "$pid" 2>/dev/null
  for ((tries = 0; tries < 20; tries++)); do
    kill -0 "$pid" 2>/dev/null || break
    sleep 0.1
  done
  pkill -KILL -P "$pid" 2>/dev/null
  kill -KILL "$pid" 2>/dev/null
  wait "$pid" 2>/dev/null
}
# Clients first, the server last.
cleanup() {
  for ((i = ${#pids[@]} - 1; i >= 0; i--)); do
    stop "${pids[i]}"
  done
  rm -rf "$scratch"
}
trap cleanup EXIT
failures=0
fail() { echo "FAIL: $*"; failures=$((failures + 1)); }

timeout -k 2 60 jackd -n "$JACK_DEFAULT_SERVER" -d dummy -r 48000 -p 256 >"$scratch/jackd.log" 2>&1 &
pids+=($!)
if ! timeout 15 jack_wait -w -t 10 -s "$JACK_DEFAULT_SERVER" >/dev/null 2>&1; then
  cat "$scratch/jackd.log"
  echo "FAIL: the dummy JACK server did not start"
  exit 1
fi
timeout -k 2 30 jack_metro -n metro -b 300 -D 150 -f 440 -A 0.8 >"$scratch/metro.log" 2>&1 &
pids+=($!)

# The prompt's input: connect the metronome once jalv is up, change a control, list the
# controls and the output controls, then end the input, which ends jalv.
{
  sleep 1.5
  timeout 5 jack_connect metro:300_bpm tarn_test:in_l >>"$scratch/connect.log" 2>&1 || echo "connect failed" >>"$scratch/connect.log"
  sleep 1
  echo "drive = 5"
  sleep 1
  echo "controls"
  sleep 1
  echo "monitors"
  sleep 0.5
} | timeout -k 2 20 jalv -x -n tarn_test "urn:tessmoral:tarn#stereo" >"$scratch/jalv.log" 2>&1
status=$?
cat "$scratch/jalv.log"

[ $status -eq 0 ] || fail "jalv ended with status $status"
grep -q "connect failed" "$scratch/connect.log" && fail "the metronome could not be connected to the plug-in"
grep -q "^Sample rate:  48000 Hz" "$scratch/jalv.log" || fail "jalv did not run at 48000 Hz"
grep -q "^Block length: 256 frames" "$scratch/jalv.log" || fail "jalv did not run 256-frame blocks"
grep -q "^> drive = 5.000000" "$scratch/jalv.log" || fail "jalv did not take \"drive = 5\""
[ "$(grep -c "drive = 5.000000" "$scratch/jalv.log")" -ge 2 ] || fail "the control listing does not show drive at 5"
grep -q "latency = 6.000000" "$scratch/jalv.log" || fail "the latency port does not read 6"
needle=$(sed -n 's/.*needle = //p' "$scratch/jalv.log" | tail -n 1)
awk -v n="${needle:-0}" 'BEGIN { exit !(n > 0) }' || fail "the needle did not move (${needle:-none}): no audio went through"
grep -iE "error|fail|warn|exception" "$scratch/jalv.log" && fail "jalv reported a problem"

[ $failures -eq 0 ] && echo "jalv ran the plug-in and took the control change"
[ $failures -eq 0 ]
