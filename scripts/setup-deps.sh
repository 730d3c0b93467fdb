#!/usr/bin/env bash
# Installs every Debian package Tarvex needs to build, test and run (engine, GUI,
# plots, batch tool, benchmarks, and the readers' fuzzers: clang, whose runtime
# package holds libFuzzer; ghostscript and poppler-utils read the figures back in
# the plot tests). Safe to run again: it installs only what is missing.
set -euo pipefail

PACKAGES=(
  g++ cmake ninja-build ccache pkg-config
  libgtest-dev libgmock-dev libbenchmark-dev
  libboost-math-dev libeigen3-dev libcli11-dev nlohmann-json3-dev
  qt6-base-dev qt6-tools-dev qt6-tools-dev-tools libqt6opengl6-dev libgl-dev libxcb1-dev
  libcairo2-dev
  fonts-dejavu-core xvfb xauth
  ghostscript poppler-utils
  clang libclang-rt-14-dev
)

missing=()
for p in "${PACKAGES[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  echo "setup-deps: all ${#PACKAGES[@]} packages present"
  exit 0
fi

echo "setup-deps: installing ${missing[*]}"
SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
echo "setup-deps: done"
