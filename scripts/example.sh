#!/usr/bin/env bash
# The built-in example end to end: installs what is needed, builds the batch
# tool alone (engine, no desktop program, no tests) in build-example/, and runs
# the Ishigami case, whose Sobol' indices are printed beside the exact ones.
# Arguments are passed on: scripts/example.sh --base 16384 --json
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/setup-deps.sh

jobs=$(nproc 2>/dev/null || echo 2)
cmake -S . -B build-example -G Ninja -DCMAKE_BUILD_TYPE=Release \
      -DTARVEX_GUI=OFF -DTARVEX_TESTS=OFF -DTARVEX_BENCH=OFF
cmake --build build-example -j "$jobs" --target tarvex-batch
build-example/stage/bin/tarvex-batch example ishigami "$@"
