// A whole sample, as the program makes it: a Latin hypercube of 1,000,000 runs
// over 20 factors (10 Normal, 10 Uniform) with Iman-Conover rank correlation,
// driven by the generation loop (targets 1, 2, ... 100), through the value
// pass, to a written .sam file.
//
// Counters: wall seconds of the design (0-50, including the rank table), of
// the value pass and statistics (50-100), of writing the file; the processor
// seconds of each (all threads; the value pass maps chunks of a column on all
// processors); and the peak resident memory of the process. TARVEX_BENCH_ROWS overrides the number of
// runs.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <sys/resource.h>
#include <unistd.h>

#include "factors/Normal.h"
#include "factors/Uniform.h"
#include "sampling/LatinSampler.h"
#include "sampling/PrepConfiguration.h"

namespace {

using namespace tarvex;
using Clock = std::chrono::steady_clock;

int32_t sampleRows() {
    if (const char* text = std::getenv("TARVEX_BENCH_ROWS")) {
        const long n = std::strtol(text, nullptr, 10);
        if (n > 0 && n < 100000000) return static_cast<int32_t>(n);
    }
    return 1000000;
}

double since(Clock::time_point start) { return std::chrono::duration<double>(Clock::now() - start).count(); }

// Processor seconds of the whole process, all threads: the work done,
// whatever else the machine is running.
double processorSeconds() {
    struct rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_utime.tv_sec) + double(usage.ru_stime.tv_sec) +
           1e-6 * double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec);
}

double peakResidentMB() {
    struct rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_maxrss) / 1024.0;
}

// false when a setting is refused: the figures would be those of another project.
bool makeConfiguration(int32_t rows, PrepConfiguration& config) {
    bool ok = true;
    for (int i = 0; i < 10; ++i) {
        auto n = std::make_unique<Normal>();
        ok = ok && n->setName(std::string(1, 'n').append(std::to_string(i)));
        ok = ok && n->setMean(double(i)) && n->setStdDeviation(1.0 + 0.1 * i);
        ok = ok && config.factors.addFactor(std::move(n));
    }
    for (int i = 0; i < 10; ++i) {
        auto u = std::make_unique<Uniform>();
        ok = ok && u->setName(std::string(1, 'u').append(std::to_string(i)));
        u->clear();
        ok = ok && u->addInterval(std::make_unique<Interval>(-double(i), double(i + 1), 1.0));
        ok = ok && config.factors.addFactor(std::move(u));
    }
    // A chain of neighbouring correlations, positive definite.
    for (int i = 0; i + 1 < 20; ++i) ok = ok && config.factors.setMatrixValue(i, i + 1, i % 2 ? 0.4 : -0.3);
    config.factors.correlationMode = kImanConoverCorrelation;
    auto latin = std::make_unique<LatinSampler>();
    ok = ok && latin->setSamples(rows) && latin->setSeed(12345);
    config.sampler = std::move(latin);
    return ok;
}

void BM_LatinImanConoverSample(benchmark::State& state) {
    const int32_t rows = sampleRows();
    char name[64];
    std::snprintf(name, sizeof name, "tarvex-bench-%d.sam", int(getpid()));
    const std::string file = (std::filesystem::temp_directory_path() / name).string();
    for (auto _ : state) {
        PrepConfiguration config;
        if (!makeConfiguration(rows, config)) {
            state.SkipWithError("a setting of the project was refused");
            break;
        }
        config.sampleFile = file;
        config.prepareGeneration();

        auto start = Clock::now();
        double cpu = processorSeconds();
        int target = 1;
        int percent = config.generate(target);
        while (percent >= 0 && percent < 50) percent = config.generate(++target);
        const double design = since(start);
        const double designCpu = processorSeconds() - cpu;

        start = Clock::now();
        cpu = processorSeconds();
        while (percent >= 0 && percent < 100) percent = config.generate(++target);
        const double values = since(start);
        const double valuesCpu = processorSeconds() - cpu;
        if (percent != 100) {
            state.SkipWithError(config.sampler->errorText().c_str());
            break;
        }

        start = Clock::now();
        cpu = processorSeconds();
        const int written = config.writeSampleFile(file);
        const double writing = since(start);
        const double writingCpu = processorSeconds() - cpu;
        if (!written) {
            state.SkipWithError(config.errorText().c_str());
            break;
        }
        state.counters["rows"] = rows;
        state.counters["design_s"] = design;
        state.counters["valuePass_s"] = values;
        state.counters["write_s"] = writing;
        state.counters["total_s"] = design + values + writing;
        state.counters["design_cpu_s"] = designCpu;
        state.counters["valuePass_cpu_s"] = valuesCpu;
        state.counters["write_cpu_s"] = writingCpu;
        state.counters["file_MB"] = double(std::filesystem::file_size(file)) / 1e6;
        state.counters["peakRSS_MB"] = peakResidentMB();
    }
    std::remove(file.c_str());
}
BENCHMARK(BM_LatinImanConoverSample)->Iterations(1)->Unit(benchmark::kSecond)->UseRealTime();

}  // namespace
