// Rows per second of the Ishigami function written as an internal model
// (three variables, one output) over 100,000 sample rows: the text form
// (every equation built and parsed for every row) against the compiled form
// (values rounded once per row, equations run as register code).
// The pieces of the compiled row are timed apart to show where its time goes:
// the "%g" rounding of the three inputs, and the replay of the equation.
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <vector>

#include "model/InternalModel.h"
#include "model/ModelConfiguration.h"
#include "sampling/sampValues.h"
#include "model/BoundValue.h"

namespace {

using tarvex::InternalModel;

constexpr int kRows = 100000;
constexpr double kPi = 3.14159265358979323846;

// false when the model refuses a variable or the equation.
bool ishigami(InternalModel& m) {
    m.setName("ishigami");
    return m.addVariable("x1") && m.addVariable("x2") && m.addVariable("x3") &&
           m.addExpression(0, "y", "sin(x1) + 7 * sin(x2) ** 2 + 0.1 * x3 ** 4 * sin(x1)", 1);
}

const std::vector<double>& rows() {
    static const std::vector<double> values = [] {
        std::mt19937_64 rng(2026);
        std::uniform_real_distribution<double> u(-kPi, kPi);
        std::vector<double> v(static_cast<std::size_t>(kRows) * 3);
        for (double& x : v) x = u(rng);
        return v;
    }();
    return values;
}

void report(benchmark::State& state) {
    state.counters["rows/s"] = benchmark::Counter(static_cast<double>(state.iterations()) * kRows, benchmark::Counter::kIsRate);
}

void BM_IshigamiTextForm(benchmark::State& state) {
    InternalModel m;
    if (!ishigami(m)) state.SkipWithError(m.errorText().c_str());
    const std::vector<double>& v = rows();
    double y = 0.0;
    int ok = 1;
    for (auto _ : state) {
        for (int r = 0; r < kRows; ++r) ok &= m.evaluateText(v.data() + 3 * r, &y) != 0;
        benchmark::DoNotOptimize(y);
    }
    if (!ok) state.SkipWithError(m.errorText().c_str());
    report(state);
}
BENCHMARK(BM_IshigamiTextForm)->Unit(benchmark::kMillisecond);

void BM_IshigamiCompiledForm(benchmark::State& state) {
    InternalModel m;
    if (!ishigami(m)) state.SkipWithError(m.errorText().c_str());
    const std::vector<double>& v = rows();
    double y = 0.0;
    int ok = 1;
    for (auto _ : state) {
        for (int r = 0; r < kRows; ++r) ok &= m.evaluate(v.data() + 3 * r, &y) != 0;
        benchmark::DoNotOptimize(y);
    }
    if (!ok) state.SkipWithError(m.errorText().c_str());
    report(state);
}
BENCHMARK(BM_IshigamiCompiledForm)->Unit(benchmark::kMillisecond);

// A whole internal run as the run controller makes it: rows fetched from the
// sample store, results appended to the configuration's data file, one
// percent per call.
void BM_IshigamiInternalRun(benchmark::State& state) {
    tarvex::sampValues samples;
    bool ok = samples.allocate(3) == 1;
    const std::vector<double>& v = rows();
    for (int r = 0; r < kRows; ++r) ok = ok && samples.addRow(v.data() + 3 * r) != 0;
    auto model = std::make_unique<InternalModel>();
    ok = ok && ishigami(*model);
    tarvex::ModelConfiguration config;
    config.setInternalModel(std::move(model));
    if (!ok) state.SkipWithError("the sample or the model could not be made");
    for (auto _ : state) {
        if (!config.prepareInternalRun(kRows)) {
            state.SkipWithError(config.errorText().c_str());
            break;
        }
        float target = 1.0f;
        int percent = 0;
        while ((percent = config.advanceInternalRun(samples, target)) >= 0 && percent < 100) target += 1.0f;
        // A failing run answers -1 at every call: without this test the loop never ends.
        if (percent < 0) {
            state.SkipWithError(config.errorText().c_str());
            break;
        }
    }
    report(state);
}
BENCHMARK(BM_IshigamiInternalRun)->Unit(benchmark::kMillisecond);

// The rounding of every input through its "%g" text, alone.
void BM_IshigamiInputRoundingOnly(benchmark::State& state) {
    const std::vector<double>& v = rows();
    for (auto _ : state) {
        double s = 0.0;
        for (int k = 0; k < 3 * kRows; ++k) s += tarvex::boundValue(v[static_cast<std::size_t>(k)]);
        benchmark::DoNotOptimize(s);
    }
    report(state);
}
BENCHMARK(BM_IshigamiInputRoundingOnly)->Unit(benchmark::kMillisecond);

// The same function in C++ on the raw inputs: the floor set by the
// mathematical library's sin and pow.
void BM_IshigamiNative(benchmark::State& state) {
    const std::vector<double>& v = rows();
    for (auto _ : state) {
        double s = 0.0;
        for (int r = 0; r < kRows; ++r) {
            const double* x = v.data() + 3 * r;
            s += std::sin(x[0]) + 7 * std::pow(std::sin(x[1]), 2.0) + 0.1 * std::pow(x[2], 4.0) * std::sin(x[0]);
        }
        benchmark::DoNotOptimize(s);
    }
    report(state);
}
BENCHMARK(BM_IshigamiNative)->Unit(benchmark::kMillisecond);

} // namespace
