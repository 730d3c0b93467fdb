// Uncertainty statistics of 10 variables over 1,000,000 runs: moments,
// linear and logarithmic histograms, through the table's disk-backed store.
// The table is filled once; BM_UaCompute reports the seconds of one compute.
// TARVEX_BENCH_ROWS overrides the number of runs.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "common/UniformRandom.h"
#include "postproc/OutputTable.h"
#include "postproc/UaStats.h"

namespace {

constexpr int32_t kVariables = 10;

int32_t tableRows() {
    if (const char* text = std::getenv("TARVEX_BENCH_ROWS")) {
        const long n = std::strtol(text, nullptr, 10);
        if (n > 0 && n < 100000000) return static_cast<int32_t>(n);
    }
    return 1000000;
}

// Positive, skewed and of different scales, so that both tables fill.
std::unique_ptr<tarvex::OutputTable> makeTable() {
    auto table = std::make_unique<tarvex::OutputTable>();
    if (!table->allocate(kVariables)) return nullptr;
    int32_t seed = -20251125;
    std::vector<double> row(kVariables);
    for (int32_t r = 0; r < tableRows(); ++r) {
        for (int32_t c = 0; c < kVariables; ++c)
            row[size_t(c)] = std::exp((c + 1) * tarvex::uniformRandom(&seed)) * (c + 1);
        if (!table->addRow(row.data())) return nullptr;
    }
    return table;
}

void BM_UaCompute(benchmark::State& state) {
    static std::unique_ptr<tarvex::OutputTable> table = makeTable();
    if (!table) {
        state.SkipWithError("the table could not be filled");
        return;
    }
    const std::vector<std::string> names(kVariables, "v");
    tarvex::UaStats stats;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        stats.compute(names, *table);
        state.counters["seconds"] = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    }
    if (stats.countedRuns(0) != tableRows()) state.SkipWithError("runs missing from the histogram");
    state.counters["runs"] = tableRows();
    state.counters["variables"] = kVariables;
}

}  // namespace

BENCHMARK(BM_UaCompute)->Iterations(3)->Unit(benchmark::kMillisecond)->UseRealTime();
