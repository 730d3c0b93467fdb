// Importance measures: the program's replicated Latin hypercube against the
// first-order indices of an additive model, a tiny case computed by hand
// (bias term included), the 32-bit divisor, designs without level lists,
// damaged designs, the file record and the saved table.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>

#include "PostprocFixtures.h"
#include "postproc/ImportanceStats.h"
#include "sampling/RepLatinSampler.h"

namespace tarvex {
namespace {

using testing::column;
using testing::constantFactor;
using testing::relationFactor;
using testing::uniformFactor;

constexpr double kInf = std::numeric_limits<double>::infinity();

// A design read from its section: factors a and the constant k, m levels, r
// replicates, and a's level lists given (k's are zeros).
std::unique_ptr<RepLatinSampler> readDesign(int32_t m, int32_t r, const std::vector<std::vector<int32_t>>& lists) {
    std::ostringstream section;
    section << "5\n" << m * r << "\n2\n0\n" << m << '\n' << r << "\n0\ta\n-1\tk\n";
    for (const auto& runs : lists) {
        for (const int32_t run : runs) section << run << '\t';
        section << '\n';
    }
    for (int32_t l = 0; l < m; ++l) {
        for (int32_t k = 0; k < r; ++k) section << "0\t";
        section << '\n';
    }
    auto design = std::make_unique<RepLatinSampler>();
    std::istringstream in(section.str());
    design->readItems(in);
    EXPECT_TRUE(in);
    return design;
}

PrepConfiguration handMade(std::unique_ptr<RepLatinSampler> design) {
    PrepConfiguration prep;
    EXPECT_EQ(prep.factors.addFactor(uniformFactor("a")), 1);
    EXPECT_EQ(prep.factors.addFactor(constantFactor("k", 1.0)), 1);
    prep.sampler = std::move(design);
    return prep;
}

std::vector<double> measures(const ImportanceStats& stats, int32_t variable) {
    std::vector<double> values(stats.records.size());
    EXPECT_EQ(stats.importance(variable, values.data()), 1);
    return values;
}

// Two levels of two replicates; a's level 0 at runs 0 and 3, level 1 at 1
// and 2. For y = 1, 2, 4, 3: m = 2.5, W = 1.25, level means 2 and 3, U = 0.25,
// G = 4, R R L = 8: (0.25 - 4 / 8) / 1.25 = -0.2. For 1, 3, 3, 1 the levels
// explain everything (U = W = 1, G = 0): 1. A constant output: 0 / 0. The
// constant k keeps 0.0. The record reads back from the file as written.
TEST(ImportanceStats, HandComputedTinyDesignThroughTheFileAndTheSavedTable) {
    PrepConfiguration prep = handMade(readDesign(2, 2, {{0, 3}, {1, 2}}));
    OutputTable outputs = test::tableOf({{1, 2, 4, 3}, {1, 3, 3, 1}, {5, 5, 5, 5}});
    ImportanceStats stats;
    stats.variableCount = 3;
    ASSERT_EQ(stats.compute(prep, outputs), 1);
    EXPECT_DOUBLE_EQ(measures(stats, 0)[0], -0.2);

    EXPECT_EQ(test::roundTripBlock(prep, stats),
              "3\n2\n3\nindexes = yes\n"
              "a\n3\t \t-0.2\t \t1\t \tnan\t \t\n"
              "k\n0\t \t0\t \t0\t \t0\t \t\n");

    std::ostringstream table;
    ResultTableRequest request;
    request.variables = {2, 0};
    request.variableNames = {"Z", "Y"};
    stats.writeTable(table, request);
    using test::cell;
    EXPECT_EQ(table.str(), "Importance indicators\n" + cell("") + cell("Z") + cell("Y") + "\n" + cell("a") +
                               cell("nan") + cell("-0.2000") + "\n" + cell("k") + cell("Constant") +
                               cell("Constant") + "\n");
}

// Failures name what does not fit; a design without level lists (changed
// since its generation, or saved without them) gives 1 and nothing computed.
TEST(ImportanceStats, FailuresAndMissingLevelLists) {
    PrepConfiguration prep = handMade(readDesign(2, 2, {{0, 3}, {1, 2}}));
    OutputTable outputs = test::tableOf({{1, 2, 4, 3}});
    ImportanceStats stats;
    stats.variableCount = 1;
    PrepConfiguration random = test::randomPrep(4);
    EXPECT_EQ(stats.compute(random, outputs), 0);
    EXPECT_EQ(stats.errorText, kNotRepLatinDesignText);
    OutputTable three = test::tableOf({{1, 2, 3}});
    EXPECT_EQ(stats.compute(prep, three), 0);
    EXPECT_EQ(stats.errorText, "The output table holds 3 runs; the design has 4.");
    PrepConfiguration farRun = handMade(readDesign(2, 2, {{0, 9}, {1, 2}}));
    EXPECT_EQ(stats.compute(farRun, outputs), 0);
    EXPECT_EQ(stats.errorText, "The design's level lists name run 9, outside its 4 runs.");
    EXPECT_EQ(stats.computed, 0);
    EXPECT_TRUE(stats.records.empty());

    ASSERT_EQ(stats.compute(prep, outputs), 1);
    auto& design = dynamic_cast<RepLatinSampler&>(*prep.sampler);
    (void)design.setReplications(0);
    (void)design.setReplications(2);
    EXPECT_EQ(stats.compute(prep, outputs), 1);
    EXPECT_EQ(stats.computed, 0);
    EXPECT_TRUE(stats.records.empty());
    PrepConfiguration zeros = handMade(readDesign(2, 2, {{0, 0}, {0, 0}}));
    EXPECT_EQ(stats.compute(zeros, outputs), 1);
    EXPECT_EQ(stats.computed, 0);
}

// R R L in 32-bit integers: with R = 65536 replicates of one level it wraps
// to 0, so G / 0 is infinite; in wider integers the measure would be
// -1 / 65536.
TEST(ImportanceStats, DivisorWrapsInThirtyTwoBits) {
    const int32_t r = 65536;
    std::vector<int32_t> runs(r);
    std::vector<double> y(r);
    for (int32_t i = 0; i < r; ++i) {
        runs[size_t(i)] = i;
        y[size_t(i)] = double(i % 2);
    }
    PrepConfiguration prep = handMade(readDesign(1, r, {runs}));
    OutputTable outputs = test::tableOf({y});
    ImportanceStats stats;
    stats.variableCount = 1;
    ASSERT_EQ(stats.compute(prep, outputs), 1);
    EXPECT_EQ(measures(stats, 0)[0], -kInf);
}

// Y = X1 + 2 X2 + 3 X3 + k with X uniform on [0, 1]: Var Y = 14 / 12 and the
// first-order indices c^2 / 14. Over L levels and R replicates the measure
// of X_i estimates (A + s2 / R^2) / Var Y, with A = c^2 / 12 and s2 =
// Var Y - A the variance of the other terms: the divisor R R L leaves a bias
// s2 / R^2. Its standard error is about sqrt((2 (s2 / R)^2 + 4 A s2 / R) / L)
// / Var Y (the square of a level mean whose noise has variance s2 / R).
// The tolerance is the bias plus four standard errors.
TEST(ImportanceStats, AdditiveModelGivesFirstOrderIndices) {
    const int32_t levels = 500, replicates = 10;
    PrepConfiguration prep;
    ASSERT_EQ(prep.factors.addFactor(uniformFactor("x1")), 1);
    ASSERT_EQ(prep.factors.addFactor(constantFactor("k", 1.0)), 1);
    ASSERT_EQ(prep.factors.addFactor(uniformFactor("x2")), 1);
    ASSERT_EQ(prep.factors.addFactor(relationFactor("sum", "x1+x2")), 1);
    ASSERT_EQ(prep.factors.addFactor(uniformFactor("x3")), 1);
    auto design = std::make_unique<RepLatinSampler>();
    ASSERT_EQ(design->setSeed(4711), 1);
    ASSERT_EQ(design->setBaseDesign(levels), 1);
    ASSERT_EQ(design->setReplications(replicates), 1);
    prep.sampler = std::move(design);
    ASSERT_EQ(runGeneration(prep, nullptr).result, kGenerationDone);

    const std::vector<double> x1 = column(prep.samples, 0), k = column(prep.samples, 1),
                              x2 = column(prep.samples, 2), x3 = column(prep.samples, 4);
    std::vector<double> y(x1.size());
    for (std::size_t i = 0; i < y.size(); ++i) y[i] = x1[i] + 2.0 * x2[i] + 3.0 * x3[i] + k[i];
    OutputTable outputs = test::tableOf({y});
    ImportanceStats stats;
    stats.variableCount = 1;
    ASSERT_EQ(stats.compute(prep, outputs), 1);
    const std::vector<double> measure = measures(stats, 0);

    const double variance = 14.0 / 12.0;
    const double L = levels, R = replicates;
    const std::pair<std::size_t, double> factors[] = {{0, 1.0}, {2, 2.0}, {4, 3.0}};
    for (const auto& [record, c] : factors) {
        const double a = c * c / 12.0, s2 = variance - a;
        const double bias = s2 / (R * R) / variance;
        const double error = std::sqrt((2.0 * (s2 / R) * (s2 / R) + 4.0 * a * s2 / R) / L) / variance;
        EXPECT_NEAR(measure[record], c * c / 14.0, bias + 4.0 * error) << "factor " << record;
    }
    EXPECT_EQ(measure[1], 0.0);
    EXPECT_EQ(measure[3], 0.0);
}

}  // namespace
}  // namespace tarvex
