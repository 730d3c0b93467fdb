// The quasi-random designs: an LP-tau sample of 2^20 points in 20 dimensions,
// by the point generator alone (one XOR and one scaling per coordinate) and
// through LpTauSampler into a sample store; and a Sobol first-and-total design
// with base size 4096 over 20 factors (42 blocks, 172,032 runs) through
// SobolSampler into a sample store. The design only (percents 0-50, targets
// 1, 2, ... 50 as the generation loop gives them), no value pass.
//
// For scale: a widely used library makes a 2^20 x 20 Sobol sequence in about
// 0.22 s on the development machine.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "correlation/FactorList.h"
#include "factors/Uniform.h"
#include "sampling/LpTauGenerator.h"
#include "sampling/LpTauSampler.h"
#include "sampling/SobolSampler.h"
#include "sampling/sampValues.h"

namespace {

using namespace tarvex;

constexpr int32_t kPoints = 1 << 20;
constexpr int32_t kDimensions = 20;

// false when a factor is refused: the figures would be those of another design.
bool uniformFactors(FactorList& list, int count) {
    bool ok = true;
    for (int i = 0; i < count; ++i) {
        auto u = std::make_unique<Uniform>();
        ok = ok && u->setName("u" + std::to_string(i));
        u->clear();
        ok = ok && u->addInterval(std::make_unique<Interval>(0.0, 1.0, 1.0));
        ok = ok && list.addFactor(std::move(u));
    }
    list.computeFactorOrder();
    return ok;
}

// 0-50 in steps of one percent; false on failure.
bool design(Sampler& sampler, sampValues& store, FactorList& list) {
    sampler.reset();
    float reached = 0.0f;
    for (int target = 1; target <= 50 && reached >= 0.0f; ++target) reached = sampler.generate(float(target), store, list);
    return reached == 50.0f;
}

void BM_LpTauPoints(benchmark::State& state) {
    std::vector<double> point;
    double sum = 0.0;
    for (auto _ : state) {
        for (int32_t n = 1; n <= kPoints; ++n) {
            if (!lpTauPoint(n, kDimensions, point)) {
                state.SkipWithError("lpTauPoint refused a point");
                return;
            }
            sum += point[size_t(n % kDimensions)];
        }
        benchmark::DoNotOptimize(sum);
    }
    state.counters["points"] = kPoints;
    state.counters["coordinates/s"] =
        benchmark::Counter(double(kPoints) * kDimensions, benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK(BM_LpTauPoints)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(1.0);

void BM_LpTauSamplerDesign(benchmark::State& state) {
    FactorList list;
    if (!uniformFactors(list, kDimensions)) {
        state.SkipWithError("a factor was refused");
        return;
    }
    LpTauSampler sampler;
    if (!sampler.setSamples(kPoints)) {
        state.SkipWithError("sample size refused");
        return;
    }
    for (auto _ : state) {
        sampValues store;
        if (!design(sampler, store, list)) {
            state.SkipWithError(sampler.errorText().c_str());
            return;
        }
        benchmark::DoNotOptimize(store.rowCount());
    }
    state.counters["runs"] = kPoints;
}
BENCHMARK(BM_LpTauSamplerDesign)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

void BM_SobolDesign(benchmark::State& state) {
    FactorList list;
    if (!uniformFactors(list, kDimensions)) {
        state.SkipWithError("a factor was refused");
        return;
    }
    SobolSampler sampler;
    sampler.setDesignKind(1);
    const int64_t runs = 4096 * SobolSampler::blockCount(kDimensions, 1, 0, false);
    if (!sampler.setBaseSize(4096) || !sampler.setSamples(int32_t(runs))) {
        state.SkipWithError("design size refused");
        return;
    }
    for (auto _ : state) {
        sampValues store;
        if (!design(sampler, store, list) || store.rowCount() != runs) {
            state.SkipWithError(sampler.errorText().c_str());
            return;
        }
    }
    state.counters["runs"] = double(runs);
}
BENCHMARK(BM_SobolDesign)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(5);

}  // namespace
