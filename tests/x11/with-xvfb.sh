#!/usr/bin/env bash
# Runs a program on a private Xvfb display, which is ended by its process id afterwards.
#   with-xvfb.sh PROGRAM [ARGS...]
set -u
command -v Xvfb >/dev/null || { echo "SKIP: no Xvfb (Debian package xvfb)"; exit 77; }
dir=$(mktemp -d) && trap 'kill "$xvfb" 2>/dev/null && wait "$xvfb"; rm -rf "$dir"' EXIT || exit 1
# -noreset: the server would otherwise restart, refusing connections, each time its last client left
Xvfb -displayfd 3 -screen 0 640x480x24 -nolisten tcp -noreset 3>"$dir/display" 2>"$dir/log" & xvfb=$!
for _ in $(seq 100); do [ -s "$dir/display" ] && break; sleep 0.1; done
[ -s "$dir/display" ] || { cat "$dir/log"; echo "FAIL: Xvfb did not start"; exit 1; }
DISPLAY=:$(head -n 1 "$dir/display") "$@"
exit $?
