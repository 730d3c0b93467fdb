// Regression and rank measures (all seven, with significance and ranks) of 2
// variables over a Latin hypercube of 100,000 runs by 20 factors, read from
// the disk-backed sample store and output table. The sample and the outputs
// are made once; BM_RegressionCompute reports the seconds of one compute.
// TARVEX_BENCH_ROWS overrides the number of runs.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <string>
#include <vector>

#include "factors/Interval.h"
#include "factors/Normal.h"
#include "factors/Uniform.h"
#include "postproc/OutputTable.h"
#include "postproc/RegressionStats.h"
#include "sampling/GenerationLoop.h"
#include "sampling/LatinSampler.h"
#include "sampling/PrepConfiguration.h"

namespace {

constexpr int32_t kFactors = 20;
constexpr int32_t kVariables = 2;

int32_t sampleRows() {
    if (const char* text = std::getenv("TARVEX_BENCH_ROWS")) {
        const long n = std::strtol(text, nullptr, 10);
        if (n > 0 && n < 100000000) return static_cast<int32_t>(n);
    }
    return 100000;
}

// Processor seconds of the whole process, worker threads included: on a
// shared machine the wall clock also counts the time others hold the cores.
double processSeconds() {
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + 1e-9 * static_cast<double>(t.tv_nsec);
}

struct Problem {
    tarvex::PrepConfiguration prep;
    tarvex::OutputTable outputs;
    bool ok = false;
};

// Uniform and normal factors; a linear output with falling weights and a
// non-monotonic one.
std::unique_ptr<Problem> makeProblem() {
    auto problem = std::make_unique<Problem>();
    for (int32_t f = 0; f < kFactors; ++f) {
        std::unique_ptr<tarvex::Factor> factor;
        if (f % 2 == 0) {
            auto u = std::make_unique<tarvex::Uniform>();
            u->clear();
            if (!u->addInterval(std::make_unique<tarvex::Interval>(0.0, 1.0 + f, 1.0))) return nullptr;
            factor = std::move(u);
        } else {
            auto n = std::make_unique<tarvex::Normal>();
            if (!n->setMean(f) || !n->setStdDeviation(1.0)) return nullptr;
            factor = std::move(n);
        }
        if (!factor->setName("x" + std::to_string(f)) || !problem->prep.factors.addFactor(std::move(factor)))
            return nullptr;
    }
    auto sampler = std::make_unique<tarvex::LatinSampler>();
    if (!sampler->setSamples(sampleRows())) return nullptr;
    problem->prep.sampler = std::move(sampler);
    if (tarvex::runGeneration(problem->prep, nullptr).result != tarvex::kGenerationDone) return nullptr;

    if (!problem->outputs.allocate(kVariables)) return nullptr;
    std::vector<double> row(kFactors);
    for (int32_t r = 0; r < sampleRows(); ++r) {
        if (!problem->prep.samples.getRow(r, row.data())) return nullptr;
        double linear = 0.0;
        for (int32_t f = 0; f < kFactors; ++f) linear += row[size_t(f)] / (1.0 + f);
        const double values[kVariables] = {linear, std::sin(row[0]) + 7.0 * std::sin(row[2]) * std::sin(row[2]) +
                                                       0.1 * std::pow(row[4], 4.0) * std::sin(row[0])};
        if (!problem->outputs.addRow(values)) return nullptr;
    }
    problem->ok = true;
    return problem;
}

void BM_RegressionCompute(benchmark::State& state) {
    static std::unique_ptr<Problem> problem = makeProblem();
    if (!problem || !problem->ok) {
        state.SkipWithError("the sample could not be made");
        return;
    }
    tarvex::RegressionStats stats;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        const double processStart = processSeconds();
        if (!stats.compute(problem->prep, problem->outputs)) state.SkipWithError(stats.errorText.c_str());
        state.counters["seconds"] = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        state.counters["processorSeconds"] = processSeconds() - processStart;
    }
    state.counters["runs"] = sampleRows();
    state.counters["factors"] = kFactors;
    state.counters["variables"] = kVariables;
}
}  // namespace

BENCHMARK(BM_RegressionCompute)->Iterations(5)->Unit(benchmark::kMillisecond)->UseRealTime();
