#!/usr/bin/env bash
# The built bundle in real LV2 programs. Every process started here is ended by its id and every
# wait is bounded.   host.sh TEST BUILD_DIR TARN_RENDER [SANITIZER]
set -u
export LV2_PATH=$2/lv2 what=$1 build=$2 render=$3 bundle=$2/lv2/tarn.lv2 scratch=$(mktemp -d) pids=() failures=0
trap 'for pid in "${pids[@]}"; do kill "$pid" && wait "$pid"; done 2>/dev/null; rm -rf "$scratch"' EXIT
cd "$scratch" || exit 1
fail() { echo "FAIL: $*"; failures=$((failures + 1)); }
need() { for tool; do command -v "$tool" >/dev/null || { echo "SKIP: no $tool"; exit 77; }; done; }
[ -n "${4:-}" ] && [[ $what =~ apply|jalv|editor ]] && { echo "SKIP: $what cannot load the $4-sanitized plug-in"; exit 77; }

case $what in
validate)  # the Turtle against the LV2 schemas (only: other plug-ins are not ours); the release's
  # minor version is even, for hosts take a zero or odd one for a development release and warn
  need sord_validate && mapfile -t schemas < <(dpkg-query -L lv2-dev 2>/dev/null | grep -E '^/usr/lib/lv2/[^/]+/[^/]+\.ttl$')
  [ ${#schemas[@]} -gt 0 ] || { echo "SKIP: no LV2 schemas (Debian package lv2-dev)"; exit 77; }
  report=$(sord_validate "${schemas[@]}" "$bundle"/*.ttl 2>&1) && echo "$report" | tail -n 2
  grep -q "^Found 0 errors" <<<"$report" && ! grep -qE "^(Skipping|error reading)" <<<"$report" ||
    fail "sord_validate found errors or skipped a file it could not read: $report"
  grep -qE 'lv2:minorVersion ([0-9]*[2468]|[1-9][0-9]*0) ;' "$bundle/tarn.ttl" || fail "development version" ;;
list)  # lv2ls finds both plug-ins, lv2info each port and scale point as the parameter table has it
  need lv2ls lv2info
  controls='0 input_trim Input Trim -20 20 0
1 drive Drive 0 10 0
2 output_compensation Output Compensation -20 20 0
3 asymmetry Asymmetry 0 10 5
4 freq_response Freq Response -10 10 0
5 crosstalk_level Crosstalk Level -120 -60 -90
6 vu_mode VU Mode 0 2 0
0.0 = "Input"
1.0 = "RMS Difference Out-In"
2.0 = "Output"
7 bypass Bypass 0 1 0
8 enabled Enabled lv2:enabled 0 1 1
9 latency Latency lv2:latency 0 6
10 needle Meter Needle 0 1'
  for variant in "mono|11 in In|12 out Out" "stereo|11 in_l In L|12 in_r In R|13 out_l Out L|14 out_r Out R"; do
    uri=urn:tessmoral:tarn#${variant%%|*}
    lv2ls | grep -qx "$uri" && info=$(lv2info "$uri") || fail "lv2ls and lv2info do not know $uri"
    diff <(awk '/^\tPort / { if (p) print p; p = $2 + 0 } /^\t\t\t[0-9]/ { sub(/^\t+/, ""); print }
        /^\t\t(Symbol|Name|Designation|Minimum|Maximum|Default):/ { sub(/^\t\t[A-Za-z]+: +/, ""); p = p " " $0 }
        END { print p }' <<<"$info" | sed 's|http://lv2plug.in/ns/lv2core#|lv2:|; s/\.000000//g' | sort) \
      <({ echo "$controls"; tr "|" "\n" <<<"${variant#*|}"; } | sort) || fail "$uri: lv2info (<) shows other ports"
  done ;;
apply)  # lv2apply, in runs of one frame, renders bit-identically to tarn-render in blocks of 4096
  need lv2apply && "$render" -o in.wav -q >/dev/null  # its demo: stereo, 48000 Hz, loud enough to clip
  # Values a float port carries exactly; tarn-render takes the names without underscores.
  for set in "" "bypass=1 input_trim=-6 drive=9" "input_trim=4 drive=6.5 output_compensation=-2 \
      asymmetry=2.5 freq_response=3 crosstalk_level=-70 vu_mode=2"; do
    controls=() params=()
    for kv in $set; do controls+=(-c "${kv%=*}" "${kv#*=}") params+=(-p "${kv//_/}"); done
    lv2apply -i in.wav -o lv2.wav "${controls[@]}" "urn:tessmoral:tarn#stereo"
    "$render" in.wav -o render.wav "${params[@]}" --block 4096 -q >/dev/null
    # Equal format and frame count (bytes 1-48) and samples (81 on); 49-80 hold peaks or padding.
    cmp -n 48 lv2.wav render.wav && cmp -i 80 lv2.wav render.wav || fail "settings '$set' differ"
  done ;;
jalv)  # jalv runs the stereo plug-in in a private dummy JACK server and takes a control change
  need jackd jack_wait jalv timeout && export JACK_NO_AUDIO_RESERVATION=1 JACK_NO_START_SERVER=1 JACK_DEFAULT_SERVER=tarn-lv2-test-$$
  timeout -k 2 60 jackd -n "$JACK_DEFAULT_SERVER" -d dummy -r 48000 -p 256 >jackd.log 2>&1 & pids+=($!)
  timeout 15 jack_wait -w -t 10 >/dev/null 2>&1 || { cat jackd.log; fail "no JACK server"; exit 1; }
  # A control change, the listing, the output ports: the needle shows the noise floor once audio runs
  { sleep 1.5; echo "drive = 5"; sleep 1; echo controls; sleep 1; echo monitors; sleep 0.5; } \
    | timeout -k 2 20 jalv -x -n tarn-test -c vu_mode=2 urn:tessmoral:tarn#stereo >log 2>&1 || fail "jalv: $?"
  cat log
  [ "$(grep -c '^> drive = 5.000000\|^drive = 5.000000\|latency = 6.000000' log)" = 3 ] ||
    fail "jalv did not take drive = 5, list it and show latency 6"
  awk '/needle = / { n = $NF } END { exit !(n > 0) }' log || fail "the needle never moved"
  grep -iE "error|fail|warn|exception" log && fail "jalv reported a problem" ;;
editor)  # jalv shows the editor (run under with-xvfb.sh); xdotool works it while a sine plays
  need jackd jack_wait jack_simple_client jack_connect jack_rec jalv.gtk3 xdotool import compare python3
  export JACK_NO_AUDIO_RESERVATION=1 JACK_NO_START_SERVER=1 JACK_DEFAULT_SERVER=tarn-ui-test-$$ client=tarn-ui-$$
  timeout -k 2 90 jackd -n "$JACK_DEFAULT_SERVER" -d dummy -r 48000 -p 256 >jackd.log 2>&1 & pids+=($!)
  timeout 15 jack_wait -w -t 10 >/dev/null 2>&1 || { cat jackd.log; fail "no JACK server"; exit 1; }
  timeout -k 2 80 jalv.gtk3 -n -x --jack-name "$client" urn:tessmoral:tarn#stereo >jalv.log 2>&1 & pids+=($!)
  timeout -k 2 80 jack_simple_client >/dev/null 2>&1 & pids+=($!)  # sines of amplitude 0.2
  timeout 20 xdotool search --sync --onlyvisible --name "Tarn" >/dev/null || { cat jalv.log; fail "no editor"; exit 1; }
  for c in l r; do timeout 10 sh -c "until jack_connect jack_simple_client:output$([ $c = l ] && echo 1 || echo 2) $client:in_$c 2>/dev/null; do sleep 0.2; done"; done
  # level: the left output's RMS in dB over one second, once the last action has settled
  level() { sleep 0.5 && rm -f rec.wav && timeout 10 jack_rec -f rec.wav -d 1 -b 32 "$client:out_l" >/dev/null 2>&1
    python3 -c 'import wave, array, math; w = wave.open("rec.wav"); a = array.array("i", w.readframes(w.getnframes()))
print("%.2f" % (10 * math.log10(sum((x / 2.0**31) ** 2 for x in a) / len(a))))'; }
  # expect WHAT DB: the level is DB (within 0.05 dB) above the level before any action
  expect() { local now; now=$(level); awk -v a="$now" -v b="$base" -v d="$2" 'BEGIN { x = a - b - d; exit !(x * x < 0.0025) }' ||
    fail "$1: the output is $now dB, expected $base + $2"; }
  # The window as drawn; only the needle may differ from the snapshot of a fresh editor at rest.
  python3 -c 'import wave; w = wave.open("silence.wav", "wb"); w.setparams((1, 2, 48000, 0, "NONE", "")); w.writeframes(bytes(9600))'
  "$render" silence.wav -o out.wav --editor-snapshot rest.png -q >/dev/null || fail "no snapshot"
  sleep 1 && import -window root -crop 304x416+0+0 +repage shown.png
  differ=$(compare -metric AE shown.png rest.png diff.png 2>&1)
  awk -v n="$differ" 'BEGIN { exit !(n > 0 && n <= 768) }' || fail "the window differs from the snapshot in $differ pixels, not only in the needle"
  base=$(level)
  xdotool mousemove 219 168 mousedown 1 mousemove 219 160 mousemove 219 149 mouseup 1  # Output +19 px
  expect "a drag on Output" 1.9
  xdotool mousemove 219 168 click --repeat 2 --delay 100 1  # a double click restores 0 dB
  expect "a double click on Output" 0
  xdotool click 3 sleep 0.3 key BackSpace BackSpace BackSpace BackSpace type -- -6 && xdotool key Return
  expect "-6 typed into Output's field" -6
  # The needle the plug-in reports, in mode 1: 10^((out - in dB - 3.95) / 20), drawn in column
  # 55 + trunc(196 · needle) + 3; here that of the gain set (-6 + 0.07 dB at Drive 0), then 0 dB.
  xdotool mousemove 183 25 click 3 sleep 0.5 mousemove 150 68 click 1  # "RMS Difference Out-In"
  needle() { sleep 1.5 && import -window root -crop 304x416+0+0 +repage now.png && convert now.png -crop 198x1+56+88 -depth 8 gray:row
    python3 -c 'import sys; r = open("row", "rb").read(); sys.exit(abs(56 + r.index(min(r)) - int(sys.argv[1])) > 2)' "$1" ||
      fail "$2: the needle is not in column $1"; }
  needle 120 "the mode menu's RMS difference"
  xdotool mousemove 72 47 click 1  # the bypass switch: the input comes out, 0.2 / sqrt(2)
  base=-16.99 && expect "the bypass switch" 0
  needle 182 "the RMS difference of the bypassed effect"
  grep -iE "error|fail|warn|exception" jalv.log && fail "jalv reported a problem" ;;
esac
[ $failures -eq 0 ] && echo "PASS: $what"
