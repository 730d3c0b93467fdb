// Sobol and FAST indices on samples of the program's own designs:
//   BM_SobolFirstTotal/k/B    first and total order, k uniform factors, base
//                             size B, (2k + 2) B runs of a G function;
//   BM_FastExtended/k/n       extended FAST (one block per factor), k
//                             factors, a budget of n runs.
// The sample and the outputs are made once per case; an iteration is one
// compute, through the table's disk-backed store. Wall-clock time: long
// FAST curves share their frequencies among threads.
#include <benchmark/benchmark.h>

#include <cmath>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "factors/Interval.h"
#include "factors/Uniform.h"
#include "postproc/FastStats.h"
#include "postproc/OutputTable.h"
#include "postproc/SobolStats.h"
#include "sampling/FastSampler.h"
#include "sampling/GenerationLoop.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/SobolSampler.h"

namespace {

struct Case {
    tarvex::PrepConfiguration prep;
    tarvex::OutputTable table;
    bool ready = false;
};

// G function with a_i = 0, 1, 4.5, 9, 99, 99, ...
double gFunction(const double* x, int32_t k) {
    double y = 1.0;
    for (int32_t i = 0; i < k; ++i) {
        const double a = i == 0 ? 0.0 : i == 1 ? 1.0 : i == 2 ? 4.5 : i == 3 ? 9.0 : 99.0;
        y *= (std::fabs(4.0 * x[i] - 2.0) + a) / (1.0 + a);
    }
    return y;
}

bool prepare(Case& c, int32_t k, std::unique_ptr<tarvex::Sampler> sampler) {
    for (int32_t i = 0; i < k; ++i) {
        auto u = std::make_unique<tarvex::Uniform>();
        if (!u->setName("x" + std::to_string(i + 1))) return false;
        u->clear();
        if (!u->addInterval(std::make_unique<tarvex::Interval>(0.0, 1.0, 1.0))) return false;
        if (!c.prep.factors.addFactor(std::move(u))) return false;
    }
    c.prep.sampler = std::move(sampler);
    if (tarvex::runGeneration(c.prep, nullptr).result != tarvex::kGenerationDone) return false;
    if (!c.table.allocate(1)) return false;
    std::vector<double> x(static_cast<size_t>(k));
    for (int32_t r = 0; r < c.prep.samples.rowCount(); ++r) {
        if (!c.prep.samples.getRow(r, x.data())) return false;
        const double y = gFunction(x.data(), k);
        if (!c.table.addRow(&y)) return false;
    }
    c.ready = true;
    return true;
}

template <class Stats>
void run(benchmark::State& state, Case& c) {
    Stats stats;
    stats.variableCount = 1;
    for (auto _ : state) {
        if (!stats.compute(c.prep, c.table)) {
            state.SkipWithError(stats.errorText.c_str());
            return;
        }
        benchmark::DoNotOptimize(stats.records.data());
    }
    state.counters["runs"] = c.table.rowCount();
}

void BM_SobolFirstTotal(benchmark::State& state) {
    static std::map<std::pair<int64_t, int64_t>, Case> cases;
    const int32_t k = int32_t(state.range(0)), base = int32_t(state.range(1));
    Case& c = cases[{k, base}];
    if (!c.ready) {
        auto sobol = std::make_unique<tarvex::SobolSampler>();
        sobol->setDesignKind(1);
        if (!sobol->setBaseSize(base) || !sobol->setSamples((2 * k + 2) * base) || !prepare(c, k, std::move(sobol))) {
            state.SkipWithError("the sample could not be made");
            return;
        }
    }
    run<tarvex::SobolStats>(state, c);
}
// k = 10 at B = 16384; k = 3 at B = 65536 (524,288 runs, the size of a
// common Ishigami study).
BENCHMARK(BM_SobolFirstTotal)->Args({10, 16384})->Args({3, 65536})->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_FastExtended(benchmark::State& state) {
    static std::map<std::pair<int64_t, int64_t>, Case> cases;
    const int32_t k = int32_t(state.range(0)), n = int32_t(state.range(1));
    Case& c = cases[{k, n}];
    if (!c.ready) {
        auto fast = std::make_unique<tarvex::FastSampler>();
        if (!fast->setAnalysisMode(1) || !fast->setSamples(n) || !prepare(c, k, std::move(fast))) {
            state.SkipWithError("the sample could not be made");
            return;
        }
    }
    run<tarvex::FastStats>(state, c);
}
BENCHMARK(BM_FastExtended)->Args({10, 100000})->Args({10, 10000})->Args({3, 10000})->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
