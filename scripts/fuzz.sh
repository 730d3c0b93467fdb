#!/usr/bin/env bash
# Runs the readers' fuzzers:  fuzz.sh SECONDS [READER...]
# Builds the libFuzzer targets with clang (address and undefined-behaviour
# sanitizers) in build-fuzz/, runs each fuzzer, or only those named (e.g. FactorFile),
# for SECONDS seconds from its committed seed corpus, and prints a table of
# executions and crashes per reader. Exits non-zero if any fuzzer found anything.
#
# Environment: FUZZ_PARALLEL fuzzers at a time (1), FUZZ_ARGS more libFuzzer
# options. What a fuzzer finds is in build-fuzz/fuzz/<Reader>/artifacts/, its
# log in build-fuzz/fuzz/<Reader>/log; inputs that reach new code gather in
# build-fuzz/fuzz/<Reader>/corpus/ and are used again by the next run.
set -euo pipefail
cd "$(dirname "$0")/.."

if [ $# -lt 1 ] || ! [[ $1 =~ ^[0-9]+$ ]]; then
  echo "usage: $(basename "$0") SECONDS [READER...]" >&2
  exit 2
fi
seconds=$1
shift
parallel=${FUZZ_PARALLEL:-1}

readers=("$@")
if [ ${#readers[@]} -eq 0 ]; then
  for harness in tests/fuzz/*Fuzz.cpp; do readers+=("$(basename "$harness" Fuzz.cpp)"); done
fi
for reader in "${readers[@]}"; do
  if [ ! -f "tests/fuzz/${reader}Fuzz.cpp" ]; then
    echo "fuzz: no harness tests/fuzz/${reader}Fuzz.cpp" >&2
    exit 2
  fi
done

bash scripts/setup-deps.sh
CC=clang CXX=clang++ cmake -S . -B build-fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DTARVEX_FUZZ=ON -DTARVEX_GUI=OFF -DTARVEX_BENCH=OFF >/dev/null
targets=()
for reader in "${readers[@]}"; do targets+=("fuzz-$reader"); done
cmake --build build-fuzz -j "$(nproc 2>/dev/null || echo 2)" --target "${targets[@]}"

# One fuzzer: a hang is an input that takes over five seconds (every input
# of the seed corpora takes milliseconds; a shorter limit flags plain inputs
# when the machine is busy); lines up to a few kilobytes long are in reach.
run_one() {
  local reader=$1 dir=build-fuzz/fuzz/$1
  # Scratch and working files go to memory where there is a file system for
  # it: the writers sync every file they save, which on a disk would cost more
  # than the reading.
  local tmp=$PWD/$dir/tmp
  if [ -d /dev/shm ] && [ -w /dev/shm ]; then tmp=/dev/shm/tarvex-fuzz-$reader; fi
  rm -rf "$dir/artifacts" "$tmp"
  mkdir -p "$dir/corpus" "$dir/artifacts" "$tmp"
  TMPDIR=$tmp ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
    "build-fuzz/tests/fuzz-$reader" -max_total_time="$seconds" -timeout=5 -rss_limit_mb=2048 \
    -max_len=8192 -print_final_stats=1 -artifact_prefix="$dir/artifacts/" ${FUZZ_ARGS:-} \
    "$dir/corpus" "tests/fuzz/corpus/$reader" >"$dir/log" 2>&1 || true
  rm -rf "$tmp"
}

running=0
for reader in "${readers[@]}"; do
  run_one "$reader" &
  running=$((running + 1))
  if [ "$running" -ge "$parallel" ]; then
    wait -n || true
    running=$((running - 1))
  fi
done
wait

failed=0
printf '%-20s %12s %8s\n' reader executions crashes
for reader in "${readers[@]}"; do
  dir=build-fuzz/fuzz/$reader
  runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$dir/log" | tail -n 1)
  crashes=$(find "$dir/artifacts" -type f | wc -l)
  # A run that ended without its statistics died in a way libFuzzer could not report.
  if [ -z "$runs" ]; then runs="?"; crashes=$((crashes > 0 ? crashes : 1)); fi
  printf '%-20s %12s %8s\n' "$reader" "$runs" "$crashes"
  if [ "$crashes" -gt 0 ]; then failed=1; fi
done
if [ "$failed" -ne 0 ]; then
  echo "fuzz: findings in build-fuzz/fuzz/*/artifacts (logs beside them)" >&2
  exit 1
fi
