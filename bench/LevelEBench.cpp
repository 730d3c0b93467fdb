// The Level E model: one run (26 times, four nuclides, 32 Talbot nodes each)
// over factors drawn from the published distributions, a batch of 10,000 runs
// (to be kept under 20 s), and the tarvex-levele program end to end on a
// sample of 1,000 runs, reading the sample file and writing the output file.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <stdlib.h>

#include "model/levele/LevelEModel.h"
#include "factors/Uniform.h"
#include "sampling/PrepConfiguration.h"

namespace {

using tarvex::levele::FactorValues;
using tarvex::levele::kFactorCount;
using tarvex::levele::kFactorRanges;

// Uniform, or uniform in the logarithm for the factors spanning a decade or more.
std::vector<FactorValues> drawRuns(std::size_t count) {
    std::mt19937_64 generator(20261125);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    const bool logUniform[kFactorCount] = {false, true,  true,  true,  false, false,
                                           false, true, false, false, false, true};
    std::vector<FactorValues> runs(count);
    for (FactorValues& f : runs)
        for (int i = 0; i < kFactorCount; ++i) {
            const double low = kFactorRanges[std::size_t(i)].low, high = kFactorRanges[std::size_t(i)].high;
            const double u = unit(generator);
            f[std::size_t(i)] = logUniform[i] ? low * std::pow(high / low, u) : low + (high - low) * u;
        }
    return runs;
}

void BM_LevelEOneRun(benchmark::State& state) {
    const std::vector<FactorValues> runs = drawRuns(1000);
    const tarvex::levele::LevelEModel model;
    std::size_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(model.run(runs[next]));
        next = (next + 1) % runs.size();
    }
    state.SetItemsProcessed(int64_t(state.iterations()));
}
BENCHMARK(BM_LevelEOneRun)->Unit(benchmark::kMillisecond);

void BM_LevelETenThousandRuns(benchmark::State& state) {
    const std::vector<FactorValues> runs = drawRuns(10000);
    const tarvex::levele::LevelEModel model;
    double seconds = 0.0;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        double sum = 0.0;
        for (const FactorValues& f : runs) sum += model.run(f).total(5);
        benchmark::DoNotOptimize(sum);
        seconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    }
    state.counters["ms_per_run"] = 1e3 * seconds / (double(state.iterations()) * double(runs.size()));
}
BENCHMARK(BM_LevelETenThousandRuns)->Unit(benchmark::kSecond)->Iterations(1)->UseRealTime();

void BM_LevelEProgramThousandRuns(benchmark::State& state) {
    std::string dir = (std::filesystem::temp_directory_path() / "tarvex-bench-XXXXXX").string();
    if (::mkdtemp(dir.data()) == nullptr) {
        state.SkipWithError("no scratch directory");
        return;
    }
    // The sample as the engine writes it: the factors by name, the runs in its store.
    const std::vector<FactorValues> runs = drawRuns(1000);
    tarvex::PrepConfiguration prep;
    bool made = prep.samples.allocate(kFactorCount) == 1;
    for (const auto& range : kFactorRanges) {
        auto factor = std::make_unique<tarvex::Uniform>();
        made = made && factor->setName(std::string(range.name)) == 1 && prep.factors.addFactor(std::move(factor)) == 1;
    }
    for (const FactorValues& run : runs) made = made && prep.samples.addRow(run.data()) > 0;
    if (!made || !prep.writeSampleFile(dir + "/levelE.sam")) {
        state.SkipWithError("cannot write the sample");
        return;
    }
    const std::string command = std::string("'") + TARVEX_LEVELE_PROGRAM + "' '" + dir + "/levelE.sam'";
    for (auto _ : state) {
        if (std::system(command.c_str()) != 0) {
            state.SkipWithError("the program failed");
            break;
        }
    }
    std::filesystem::remove_all(dir);
}
BENCHMARK(BM_LevelEProgramThousandRuns)->Unit(benchmark::kSecond)->Iterations(3)->UseRealTime();

}  // namespace
