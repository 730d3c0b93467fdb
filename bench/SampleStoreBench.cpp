// Throughput of the sample store on a table far larger than its window:
// 5 million rows by 20 columns (100 million doubles, 800 MB) written and read
// back by rows and by columns, with the peak resident memory of the process.
//
// Passes run in this order on one store: WriteRows (addRow), ReadRows
// (getRow), WriteColumns (setColumnValue over every cell), ReadColumns
// (getColumnValue). Every read is checked against what was written.
// TARVEX_BENCH_ROWS overrides the number of rows.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <memory>
#include <string>
#include <sys/resource.h>
#include <vector>

#include "common/UniformRandom.h"
#include "sampling/sampValues.h"

namespace {

using tarvex::sampValues;

constexpr int32_t kColumns = 20;

int32_t tableRows() {
    if (const char* text = std::getenv("TARVEX_BENCH_ROWS")) {
        const long n = std::strtol(text, nullptr, 10);
        if (n > 0 && n < 100000000) return static_cast<int32_t>(n);
    }
    return 5000000;
}

// Exact in binary, different in every cell and in every pass.
double cell(int32_t row, int32_t column, int pass) { return row * 64.0 + column + pass * 0.5; }

double peakResidentMB() {
    struct rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_maxrss) / 1024.0;  // ru_maxrss is in kilobytes on Linux
}

std::unique_ptr<sampValues> store;
int lastPass = -1;  // which pass the store's values come from

void report(benchmark::State& state, double seconds) {
    const double megabytes = double(tableRows()) * kColumns * sizeof(double) / 1e6;
    state.counters["MB"] = megabytes;
    state.counters["MB/s"] = megabytes / seconds;
    state.counters["peakRSS_MB"] = peakResidentMB();
}

using Clock = std::chrono::steady_clock;
double since(Clock::time_point start) { return std::chrono::duration<double>(Clock::now() - start).count(); }

// false when the store refuses a step.
bool writeRows() {
    const int32_t rows = tableRows();
    store = std::make_unique<sampValues>();
    bool ok = store->allocate(kColumns) == 1;
    std::vector<double> row(kColumns);
    for (int32_t r = 0; r < rows && ok; ++r) {
        for (int32_t c = 0; c < kColumns; ++c) row[size_t(c)] = cell(r, c, 0);
        ok = store->addRow(row.data()) != 0;
    }
    ok = ok && store->setColumnMode(1);  // pushes the last window out, so the pass ends on disk
    lastPass = 0;
    return ok;
}

void BM_WriteRows(benchmark::State& state) {
    for (auto _ : state) {
        store.reset();
        const auto start = Clock::now();
        const bool written = writeRows();
        report(state, since(start));
        if (!written) state.SkipWithError(store->errorText().c_str());
    }
}

void BM_ReadRows(benchmark::State& state) {
    if (!store && !writeRows()) state.SkipWithError(store->errorText().c_str());
    const int32_t rows = tableRows();
    std::vector<double> row(kColumns);
    for (auto _ : state) {
        bool ok = store->setColumnMode(1);  // start from an empty row window
        const auto start = Clock::now();
        for (int32_t r = 0; r < rows; ++r) {
            ok &= store->getRow(r, row.data()) == 1;
            for (int32_t c = 0; c < kColumns; ++c) ok &= row[size_t(c)] == cell(r, c, lastPass);
        }
        report(state, since(start));
        if (!ok) state.SkipWithError("a row came back different");
    }
}

void BM_WriteColumns(benchmark::State& state) {
    if (!store && !writeRows()) state.SkipWithError(store->errorText().c_str());
    const int32_t rows = tableRows();
    for (auto _ : state) {
        const auto start = Clock::now();
        bool ok = true;
        for (int32_t c = 0; c < kColumns; ++c)
            for (int32_t r = 0; r < rows; ++r) ok &= store->setColumnValue(r, c, cell(r, c, 1)) == 1;
        ok &= store->setColumnMode(0) == 1;  // flushes the last column window
        lastPass = 1;
        report(state, since(start));
        if (!ok) state.SkipWithError(store->errorText().c_str());
    }
}

void BM_ReadColumns(benchmark::State& state) {
    if (!store && !writeRows()) state.SkipWithError(store->errorText().c_str());
    const int32_t rows = tableRows();
    for (auto _ : state) {
        bool ok = store->setColumnMode(0);
        const auto start = Clock::now();
        double x = 0;
        for (int32_t c = 0; c < kColumns; ++c)
            for (int32_t r = 0; r < rows; ++r) {
                ok &= store->getColumnValue(r, c, &x) == 1;
                ok &= x == cell(r, c, lastPass);
            }
        report(state, since(start));
        if (!ok) state.SkipWithError("a column came back different");
    }
}

void BM_Release(benchmark::State& state) {
    for (auto _ : state) store.reset();
    state.counters["peakRSS_MB"] = peakResidentMB();
}

void BM_UniformRandom(benchmark::State& state) {
    int32_t seed = -5648423;
    for (auto _ : state) benchmark::DoNotOptimize(tarvex::uniformRandom(&seed));
    state.SetItemsProcessed(state.iterations());
}

}  // namespace

BENCHMARK(BM_WriteRows)->Iterations(1)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_ReadRows)->Iterations(1)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_WriteColumns)->Iterations(1)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_ReadColumns)->Iterations(1)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_Release)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_UniformRandom);
