// Per factor class: the time to build the 101-point inverse table, the cost
// of one inverse with the number of cumulative calls it takes (the table
// exists so that a row costs about a dozen of them, not a root search), and
// the cost per value of the column form the value pass uses.
#include <benchmark/benchmark.h>

#include <vector>

#include "factors/Beta.h"
#include "factors/Discrete.h"
#include "factors/Exponential.h"
#include "factors/Gamma.h"
#include "factors/LogNormal.h"
#include "factors/LogUniform.h"
#include "factors/Triangular.h"
#include "factors/Weibull.h"

namespace {

using namespace tarvex;

// Counts the cumulative calls made through the virtual slot.
template <class Base>
class Counting : public Base {
public:
    double cumulative(double x) const override {
        ++calls;
        return Base::cumulative(x);
    }
    mutable long calls = 0;
};

// false when a parameter is refused: the figures would be those of another law.
template <class T>
bool configure(Counting<T>&) {
    return true;
}
template <>
bool configure(Counting<Normal>& f) {
    return f.setMean(10.0) && f.setStdDeviation(2.0);
}
template <>
bool configure(Counting<LogNormal>& f) {
    return f.setMean(0.5) && f.setStdDeviation(0.75);
}
template <>
bool configure(Counting<Exponential>& f) {
    return f.setLambda(2.5) && f.setB(1.0);
}
template <>
bool configure(Counting<Gamma>& f) {
    return f.setR(2.5) && f.setLambda(0.5);
}
template <>
bool configure(Counting<Weibull>& f) {
    return f.setBeta(1.8) && f.setN(2.0);
}
template <>
bool configure(Counting<Beta>& f) {
    return f.setParameters(0.7, 2.5, -1.0, 3.0);
}
template <>
bool configure(Counting<Triangular>& f) {
    return f.setParameters(-1.0, 0.5, 4.0);
}
template <>
bool configure(Counting<Uniform>& f) {
    f.intervalAt(0)->weight = 0.25;
    return f.addInterval(std::make_unique<Interval>(2.0, 4.0, 0.75));
}

template <class T>
void BM_prepareInverse(benchmark::State& state) {
    Counting<T> f;
    if (!configure(f)) state.SkipWithError("a parameter was refused");
    long builds = 0;
    for (auto _ : state) {
        if (!f.prepareInverse()) state.SkipWithError("prepareInverse failed");
        f.clearTable();
        ++builds;
    }
    state.counters["cumulative_per_build"] = static_cast<double>(f.calls) / static_cast<double>(builds);
}

template <class T>
void BM_inverse(benchmark::State& state) {
    Counting<T> f;
    if (!configure(f)) state.SkipWithError("a parameter was refused");
    if (!f.prepareInverse()) state.SkipWithError("prepareInverse failed");
    f.calls = 0;
    // A fixed stream of u values spread over (0,1), as a sampler produces them.
    uint32_t s = 12345u;
    long rows = 0;
    for (auto _ : state) {
        s = s * 1664525u + 1013904223u;
        const double u = (s >> 8) * (1.0 / 16777216.0) + 1e-9;
        benchmark::DoNotOptimize(f.inverse(u));
        ++rows;
    }
    state.counters["cumulative_per_inverse"] = static_cast<double>(f.calls) / static_cast<double>(rows);
}

// The column form, per cell: a batch of u values as the value pass hands
// them over, on the class itself (its own cumulative, inlined where it has
// one).
template <class T>
void BM_inverseMany(benchmark::State& state) {
    Counting<T> configured;
    configure(configured);
    T plain(configured);
    if (!plain.prepareInverse()) state.SkipWithError("prepareInverse failed");
    constexpr int kBatch = 4096;
    std::vector<double> u(kBatch), values(kBatch);
    uint32_t s = 12345u;
    for (double& x : u) {
        s = s * 1664525u + 1013904223u;
        x = (s >> 8) * (1.0 / 16777216.0) + 1e-9;
    }
    for (auto _ : state) {
        values = u;
        plain.inverseMany(values.data(), kBatch);
        benchmark::DoNotOptimize(values.data());
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * kBatch);
}

void BM_discreteInverse(benchmark::State& state) {
    Discrete d;
    d.clear();
    const int n = static_cast<int>(state.range(0));
    for (int i = 0; i < n; ++i)
        if (!d.addPoint(std::make_unique<Interval>(i, i + 1.0, 1.0 / n))) state.SkipWithError("a point was refused");
    uint32_t s = 12345u;
    for (auto _ : state) {
        s = s * 1664525u + 1013904223u;
        benchmark::DoNotOptimize(d.discreteInverse((s >> 8) * (1.0 / 16777216.0)));
    }
}

#define FACTOR_BENCH(T)                      \
    BENCHMARK_TEMPLATE(BM_prepareInverse, T)->Unit(benchmark::kMicrosecond); \
    BENCHMARK_TEMPLATE(BM_inverse, T);     \
    BENCHMARK_TEMPLATE(BM_inverseMany, T)

FACTOR_BENCH(Normal);
FACTOR_BENCH(LogNormal);
FACTOR_BENCH(Exponential);
FACTOR_BENCH(Gamma);
FACTOR_BENCH(Weibull);
FACTOR_BENCH(Beta);
FACTOR_BENCH(Triangular);
FACTOR_BENCH(Uniform);
FACTOR_BENCH(LogUniform);
BENCHMARK(BM_discreteInverse)->Arg(2)->Arg(10)->Arg(100);

} // namespace
