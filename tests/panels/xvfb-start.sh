#!/usr/bin/env bash
# Installs the build into a fresh directory and starts the desktop program there the
# way a user does (the start script, from a directory of its own) on a virtual X
# display; the program photographs its main panel, and the picture is checked.
#   xvfb-start.sh BUILD_DIR CHECKER OUTPUT.png
set -euo pipefail
build=$1
checker=$2
out=$3

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"${CMAKE_COMMAND:-cmake}" --install "$build" --prefix "$work/inst" >/dev/null
mkdir "$work/run"
cd "$work/run"

# A real X server: the program must not fall back to the offscreen platform.
unset QT_QPA_PLATFORM WAYLAND_DISPLAY
rm -f "$out"
# Our own server, started with -displayfd: it picks a free display and writes the
# number only once it accepts connections. xvfb-run's choice of display and its
# readiness signal race when the machine is loaded or another server is starting.
Xvfb -displayfd 3 -screen 0 1024x768x24 -nolisten tcp -noreset 3>"$work/display" 2>"$work/xvfb.log" &
xvfb_pid=$!
trap 'kill "$xvfb_pid" 2>/dev/null; wait "$xvfb_pid" 2>/dev/null; rm -rf "$work"' EXIT
for _ in $(seq 300); do
  [ -s "$work/display" ] && break
  kill -0 "$xvfb_pid" 2>/dev/null || { cat "$work/xvfb.log" >&2; echo "Xvfb did not start" >&2; exit 1; }
  sleep 0.1
done
[ -s "$work/display" ] || { echo "Xvfb gave no display" >&2; exit 1; }
export DISPLAY=":$(tr -d '[:space:]' < "$work/display")"
TARVEX_SCREENSHOT="$out" timeout 120 "$work/inst/bin/tarvex-start.sh" "$work/inst"
[ "$(sed -n 2p Tarvex.cfg)" = 1 ] || { echo "Tarvex.cfg was not rewritten with the mark 1" >&2; exit 1; }
"$checker" "$out"
