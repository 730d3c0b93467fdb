#!/usr/bin/env bash
# Starts the desktop program from the current directory against an installation:
#   tarvex-start.sh INSTALLDIR [args...]
# The program finds its installation through ./Tarvex.cfg (the directory, then the
# installation mark). A fresh file gets the mark 0, so that the first start puts the
# installation directory into the demonstration files.
#
# An existing Tarvex.cfg is left alone: the program rewrites it with a non-zero mark once
# the demonstration files are repaired, and setting the mark back to 0 would run the repair
# again on files that are already repaired (each pass appends an empty line to them).
set -euo pipefail

if [ $# -lt 1 ]; then
  echo "usage: $(basename "$0") INSTALLDIR [args...]" >&2
  exit 2
fi
install_dir=$1
shift
if [ ! -d "$install_dir" ]; then
  echo "tarvex-start: $install_dir is not a directory" >&2
  exit 2
fi
# Absolute, without a trailing separator: the program forms its paths as MainDir + "/x"
# and changes its current directory as it runs.
install_dir=$(cd "$install_dir" && pwd)

if [ -e Tarvex.cfg ]; then
  current=$(head -n 1 Tarvex.cfg || true)
  if [ "$current" != "$install_dir" ]; then
    echo "tarvex-start: keeping ./Tarvex.cfg, which names $current" >&2
  fi
else
  printf '%s\n%d\n' "$install_dir" 0 > Tarvex.cfg
fi

program=$install_dir/bin/tarvex
if [ ! -x "$program" ]; then
  echo "tarvex-start: $program is not built (configure with -DTARVEX_GUI=ON and build the target tarvex)" >&2
  exit 1
fi
exec "$program" "$@"
