#!/usr/bin/env bash
# lilv's lv2ls finds both plug-ins of the built bundle, and lv2info shows every port with the
# range of the parameter table.
#   host_list.sh LV2_DIR (the folder that holds tarn.lv2)
set -u
export LV2_PATH=$(cd "$1" && pwd)  # lilv needs an absolute path
for tool in lv2ls lv2info; do
  if ! command -v $tool >/dev/null; then
    echo "SKIP: $tool (Debian package lilv-utils) is missing"
    exit 77
  fi
done
failures=0
fail() { echo "FAIL: $*"; failures=$((failures + 1)); }

plugins=$(lv2ls 2>/dev/null)
for uri in urn:tessmoral:tarn#mono urn:tessmoral:tarn#stereo; do
  echo "$plugins" | grep -qx "$uri" || fail "lv2ls does not list $uri"
done

# name|symbol|minimum|maximum|default, as the effect's parameter table states them.
expected=(
  "Input Trim|input_trim|-20.000000|20.000000|0.000000"
  "Drive|drive|0.000000|10.000000|0.000000"
  "Output Compensation|output_compensation|-20.000000|20.000000|0.000000"
  "Asymmetry|asymmetry|0.000000|10.000000|5.000000"
  "Freq Response|freq_response|-10.000000|10.000000|0.000000"
  "Crosstalk Level|crosstalk_level|-120.000000|-60.000000|-90.000000"
  "VU Mode|vu_mode|0.000000|2.000000|0.000000"
  "Bypass|bypass|0.000000|1.000000|0.000000"
)

for uri in urn:tessmoral:tarn#mono urn:tessmoral:tarn#stereo; do
  info=$(lv2info "$uri" 2>/dev/null)
  if [ -z "$info" ]; then
    fail "lv2info shows nothing for $uri"
    continue
  fi
  # One block of lines per port, joined so each port can be matched as a whole.
  ports=$(echo "$info" | awk '/^\tPort [0-9]+:/ { if (p) print p; p = "" } /^\t\t/ { gsub(/^[\t ]+/, ""); p = p "|" $0 } END { print p }')
  for entry in "${expected[@]}"; do
    IFS='|' read -r name symbol min max default <<<"$entry"
    echo "$ports" | grep -F "|Symbol:      $symbol|Name:        $name|Minimum:     $min|Maximum:     $max|Default:     $default" >/dev/null \
      || fail "$uri: lv2info does not show \"$name\" ($symbol) with range $min to $max, default $default"
  done
  echo "$ports" | grep -F "|Symbol:      enabled|Name:        Enabled|Designation: http://lv2plug.in/ns/lv2core#enabled|Minimum:     0.000000|Maximum:     1.000000|Default:     1.000000" >/dev/null \
    || fail "$uri: no designated enabled port defaulting to 1"
  echo "$ports" | grep -F "|Symbol:      latency|Name:        Latency|" >/dev/null || fail "$uri: no latency port"
  echo "$ports" | grep -F "|Symbol:      needle|Name:        Meter Needle|" >/dev/null || fail "$uri: no needle port"
  for point in '0.0 = "Input"' '1.0 = "RMS Difference Out-In"' '2.0 = "Output"'; do
    echo "$info" | grep -F "$point" >/dev/null || fail "$uri: no scale point $point for VU Mode"
  done
  echo "$info" | grep -q "Has latency:       yes, reported by port 9" || fail "$uri: latency port not recognised"
done
[ "$(lv2info urn:tessmoral:tarn#mono | grep -c 'AudioPort')" -eq 2 ] || fail "mono plug-in has not 2 audio ports"
[ "$(lv2info urn:tessmoral:tarn#stereo | grep -c 'AudioPort')" -eq 4 ] || fail "stereo plug-in has not 4 audio ports"

[ $failures -eq 0 ] && echo "lv2ls and lv2info: both plug-ins, every port as described"
[ $failures -eq 0 ]
