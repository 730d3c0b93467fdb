// Morris indices: the program's own trajectories against a linear model's
// exact effects, spreads computed by hand, a damaged design, one trajectory
// through the file and the saved table.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "PostprocFixtures.h"
#include "postproc/MorrisStats.h"
#include "sampling/MorrisSampler.h"

namespace tarvex {
namespace {

using testing::column;
using testing::constantFactor;
using testing::relationFactor;
using testing::uniformFactor;

// Factors a, the constant k and b, with a design read from its section: r
// trajectories and the change record given run by run.
PrepConfiguration handMade(uint32_t trajectories, const std::vector<int32_t>& changed) {
    PrepConfiguration prep;
    EXPECT_EQ(prep.factors.addFactor(uniformFactor("a")), 1);
    EXPECT_EQ(prep.factors.addFactor(constantFactor("k", 1.0)), 1);
    EXPECT_EQ(prep.factors.addFactor(uniformFactor("b")), 1);
    std::ostringstream section;
    section << "4\n" << trajectories << '\n' << changed.size() << "\n3\n1\nElementary effects\n";
    for (const int32_t c : changed) section << c << '\n';
    auto design = std::make_unique<MorrisSampler>();
    std::istringstream in(section.str());
    design->readItems(in);
    EXPECT_TRUE(in);
    prep.sampler = std::move(design);
    return prep;
}

struct Slots {
    std::vector<double> index, sigma;
};

Slots slotsOf(const MorrisStats& stats, int32_t variable) {
    Slots s{std::vector<double>(stats.records.size()), std::vector<double>(stats.records.size())};
    EXPECT_EQ(stats.morrisIndex(variable, s.index.data()), 1);
    EXPECT_EQ(stats.sigma(variable, s.sigma.data()), 1);
    return s;
}

// Effects |2 dy| of a and b per trajectory: a {4, 2, 0}, b {2, 1, 6}, whose
// sample standard deviations are 2 and sqrt(7); the constant k keeps 0.0.
// The second variable never changes along the moves. Then a damaged design:
// a run that changes before any trajectory started (run 0), a factor number
// beyond the uncertain ones (run 3), a third trajectory where the design has
// two (runs 6, 7), and outputs that end before the design's last run. What
// is left: a has effects {2, 0}, b {0, 4}, deviations sqrt(2) and sqrt(8).
TEST(MorrisStats, HandComputedEffectsAndDamagedDesigns) {
    PrepConfiguration prep = handMade(3, {-1, 0, 1, -1, 1, 0, -1, 0, 1});
    OutputTable outputs = test::tableOf({{1, 3, 2, 5, 5.5, 4.5, 0, 0, 3}, std::vector<double>(9, 7.0)});
    MorrisStats stats;
    stats.variableCount = 2;
    ASSERT_EQ(stats.compute(prep, outputs), 1);
    EXPECT_EQ(stats.computed, 1);
    EXPECT_EQ(stats.factorCount, 3);
    EXPECT_EQ(stats.records[1].kind, kConstantFactor);
    Slots s = slotsOf(stats, 0);
    EXPECT_EQ(s.index, (std::vector<double>{2.0, 0.0, 3.0}));
    EXPECT_EQ(s.sigma, (std::vector<double>{2.0, 0.0, std::sqrt(7.0)}));
    s = slotsOf(stats, 1);
    EXPECT_EQ(s.index, std::vector<double>(3, 0.0));
    EXPECT_EQ(s.sigma, std::vector<double>(3, 0.0));
    std::vector<double> out(3);
    EXPECT_EQ(stats.morrisIndex(2, out.data()), 0);

    PrepConfiguration damaged = handMade(2, {0, -1, 0, 5, -1, 1, -1, 0, 1});
    OutputTable eight = test::tableOf({{100, 1, 2, 50, 4, 6, 0, 0}});
    stats.variableCount = 1;
    ASSERT_EQ(stats.compute(damaged, eight), 1);
    s = slotsOf(stats, 0);
    EXPECT_EQ(s.index, (std::vector<double>{1.0, 0.0, 2.0}));
    EXPECT_EQ(s.sigma, (std::vector<double>{std::sqrt(2.0), 0.0, std::sqrt(8.0)}));

    // A sample of another design, or more variables than the table holds.
    PrepConfiguration random = test::randomPrep(9);
    EXPECT_EQ(stats.compute(random, outputs), 0);
    EXPECT_EQ(stats.errorText, kNotMorrisDesignText);
    EXPECT_EQ(stats.computed, 0);
    stats.variableCount = 3;
    EXPECT_EQ(stats.compute(prep, outputs), 0);
    EXPECT_EQ(stats.errorText, "The output table holds 2 variables; 3 are to be analysed.");
    EXPECT_TRUE(stats.records.empty());
}

// The program's trajectories on p = 5 levels: a jump of d = 2 levels moves a
// factor by 2/5 of its range. For y = 3 a - 2 b + k with a on [0, 1] and b on
// [0, 2] every effect of a is |2.0 * 3 * 0.4| = 2.4 and of b
// |2.0 * 2 * 0.8| = 3.2, whatever the trajectory; the inert c has none.
// The values pass through the factors' inverses and the model: 1e-9 allows
// their rounding and nothing else (a step read from the design would give
// 3.0 and 4.0).
TEST(MorrisStats, ProgramsTrajectoriesGiveLinearEffectsAndRankAnInertFactorLast) {
    PrepConfiguration prep;
    ASSERT_EQ(prep.factors.addFactor(uniformFactor("a")), 1);
    ASSERT_EQ(prep.factors.addFactor(constantFactor("k", 1.0)), 1);
    ASSERT_EQ(prep.factors.addFactor(uniformFactor("b", 0.0, 2.0)), 1);
    ASSERT_EQ(prep.factors.addFactor(uniformFactor("c")), 1);
    ASSERT_EQ(prep.factors.addFactor(relationFactor("twice", "a*2")), 1);
    auto design = std::make_unique<MorrisSampler>();
    ASSERT_EQ(design->setLevels(5), 1);
    ASSERT_EQ(design->setTrajectories(12), 1);
    ASSERT_EQ(design->setSamples(12 * 4), 1);
    prep.sampler = std::move(design);
    ASSERT_EQ(runGeneration(prep, nullptr).result, kGenerationDone);

    const std::vector<double> a = column(prep.samples, 0), k = column(prep.samples, 1), b = column(prep.samples, 2);
    std::vector<double> y(a.size());
    for (std::size_t i = 0; i < y.size(); ++i) y[i] = 3.0 * a[i] - 2.0 * b[i] + k[i];
    OutputTable outputs = test::tableOf({y});
    MorrisStats stats;
    stats.variableCount = 1;
    ASSERT_EQ(stats.compute(prep, outputs), 1);
    const Slots s = slotsOf(stats, 0);
    EXPECT_NEAR(s.index[0], 2.4, 1e-9);
    EXPECT_NEAR(s.index[2], 3.2, 1e-9);
    // The inert c ranks last with both slots 0.0, as do the constant and
    // the relation.
    EXPECT_EQ((std::vector<double>{s.index[1], s.sigma[1], s.index[3], s.sigma[3], s.index[4], s.sigma[4]}),
              std::vector<double>(6, 0.0));
}

// One trajectory: effects 8 (a) and 6 (b), sigma 0 / 0. The record reads
// back from the file as it was written, "nan" included.
TEST(MorrisStats, OneTrajectoryThroughTheFileAndTheSavedTable) {
    PrepConfiguration prep = handMade(1, {-1, 1, 0});
    OutputTable outputs = test::tableOf({{1, 4, 0}});
    MorrisStats stats;
    stats.variableCount = 1;
    ASSERT_EQ(stats.compute(prep, outputs), 1);

    EXPECT_EQ(test::roundTripBlock(prep, stats),
              "1\n3\n1\nindexes = yes\n"
              "a\n3\t \t8\t \tnan\t \t\n"
              "k\n0\t \t0\t \t0\t \t\n"
              "b\n3\t \t6\t \tnan\t \t\n");

    std::ostringstream table;
    ResultTableRequest request;
    request.variables = {0};
    request.variableNames = {"Y"};
    stats.writeTable(table, request);
    using test::cell;
    EXPECT_EQ(table.str(), "Morris indexes\n" + cell("") + cell("Y") + cell("") + "\n" + cell("") +
                               cell("Morris Index") + cell("Sigma") + "\n" + cell("a") + cell("8.0000") +
                               cell("nan") + "\n" + cell("k") + cell("Constant") + cell("Constant") + "\n" +
                               cell("b") + cell("6.0000") + cell("nan") + "\n");
}

}  // namespace
}  // namespace tarvex
