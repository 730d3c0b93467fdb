// Evaluations per second of a relation over five factors: the text form
// (bindings printed and the whole text parsed for every row) against the
// compiled form (parsed once, values entering as their "%g" text would).
#include <benchmark/benchmark.h>

#include <random>
#include <string>
#include <vector>

#include "factors/Relation.h"

namespace {

using tarvex::Relation;

const std::vector<std::string> kNames{"alpha", "beta", "gamma", "delta", "epsilon"};
constexpr const char* kExpression = "alpha * sin(beta) + gamma ** 2 / (delta + 1.5) - exp(-epsilon)";
constexpr int kRows = 4096;

std::vector<double> makeRows() {
    std::mt19937_64 rng(12345);
    std::uniform_real_distribution<double> u(0.1, 10.0);
    std::vector<double> rows(static_cast<std::size_t>(kRows) * kNames.size());
    for (double& v : rows) v = u(rng);
    return rows;
}

void BM_RelationTextForm(benchmark::State& state) {
    Relation r;
    if (!r.setExpression(kExpression)) {
        state.SkipWithError("the expression was refused");
        return;
    }
    const std::vector<double> rows = makeRows();
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(r.evaluate(5, kNames, rows.data() + i * kNames.size()));
        i = (i + 1) % kRows;
    }
    state.counters["evaluations/s"] = benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_RelationTextForm);

void BM_RelationCompiledForm(benchmark::State& state) {
    Relation r;
    if (!r.setExpression(kExpression)) {
        state.SkipWithError("the expression was refused");
        return;
    }
    r.prepareRows(5, kNames);
    const std::vector<double> rows = makeRows();
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(r.evaluateRow(rows.data() + i * kNames.size()));
        i = (i + 1) % kRows;
    }
    state.counters["evaluations/s"] = benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_RelationCompiledForm);

} // namespace
