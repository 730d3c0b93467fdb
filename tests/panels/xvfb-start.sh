#!/usr/bin/env bash
# Starts the desktop program the way a user does (the start script, from a fresh
# directory, against a copy of the staged installation tree) on a virtual X display,
# lets it photograph its main panel, and checks the picture.
#   xvfb-start.sh STAGE_DIR CHECKER OUTPUT.png
set -euo pipefail
stage=$1
checker=$2
out=$3

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp -r "$stage" "$work/inst"
cd "$work"

# A real X server: the program must not fall back to the offscreen platform.
unset QT_QPA_PLATFORM WAYLAND_DISPLAY
rm -f "$out"
TARVEX_SCREENSHOT="$out" timeout 120 \
  xvfb-run -a -s "-screen 0 1024x768x24" "$work/inst/bin/tarvex-start.sh" "$work/inst"
[ "$(sed -n 2p Tarvex.cfg)" = 1 ] || { echo "Tarvex.cfg was not rewritten with the mark 1" >&2; exit 1; }
"$checker" "$out"
