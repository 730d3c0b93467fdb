// Regression and rank measures: values against independent computations
// (sample moments, plain Pearson and Spearman, partial correlations from
// least-squares residuals, a brute-force Kolmogorov-Smirnov distance), the
// collinear, singular, constant and one-run cases, the significance rerun,
// the file layout and the saved table.
#include <gtest/gtest.h>

#include <Eigen/Dense>

#include <algorithm>
#include <cmath>
#include <sstream>

#include "Correlations.h"
#include "PostprocFixtures.h"
#include "common/UniformRandom.h"
#include "factors/Exponential.h"
#include "postproc/RegressionStats.h"
#include "postproc/SmirnovStatistic.h"
#include "sampling/LatinSampler.h"

namespace tarvex {
namespace {

using Column = std::vector<double>;
using testing::constantFactor;
using testing::normalFactor;
using testing::uniformFactor;

template <class... F>
std::vector<std::unique_ptr<Factor>> factorList(F... factors) {
    std::vector<std::unique_ptr<Factor>> list;
    (list.push_back(std::move(factors)), ...);
    return list;
}

// A sample of the program's own design.
PrepConfiguration generated(std::unique_ptr<Sampler> sampler, int32_t runs,
                            std::vector<std::unique_ptr<Factor>> factors) {
    PrepConfiguration prep;
    for (auto& f : factors) EXPECT_EQ(prep.factors.addFactor(std::move(f)), 1);
    EXPECT_EQ(sampler->setSamples(runs), 1);
    prep.sampler = std::move(sampler);
    EXPECT_EQ(runGeneration(prep, nullptr).result, kGenerationDone);
    return prep;
}

// A sample given column by column; a factor named "k..." is a constant.
PrepConfiguration handMade(const std::vector<std::string>& names, const std::vector<Column>& columns) {
    PrepConfiguration prep = test::factorsOf(names, 0.0, 1.0, 0.0);
    test::fillTable(prep.samples, columns);
    return prep;
}

// The measures of a hand-made sample; `expected` is what compute returns.
RegressionStats computeOn(const std::vector<std::string>& names, const std::vector<Column>& x,
                          const std::vector<Column>& y, int expected = 1) {
    PrepConfiguration prep = handMade(names, x);
    OutputTable outputs = test::tableOf(y);
    RegressionStats stats;
    EXPECT_EQ(stats.compute(prep, outputs), expected);
    return stats;
}

// R^2 on values and ranks, then both adjusted.
Column determinations(const RegressionStats& stats, int32_t variable) {
    Column d(4, -99.0);
    EXPECT_EQ(stats.determination(variable, &d[0], &d[1]), 1);
    EXPECT_EQ(stats.determinationAdjusted(variable, &d[2], &d[3]), 1);
    return d;
}

std::vector<Column> factorColumns(PrepConfiguration& prep) {
    std::vector<Column> columns;
    for (int32_t f = 0; f < prep.factors.factorCount(); ++f) columns.push_back(testing::column(prep.samples, f));
    return columns;
}

Column slot(const RegressionStats& stats, int32_t slotNumber, int32_t variable) {
    Column values(stats.records.size(), -99.0);
    const int32_t measure = slotNumber % RegressionStats::kMeasureCount;
    const int32_t kind = slotNumber / RegressionStats::kMeasureCount;
    const int ok = kind == 0   ? stats.measureValues(measure, variable, values.data())
                   : kind == 1 ? stats.measureRanks(measure, variable, values.data())
                               : stats.measureFlags(measure, variable, values.data());
    EXPECT_EQ(ok, 1);
    return values;
}

double sd(const Column& x) {
    double m = 0.0;
    for (double v : x) m += v;
    m /= double(x.size());
    double s = 0.0;
    for (double v : x) s += (v - m) * (v - m);
    return std::sqrt(s / double(x.size() - 1));
}

Column noise(int32_t runs, int32_t seed) {
    Column x(static_cast<std::size_t>(runs));
    for (double& v : x) v = uniformRandom(&seed);
    return x;
}

// Residuals of y after the least-squares fit on an intercept and `regressors`.
Column residuals(const Column& y, const std::vector<Column>& regressors) {
    const auto n = static_cast<Eigen::Index>(y.size());
    Eigen::MatrixXd m(n, static_cast<Eigen::Index>(regressors.size()) + 1);
    m.col(0).setOnes();
    for (std::size_t j = 0; j < regressors.size(); ++j)
        m.col(static_cast<Eigen::Index>(j) + 1) = Eigen::Map<const Eigen::VectorXd>(regressors[j].data(), n);
    const Eigen::Map<const Eigen::VectorXd> target(y.data(), n);
    const Eigen::VectorXd fit = m * m.colPivHouseholderQr().solve(target);
    Column out(y.size());
    for (Eigen::Index r = 0; r < n; ++r) out[static_cast<std::size_t>(r)] = target(r) - fit(r);
    return out;
}

TEST(RegressionStats, LinearModelGivesCoefficientsTimesSpreadsOverOutputSpread) {
    // Three distributions on the program's own Latin hypercube, a constant
    // beside them. Y = 2a - 3b + 0.05c + 7 exactly.
    auto c = std::make_unique<Exponential>();
    EXPECT_EQ(c->setName("c") + c->setLambda(0.5), 2);
    const int32_t n = 500;
    PrepConfiguration prep =
        generated(std::make_unique<LatinSampler>(), n,
                  factorList(uniformFactor("a", 1.0, 3.0), normalFactor("b", 5.0, 2.0), std::move(c),
                             constantFactor("k", 4.0)));
    const std::vector<Column> x = factorColumns(prep);
    const double coefficient[3] = {2.0, -3.0, 0.05};
    Column y(n);
    for (int32_t r = 0; r < n; ++r)
        y[size_t(r)] = coefficient[0] * x[0][size_t(r)] + coefficient[1] * x[1][size_t(r)] +
                       coefficient[2] * x[2][size_t(r)] + 7.0;
    OutputTable outputs = test::tableOf({y});

    RegressionStats stats;
    ASSERT_EQ(stats.compute(prep, outputs), 1);
    EXPECT_EQ(stats.errorText, "No errors");
    EXPECT_EQ(stats.activeCount, 3);
    EXPECT_EQ(stats.records[3].kind, kConstantFactor);
    // An exact linear output: the regression recovers the coefficients up
    // to rounding amplified by a matrix whose last pivot is rounding noise,
    // far below 1e-9.
    const Column src = slot(stats, RegressionStats::kSrc, 0);
    for (int j = 0; j < 3; ++j) EXPECT_NEAR(src[size_t(j)], coefficient[j] * sd(x[size_t(j)]) / sd(y), 1e-9) << j;
    EXPECT_EQ(src[3], 0.0);
    EXPECT_NEAR(determinations(stats, 0)[0], 1.0, 1e-9);

    // Ranks by |SRC|: b (6 sd units), a (1.15), c (0.1), the constant last.
    EXPECT_EQ(slot(stats, RegressionStats::kRankSlot + RegressionStats::kSrc, 0), (Column{2, 1, 3, 4}));
    // The SRC test predicts Y without intercept, so the 7 is its whole
    // error: t_j = c_j sqrt(N-1) s_j / (7 sqrt(N / (N-k-2))), here 3.6 for
    // a, -26 for b (a negative value is never significant) and 0.32 for c,
    // against 1.645.
    EXPECT_EQ(slot(stats, RegressionStats::kFlagSlot + RegressionStats::kSrc, 0), (Column{1, 0, 0, 0}));
    EXPECT_EQ(slot(stats, RegressionStats::kFlagSlot + RegressionStats::kPcc, 0), (Column{1, 1, 1, 1}));
}

TEST(RegressionStats, CorrelationsAndSmirnovMatchIndependentValues) {
    const int32_t n = 400;
    PrepConfiguration prep = generated(std::make_unique<RandomSampler>(), n,
                                       factorList(uniformFactor("a"), normalFactor("b", 0.0, 1.0),
                                                  constantFactor("k", 1.5), uniformFactor("c", -1.0, 1.0)));
    const std::vector<Column> x = factorColumns(prep);
    // Y rounded to one decimal has many equal values; Z falls with a
    // (correlation about -0.94).
    Column y(n), z(n);
    for (size_t r = 0; r < size_t(n); ++r) {
        y[r] = std::round(10.0 * (std::exp(2.0 * x[0][r]) + 0.3 * x[1][r] * x[1][r] + 0.1 * x[3][r])) / 10.0;
        z[r] = -x[0][r] + 0.1 * x[1][r];
    }
    OutputTable outputs = test::tableOf({y, z});
    RegressionStats stats;
    ASSERT_EQ(stats.compute(prep, outputs), 1);

    const std::vector<Column> outputsColumns = {y, z};
    for (int32_t v = 0; v < 2; ++v) {
        const Column& out = outputsColumns[size_t(v)];
        const Column pear = slot(stats, RegressionStats::kPear, v);
        const Column spea = slot(stats, RegressionStats::kSpea, v);
        const Column smirnov = slot(stats, RegressionStats::kSmirnov, v);
        // The high runs: output rank from 1 (ties in run order) above
        // trunc(0.9 N), that is rank from 0 at least 360.
        const Column outputRanks = test::ranksOf(out);
        for (size_t j : {0u, 1u, 3u}) {
            EXPECT_NEAR(pear[j], test::pearson(x[j], out), 1e-12);
            EXPECT_NEAR(spea[j], test::spearman(x[j], out), 1e-12);
            // Largest gap between the two empirical distributions, over
            // every sample value.
            double d = 0.0;
            for (double t : x[j]) {
                double high = 0, low = 0, highBelow = 0, lowBelow = 0;
                for (size_t r = 0; r < size_t(n); ++r) {
                    const bool isHigh = outputRanks[r] >= 360.0;
                    (isHigh ? high : low) += 1;
                    if (x[j][r] <= t) (isHigh ? highBelow : lowBelow) += 1;
                }
                d = std::max(d, std::fabs(highBelow / high - lowBelow / low));
            }
            EXPECT_NEAR(smirnov[j], d, 1e-14) << v << " " << j;
        }
        EXPECT_EQ(pear[2], 0.0);
        // Ranks by |PEAR|, the constant last whatever the others are.
        const Column rank = slot(stats, RegressionStats::kRankSlot + RegressionStats::kPear, v);
        EXPECT_EQ(rank[2], 4.0);
        for (size_t i : {0u, 1u, 3u})
            for (size_t j : {0u, 1u, 3u})
                if (std::fabs(pear[i]) > std::fabs(pear[j])) {
                    EXPECT_LT(rank[i], rank[j]);
                }
    }
    // Equal outputs still get successive ranks: the rank column's spread is
    // that of 1..N, where averaged ties would shrink it.
    ASSERT_EQ(stats.rankMoments.size(), 6u);
    EXPECT_NEAR(stats.rankMoments[4].sd, std::sqrt(n * (n + 1) / 12.0), 1e-9);
    EXPECT_NEAR(stats.rankMoments[4].mean, (n + 1) / 2.0, 1e-12);

    // a drives Y up and Z down: both tests are one-sided, so the strong
    // negative correlation is not significant.
    const Column pearFlags0 = slot(stats, RegressionStats::kFlagSlot + RegressionStats::kPear, 0);
    const Column pearFlags1 = slot(stats, RegressionStats::kFlagSlot + RegressionStats::kPear, 1);
    const Column speaFlags1 = slot(stats, RegressionStats::kFlagSlot + RegressionStats::kSpea, 1);
    EXPECT_LT(slot(stats, RegressionStats::kPear, 1)[0], -0.9);
    EXPECT_EQ(pearFlags0[0], 1.0);
    EXPECT_EQ(pearFlags1[0], 0.0);
    EXPECT_EQ(speaFlags1[0], 0.0);
    EXPECT_EQ(slot(stats, RegressionStats::kFlagSlot + RegressionStats::kSmirnov, 0), (Column{1, 1, 1, 1}));
}

TEST(RegressionStats, PartialAndRegressionMeasuresMatchLeastSquares) {
    const int32_t n = 40;
    PrepConfiguration prep = generated(std::make_unique<LatinSampler>(), n,
                                       factorList(uniformFactor("a"), uniformFactor("b"), uniformFactor("c")));
    const std::vector<Column> x = factorColumns(prep);
    Column y(n);
    for (size_t r = 0; r < size_t(n); ++r)
        y[r] = x[0][r] + 2.0 * x[1][r] * x[1][r] + std::sin(3.0 * x[2][r]) + x[0][r] * x[1][r];
    OutputTable outputs = test::tableOf({y});
    RegressionStats stats;
    ASSERT_EQ(stats.compute(prep, outputs), 1);

    // Partial correlation: the correlation of what the other factors leave
    // of factor j and of the output. SRC from the least-squares slope.
    for (const bool onRanks : {false, true}) {
        std::vector<Column> data = x;
        Column out = y;
        // Ranks from 0: a shift changes no correlation or slope.
        if (onRanks) {
            for (Column& column : data) column = test::ranksOf(column);
            out = test::ranksOf(y);
        }
        const Column pcc = slot(stats, onRanks ? RegressionStats::kPrcc : RegressionStats::kPcc, 0);
        const Column src = slot(stats, onRanks ? RegressionStats::kSrrc : RegressionStats::kSrc, 0);
        for (size_t j = 0; j < 3; ++j) {
            std::vector<Column> others;
            for (size_t i = 0; i < 3; ++i)
                if (i != j) others.push_back(data[i]);
            const Column rx = residuals(data[j], others);
            const Column ry = residuals(out, others);
            EXPECT_NEAR(pcc[j], test::pearson(rx, ry), 1e-10) << onRanks << j;
            double sxy = 0, sxx = 0;
            for (size_t r = 0; r < size_t(n); ++r) sxy += rx[r] * ry[r], sxx += rx[r] * rx[r];
            EXPECT_NEAR(src[j], sxy / sxx * sd(data[j]) / sd(out), 1e-10) << onRanks << j;
        }
        const Column e = residuals(out, data);
        double sse = 0, sst = 0, mean = 0;
        for (double v : out) mean += v / n;
        for (size_t r = 0; r < size_t(n); ++r) sse += e[r] * e[r], sst += (out[r] - mean) * (out[r] - mean);
        const Column d = determinations(stats, 0);
        const double r2 = 1.0 - sse / sst;
        EXPECT_NEAR(d[onRanks ? 1 : 0], r2, 1e-10);
        EXPECT_NEAR(d[onRanks ? 3 : 2], 1.0 - (1.0 - r2) * (n - 1.0) / (n - 3.0), 1e-10);
    }
    EXPECT_EQ(stats.determination(1, nullptr, nullptr), 0);
    EXPECT_EQ(stats.determination(-1, nullptr, nullptr), 0);
    double values[3];
    EXPECT_EQ(stats.measureValues(7, 0, values), 0);
    EXPECT_EQ(stats.measureFlags(0, 1, values), 0);
}

TEST(RegressionStats, CollinearSingularConstantAndOneRunCases) {
    const int32_t n = 60;
    const Column a = noise(n, -11), b = noise(n, -12);
    Column y(n), twin(n), mirror(n), inverse(n), bSquared(n);
    for (size_t r = 0; r < size_t(n); ++r) {
        y[r] = a[r] + b[r];
        bSquared[r] = b[r] * b[r];
        twin[r] = a[r];
        mirror[r] = -a[r];
        inverse[r] = 1.0 / (1.0 + a[r]);  // falls with a: ranks exactly reversed
    }
    {
        SCOPED_TRACE("a copy of a factor leaves the regression");
        const RegressionStats stats = computeOn({"a", "twin", "b"}, {a, twin, b}, {y});
        EXPECT_EQ(stats.records[1].kind, kCorrelatedFactor);
        EXPECT_EQ(stats.activeCount, 2);
        EXPECT_EQ(stats.collinearPairs, (std::vector<std::pair<int32_t, int32_t>>{{0, 1}}));
        for (int32_t m = 0; m < RegressionStats::kMeasureCount; ++m) EXPECT_EQ(slot(stats, m, 0)[1], 0.0) << m;
        EXPECT_EQ(slot(stats, RegressionStats::kRankSlot + RegressionStats::kPcc, 0)[1], 3.0);
        EXPECT_NEAR(determinations(stats, 0)[0], 1.0, 1e-9);
    }
    {
        SCOPED_TRACE("a negative copy makes the matrix singular: the first variable takes 1.0, the next keeps zeros");
        const RegressionStats stats = computeOn({"a", "mirror", "b"}, {a, mirror, b}, {y, b});
        EXPECT_EQ(stats.computed, 1);
        EXPECT_EQ(stats.activeCount, 3);
        for (int32_t m = 0; m < RegressionStats::kMeasureCount; ++m) {
            EXPECT_EQ(slot(stats, m, 0), (Column{1, 1, 1})) << m;
            EXPECT_EQ(slot(stats, m, 1), (Column{0, 0, 0})) << m;
        }
        EXPECT_EQ(determinations(stats, 0), (Column{1, 1, 1, 1}));
        EXPECT_EQ(determinations(stats, 1), (Column{0, 0, 0, 0}));
    }
    {
        SCOPED_TRACE("reversed ranks: only the rank measures of the first variable take 1.0");
        const RegressionStats stats = computeOn({"a", "inverse", "b"}, {a, inverse, b}, {y, bSquared});
        EXPECT_NEAR(slot(stats, RegressionStats::kPear, 0)[0], test::pearson(a, y), 1e-12);
        for (int32_t m : {1, 3, 5, 6}) {
            EXPECT_EQ(slot(stats, m, 0), (Column{1, 1, 1})) << m;
            EXPECT_EQ(slot(stats, m, 1), (Column{0, 0, 0})) << m;
        }
        EXPECT_NEAR(slot(stats, RegressionStats::kPear, 1)[2], test::pearson(b, bSquared), 1e-12);
        EXPECT_EQ(determinations(stats, 0)[1], 1.0);
        EXPECT_EQ(determinations(stats, 1)[1], 0.0);
    }
    {
        SCOPED_TRACE("nothing uncertain, then tables of different runs");
        RegressionStats stats = computeOn({"k1", "k2"}, {Column(n, 1.0), Column(n, 2.0)}, {y}, 0);
        EXPECT_EQ(stats.errorText, "All input factors are constant");
        EXPECT_EQ(stats.computed, 0);
        EXPECT_TRUE(stats.records.empty());
        // Refused before anything changes.
        PrepConfiguration good = handMade({"a", "b"}, {a, b});
        OutputTable outputs = test::tableOf({y}), shorter = test::tableOf({Column(n - 1, 0.0)});
        ASSERT_EQ(stats.compute(good, outputs), 1);
        EXPECT_EQ(stats.compute(good, shorter), 0);
        EXPECT_EQ(stats.errorText, "The sample has 60 runs and the outputs 59");
        EXPECT_EQ(stats.computed, 1);
        EXPECT_EQ(stats.records.size(), 2u);
    }
    {
        SCOPED_TRACE("one run, and none");
        const RegressionStats stats = computeOn({"a", "b"}, {{0.5}, {0.25}}, {{3.0}});
        // T = 0: the one run is high, no run is low.
        EXPECT_EQ(slot(stats, RegressionStats::kSmirnov, 0), (Column{-1, -1}));
        // No test ran, not even those that always pass.
        for (int32_t m = 0; m < RegressionStats::kMeasureCount; ++m)
            EXPECT_EQ(slot(stats, RegressionStats::kFlagSlot + m, 0), (Column{0, 0})) << m;
        EXPECT_EQ(computeOn({"a", "b"}, {{}, {}}, {{}}).computed, 1);
    }
}

TEST(RegressionStats, SmirnovWalkAndSubsets) {
    // H = {4, 6}, L = {1, 2, 3, 5}: after 1, 2, 3 the low curve is at 3/4
    // and the high one at 0; after 5, 1/2 against 1.
    const int32_t high[] = {4, 6}, low[] = {1, 2, 3, 5};
    EXPECT_DOUBLE_EQ(SmirnovStatistic::walk(high, 2, low, 4), 0.75);
    EXPECT_EQ(SmirnovStatistic::walk(high, 2, low, 0), -1.0);

    EXPECT_EQ(SmirnovStatistic(10).threshold(), 9);
    EXPECT_EQ(SmirnovStatistic(1).threshold(), 0);
    // A factor ranked as the output separates the top tenth completely.
    const int32_t runs = 20;
    std::vector<int32_t> same(runs), reversed(runs);
    for (int32_t r = 0; r < runs; ++r) {
        same[size_t(r)] = (r * 7) % runs + 1;
        reversed[size_t(r)] = runs + 1 - same[size_t(r)];
    }
    SmirnovStatistic statistic(runs);
    EXPECT_EQ(statistic.distance(same.data(), same.data()), 1.0);
    EXPECT_EQ(statistic.distance(reversed.data(), same.data()), 1.0);
    // The same ranks given out of order take the sorting path.
    const int32_t broken[] = {3, 3, 1};
    const int32_t output[] = {1, 2, 3};
    EXPECT_EQ(SmirnovStatistic(3).distance(broken, output), 1.0);
    const int32_t one = 1;
    EXPECT_EQ(SmirnovStatistic(1).distance(&one, &one), -1.0);
}

TEST(RegressionStats, ApplyAlphaRedoesOnlyTheFlags) {
    const int32_t n = 200;
    std::vector<Column> x;
    for (int32_t f = 0; f < 8; ++f) x.push_back(noise(n, -100 - f));
    Column y(n);
    // Weak effects: some tests pass at 0.75 and fail at 0.95.
    const Column error = noise(n, -7);
    for (size_t r = 0; r < size_t(n); ++r) y[r] = x[0][r] + 0.1 * x[1][r] + 0.05 * x[2][r] + error[r];
    PrepConfiguration prep = handMade({"a", "b", "c", "d", "e", "f", "g", "h"}, x);
    OutputTable outputs = test::tableOf({y});
    RegressionStats stats;
    ASSERT_EQ(stats.compute(prep, outputs), 1);
    const RegressionStats before = stats;
    EXPECT_EQ(stats.applyAlpha(0.95f), 0);
    ASSERT_EQ(stats.applyAlpha(0.75f), 1);
    EXPECT_EQ(stats.alpha, 0.75f);
    RegressionStats fresh;
    fresh.alpha = 0.75f;
    ASSERT_EQ(fresh.compute(prep, outputs), 1);
    bool changed = false;
    for (size_t j = 0; j < stats.records.size(); ++j)
        for (int32_t s = 0; s < RegressionStats::kSlots; ++s) {
            const double now = stats.records[j].values[size_t(s)];
            EXPECT_EQ(now, fresh.records[j].values[size_t(s)]) << j << " " << s;
            if (s < RegressionStats::kFlagSlot) {
                EXPECT_EQ(now, before.records[j].values[size_t(s)]);
            }
            changed = changed || now != before.records[j].values[size_t(s)];
        }
    EXPECT_TRUE(changed);
    EXPECT_EQ(stats.applyAlpha(0.75f), 0);
}

TEST(RegressionStats, FileLayoutAndRoundTrip) {
    // The layout, on a hand-filled object of one factor and one variable.
    RegressionStats small;
    small.factorCount = 1;
    small.variableCount = 1;
    small.alpha = 0.9f;
    small.computed = 1;
    small.records = {{"x", kUncertainFactor, Column(21, 0.5), {}}};
    small.records[0].values[6] = -1.0;
    small.activeCount = 1;
    small.factorMoments = {{1.5, 2.0}, {3.0, 0.25}};
    small.rankMoments = {{5.5, 3.02765}, {5.5, 3.02765}};
    small.determinations = {{0.75, 0.5, 0.625, 1.0 / 3.0}};
    std::ostringstream text;
    small.write(text);
    EXPECT_EQ(text.str(),
              "0\n1\n1\n0.9\nindexes = yes\nx\n3\t\t"
              "0.5\t \t0.5\t \t0.5\t \t0.5\t \t0.5\t \t0.5\t \t-1\t \t"
              "0.5\t \t0.5\t \t0.5\t \t0.5\t \t0.5\t \t0.5\t \t0.5\t \t"
              "0.5\t \t0.5\t \t0.5\t \t0.5\t \t0.5\t \t0.5\t \t0.5\t \t\n"
              "1\n1.5\t \t2\n3\t \t0.25\n5.5\t \t3.02765\n5.5\t \t3.02765\n"
              "\n0.75\t \t0.5\t \t0.625\t \t0.333333\t \t");

    // A computed result through the post-processor file: every number comes
    // back at its six digits, the trailer's included.
    const int32_t n = 30;
    PrepConfiguration prep = generated(std::make_unique<RandomSampler>(), n,
                                       factorList(uniformFactor("a"), constantFactor("k", 2.0), uniformFactor("b")));
    const std::vector<Column> x = factorColumns(prep);
    Column y(n), z(n);
    for (size_t r = 0; r < size_t(n); ++r) y[r] = x[0][r] * x[2][r], z[r] = std::exp(x[2][r]) + x[0][r];
    OutputTable outputs = test::tableOf({y, z});
    RegressionStats stats;
    ASSERT_EQ(stats.compute(prep, outputs), 1);
    stats.alpha = 0.975f;
    std::unique_ptr<SensitivityStats> read;
    (void)test::roundTripBlock(prep, stats, &read);
    const auto* back = dynamic_cast<const RegressionStats*>(read.get());
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(back->alpha, 0.975f);
    EXPECT_EQ(back->activeCount, 2);
    EXPECT_EQ(back->records[1].kind, kConstantFactor);
    EXPECT_EQ(back->rankMoments.size(), 5u);
    EXPECT_EQ(back->determinations.size(), 2u);
    // A read result keeps no sample for the tests.
    auto copy = back->clone();
    EXPECT_EQ(static_cast<RegressionStats&>(*copy).applyAlpha(0.9f), 0);
}

TEST(RegressionStats, SavedTableMarksCellsThatAreNotSignificant) {
    RegressionStats stats;
    stats.factorCount = 3;
    stats.variableCount = 2;
    stats.computed = 1;
    Column x(42, 0.0), k(42, 0.0), w(42, 0.0);
    // Variable 1, SRC (slot 4), its rank (11) and its flag (18).
    x[21 + 4] = 0.25, x[21 + 11] = 1, x[21 + 18] = 1;
    w[21 + 4] = -0.00002, w[21 + 11] = 2, w[21 + 18] = 0;
    stats.records = {{"x", kUncertainFactor, x, {}}, {"k", kConstantFactor, k, {}}, {"w", kUncertainFactor, w, {}}};
    stats.determinations = {{0, 0, 0, 0}, {0.5, 0.75, 0.25, 12345.0}};
    ResultTableRequest request;
    request.variables = {1};
    request.variableNames = {"Y"};
    request.measure = RegressionStats::kSrc;
    request.currentVariable = 1;
    std::ostringstream out;
    stats.writeTable(out, request);
    EXPECT_EQ(out.str(),
              "Value of the SRCs vs. selected factors\n"
              "Coefficients of model determination:\n"
              "    on row data:               0.5000\t    on ranks:               0.7500\n"
              "on row data adj:               0.2500\ton ranks adj:             1.23e+04\n\n"
              "Sensitivity indexes\n"
              "                    \t                   Y\t\n"
              "                   x\t              0.2500\t\n"
              "                   k\t            Constant\t\n"
              "                   w\t              -2e-05*\t\n"
              "\nRanks\n"
              "                    \t                   Y\t\n"
              "                   x\t              1.0000\t\n"
              "                   k\t            Constant\t\n"
              "                   w\t              2.0000*\t\n");
    EXPECT_STREQ(RegressionStats::measureName(6), "Smirnov");
    EXPECT_STREQ(RegressionStats::measureName(7), "ERROR");
    request.measure = -1;
    std::ostringstream unknown;
    stats.writeTable(unknown, request);
    EXPECT_EQ(unknown.str().substr(0, 40), "Value of the ERRORs vs. selected factors");
}

}  // namespace
}  // namespace tarvex
