// Elementary effects and importance measures on designs made by the program's
// own samplers, 20 uniform factors and an output that depends on all of
// them:
//   BM_MorrisCompute      Morris, 1,000 trajectories (21,000 runs)
//   BM_ImportanceCompute  replicated Latin hypercube, L = 1,000, R = 10
//                         (10,000 runs)
// The design and its outputs are made once; each iteration is one compute
// of one variable.
#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "factors/Uniform.h"
#include "postproc/ImportanceStats.h"
#include "postproc/MorrisStats.h"
#include "postproc/OutputTable.h"
#include "sampling/GenerationLoop.h"
#include "sampling/MorrisSampler.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/RepLatinSampler.h"

namespace {

constexpr int kFactors = 20;

struct Study {
    tarvex::PrepConfiguration prep;
    tarvex::OutputTable outputs;
    bool ready = false;
};

// Uniform factors on [0, 1], the sample generated, and y = sum of
// (i + 1) x_i^2 + x_0 x_1 evaluated per run.
void build(Study& study, std::unique_ptr<tarvex::Sampler> sampler) {
    for (int i = 0; i < kFactors; ++i) {
        auto u = std::make_unique<tarvex::Uniform>();
        if (!u->setName("x" + std::to_string(i))) return;
        u->clear();
        if (!u->addInterval(std::make_unique<tarvex::Interval>(0.0, 1.0, 1.0))) return;
        if (!study.prep.factors.addFactor(std::move(u))) return;
    }
    study.prep.sampler = std::move(sampler);
    if (tarvex::runGeneration(study.prep, nullptr).result != tarvex::kGenerationDone) return;
    if (!study.outputs.allocate(1)) return;
    std::vector<double> row(kFactors);
    for (int32_t r = 0; r < study.prep.samples.rowCount(); ++r) {
        if (!study.prep.samples.getRow(r, row.data())) return;
        double y = row[0] * row[1];
        for (int i = 0; i < kFactors; ++i) y += double(i + 1) * row[size_t(i)] * row[size_t(i)];
        if (!study.outputs.addRow(&y)) return;
    }
    study.ready = true;
}

std::unique_ptr<Study> morrisStudy() {
    auto study = std::make_unique<Study>();
    auto design = std::make_unique<tarvex::MorrisSampler>();
    if (!design->setLevels(4) || !design->setTrajectories(1000) || !design->setSamples(1000 * (kFactors + 1)))
        return study;
    build(*study, std::move(design));
    return study;
}

std::unique_ptr<Study> importanceStudy() {
    auto study = std::make_unique<Study>();
    auto design = std::make_unique<tarvex::RepLatinSampler>();
    if (!design->setBaseDesign(1000)) return study;
    design->setReplications(10);
    build(*study, std::move(design));
    return study;
}

template <class Stats>
void computeLoop(benchmark::State& state, Study& study) {
    if (!study.ready) {
        state.SkipWithError("the design could not be made");
        return;
    }
    Stats stats;
    stats.variableCount = 1;
    for (auto _ : state) {
        if (!stats.compute(study.prep, study.outputs)) state.SkipWithError(stats.errorText.c_str());
        benchmark::DoNotOptimize(stats.records.data());
    }
    state.counters["runs"] = study.outputs.rowCount();
    state.counters["factors"] = kFactors;
}

void BM_MorrisCompute(benchmark::State& state) {
    static std::unique_ptr<Study> study = morrisStudy();
    computeLoop<tarvex::MorrisStats>(state, *study);
}

void BM_ImportanceCompute(benchmark::State& state) {
    static std::unique_ptr<Study> study = importanceStudy();
    computeLoop<tarvex::ImportanceStats>(state, *study);
}

}  // namespace

BENCHMARK(BM_MorrisCompute)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ImportanceCompute)->Unit(benchmark::kMicrosecond);
