// Quasi-random designs: rows from the LP-tau points, limits, the section.
#include <gtest/gtest.h>

#include <sstream>

#include "sampling/LpTauSampler.h"
#include "SampleFileRoundTrip.h"
#include "SamplingFixtures.h"

namespace tarvex {
namespace {

using namespace tarvex::testing;

TEST(LpTauSampler, RowsArePointsInSamplingOrder) {
    FactorList list;
    ASSERT_EQ(list.addFactor(uniformFactor("c")), 1);
    ASSERT_EQ(list.addFactor(relationFactor("r", "a*2")), 1);
    ASSERT_EQ(list.addFactor(uniformFactor("a")), 1);
    ASSERT_EQ(list.addFactor(constantFactor("k", 3.25)), 1);
    ASSERT_EQ(list.addFactor(uniformFactor("b")), 1);
    // c is a's child: the sampling order is a, c, b, then k, then r.
    ASSERT_EQ(list.linkFactor(0, 2, 0.5), 1);
    list.computeFactorOrder();
    LpTauSampler s;
    ASSERT_EQ(s.setSamples(8), 1);
    sampValues store;
    ASSERT_EQ(drive(s, store, list), 50.0f);
    EXPECT_EQ(s.numFactors(), 3);
    // Points 1 to 8 of the first three dimensions, worked out by hand.
    const std::vector<double> first = {0.5, 0.25, 0.75, 0.125, 0.625, 0.375, 0.875, 0.0625};
    const std::vector<double> second = {0.5, 0.75, 0.25, 0.625, 0.125, 0.375, 0.875, 0.9375};
    const std::vector<double> third = {0.5, 0.25, 0.75, 0.875, 0.375, 0.625, 0.125, 0.6875};
    EXPECT_EQ(column(store, 2), first);
    EXPECT_EQ(column(store, 0), second);
    EXPECT_EQ(column(store, 4), third);
    EXPECT_EQ(column(store, 3), std::vector<double>(8, 3.25));
    EXPECT_EQ(column(store, 1), std::vector<double>(8, 0.0));

    // A second generation restarts at point 1 and makes the same rows, and
    // one call to 50 makes what fifty calls did.
    sampValues again;
    s.reset();
    ASSERT_EQ(s.generate(50.0f, again, list), 50.0f);
    for (int c = 0; c < 5; ++c) EXPECT_EQ(column(again, c), column(store, c));
}

TEST(LpTauSampler, AtMost370StochasticFactors) {
    FactorList list;
    for (int i = 0; i < 370; ++i) ASSERT_EQ(list.addFactor(uniformFactor("f" + std::to_string(i))), 1);
    ASSERT_EQ(list.addFactor(constantFactor("k", 1.0)), 1);
    LpTauSampler s;
    ASSERT_EQ(s.setSamples(2), 1);
    sampValues store;
    ASSERT_EQ(drive(s, store, list), 50.0f);
    EXPECT_EQ(store.rowCount(), 2);
    ASSERT_EQ(list.addFactor(uniformFactor("f370")), 1);
    EXPECT_EQ(drive(s, store, list), -1.0f);
    EXPECT_EQ(s.errorText(), "Sample number 1: generation failed");
    EXPECT_EQ(store.rowCount(), 0);
}

TEST(LpTauSampler, SectionAndSampleFileRoundTrip) {
    auto made = Sampler::create(kLpTauMethod);
    ASSERT_NE(dynamic_cast<LpTauSampler*>(made.get()), nullptr);
    EXPECT_EQ(made->numSamples(), 0);
    EXPECT_EQ(made->numFactors(), 0);

    PrepConfiguration config;
    ASSERT_EQ(config.factors.addFactor(uniformFactor("a", 2.0, 4.0)), 1);
    ASSERT_EQ(config.factors.addFactor(constantFactor("k", 0.5)), 1);
    ASSERT_EQ(config.factors.addFactor(relationFactor("r", "a*k")), 1);
    ASSERT_EQ(config.factors.addFactor(normalFactor("n", 10.0, 2.0)), 1);
    ASSERT_EQ(made->setSamples(16), 1);
    config.sampler = std::move(made);
    PrepConfiguration back;
    const auto [first, second] = sampleFileRoundTrip(config, back);
    EXPECT_EQ(second, first);
    EXPECT_NE(first.find("\n3\nQuasiRandom LpTau\n16\n2\n"), std::string::npos);
    // The value pass maps the points: a = 2 + 2u.
    EXPECT_DOUBLE_EQ(column(back.samples, 0)[2], 2.0 + 2.0 * 0.75);
    EXPECT_DOUBLE_EQ(column(back.samples, 2)[2], 3.5 * 0.5);

    std::istringstream bad("16\nx\n");
    LpTauSampler read;
    read.readItems(bad);
    EXPECT_FALSE(bad);
    EXPECT_EQ(read.methodName(), "QuasiRandom LpTau");
    EXPECT_EQ(read.numSamples() + read.numFactors(), 0);
}

}  // namespace
}  // namespace tarvex
