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
TARVEX_SCREENSHOT="$out" timeout 120 \
  xvfb-run -a -s "-screen 0 1024x768x24" "$work/inst/bin/tarvex-start.sh" "$work/inst"
[ "$(sed -n 2p Tarvex.cfg)" = 1 ] || { echo "Tarvex.cfg was not rewritten with the mark 1" >&2; exit 1; }
"$checker" "$out"
