#!/usr/bin/env bash
# The whole test suite: installs dependencies, builds everything with warnings as
# errors, runs every test, then builds the engine with address and
# undefined-behaviour sanitizers and runs the engine's tests again.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/setup-deps.sh

jobs=$(nproc 2>/dev/null || echo 2)

echo "== build (warnings as errors)"
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTARVEX_WERROR=ON
cmake --build build -j "$jobs"
echo "== test"
ctest --test-dir build --output-on-failure -j "$jobs"

echo "== sanitizer build of the engine"
cmake -S . -B build-san -G Ninja -DCMAKE_BUILD_TYPE=Debug -DTARVEX_WERROR=ON \
      -DTARVEX_SANITIZE=ON -DTARVEX_GUI=OFF -DTARVEX_BENCH=OFF
cmake --build build-san -j "$jobs"
# fontconfig's caches, reached through the plots' text, are never freed: only they
# are suppressed.
ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
  LSAN_OPTIONS="suppressions=$PWD/scripts/lsan-suppressions.txt" \
  ctest --test-dir build-san --output-on-failure -j "$jobs"
