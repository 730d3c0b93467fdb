// Cost of one call of each distribution function on the arguments a factor
// table build feeds them: x spread over the body and the tails.
#include <benchmark/benchmark.h>

#include <vector>

#include "factors/NumericLibrary.h"

namespace {

std::vector<double> spread(double lo, double hi, int n) {
    std::vector<double> v(n);
    for (int i = 0; i < n; ++i) v[i] = lo + (hi - lo) * (i + 0.5) / n;
    return v;
}

void BM_cdfNormal(benchmark::State& state) {
    const auto xs = spread(-8.0, 8.0, 1024);
    double p = 0, q = 0, mean = 0.5, sd = 1.3, bound = 0;
    int which = 1, status = 0;
    std::size_t i = 0;
    for (auto _ : state) {
        double x = xs[i++ & 1023];
        tarvex::cdfNormal(which, p, q, x, mean, sd, status, bound);
        benchmark::DoNotOptimize(p);
        benchmark::DoNotOptimize(q);
    }
}
BENCHMARK(BM_cdfNormal);

void BM_cdfGamma(benchmark::State& state) {
    const auto xs = spread(0.0, 12.0, 1024);
    double p = 0, q = 0, shape = state.range(0) / 10.0, rate = 1.5, bound = 0;
    int which = 1, status = 0;
    std::size_t i = 0;
    for (auto _ : state) {
        double x = xs[i++ & 1023];
        tarvex::cdfGamma(which, p, q, x, shape, rate, status, bound);
        benchmark::DoNotOptimize(p);
        benchmark::DoNotOptimize(q);
    }
}
BENCHMARK(BM_cdfGamma)->Arg(5)->Arg(25)->Arg(100);  // shape 0.5, 2.5, 10

void BM_cdfBeta(benchmark::State& state) {
    const auto xs = spread(0.0, 1.0, 1024);
    double p = 0, q = 0, a = state.range(0) / 10.0, b = 3.0, bound = 0;
    int which = 1, status = 0;
    std::size_t i = 0;
    for (auto _ : state) {
        double x = xs[i++ & 1023];
        double y = 1.0 - x;
        tarvex::cdfBeta(which, p, q, x, y, a, b, status, bound);
        benchmark::DoNotOptimize(p);
        benchmark::DoNotOptimize(q);
    }
}
BENCHMARK(BM_cdfBeta)->Arg(5)->Arg(20)->Arg(75);  // a 0.5, 2, 7.5 with b 3

void BM_lnGamma(benchmark::State& state) {
    const auto xs = spread(0.1, 50.0, 1024);
    std::size_t i = 0;
    for (auto _ : state) benchmark::DoNotOptimize(tarvex::lnGamma(xs[i++ & 1023]));
}
BENCHMARK(BM_lnGamma);

void BM_lnBeta(benchmark::State& state) {
    const auto xs = spread(0.1, 50.0, 1024);
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(tarvex::lnBeta(xs[i & 1023], xs[(i * 7 + 3) & 1023]));
        ++i;
    }
}
BENCHMARK(BM_lnBeta);

} // namespace
