// Simple random designs: the stream, rank correlation, dependence tree.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "common/UniformRandom.h"
#include "sampling/RandomSampler.h"
#include "SamplingFixtures.h"

namespace tarvex {
namespace {

using namespace tarvex::testing;

TEST(RandomSampler, CellsFollowTheStreamInSamplingOrder) {
    FactorList list;
    ASSERT_EQ(list.addFactor(relationFactor("r", "a*2")), 1);
    ASSERT_EQ(list.addFactor(uniformFactor("a")), 1);
    ASSERT_EQ(list.addFactor(constantFactor("k", 3.25)), 1);
    ASSERT_EQ(list.addFactor(uniformFactor("b")), 1);
    RandomSampler s;
    ASSERT_EQ(s.setSamples(4), 1);
    ASSERT_EQ(s.setSeed(1), 1);
    sampValues store;
    ASSERT_EQ(drive(s, store, list), 50.0f);
    // Sampling order: a, b (roots), then k, then r; all samples of one factor
    // before the next.
    int32_t state = -1;
    for (int c : {1, 3})
        for (int32_t r = 0; r < 4; ++r) {
            double x = 0.0;
            ASSERT_EQ(store.getValue(r, c, &x), 1);
            EXPECT_EQ(x, uniformRandom(&state)) << r << " " << c;
        }
    for (double v : column(store, 2)) EXPECT_EQ(v, 3.25);
}

TEST(RandomSampler, ImanConoverReordersKeepingValues) {
    FactorList list;
    ASSERT_EQ(list.addFactor(uniformFactor("a")), 1);
    ASSERT_EQ(list.addFactor(constantFactor("k", 1.0)), 1);
    ASSERT_EQ(list.addFactor(uniformFactor("b")), 1);
    ASSERT_EQ(list.setMatrixValue(0, 1, -0.8), 1);
    RandomSampler plain, ranked;
    for (RandomSampler* s : {&plain, &ranked}) {
        ASSERT_EQ(s->setSamples(1000), 1);
        ASSERT_EQ(s->setSeed(31), 1);
    }
    sampValues x, y;
    list.correlationMode = kNoCorrelation;
    ASSERT_EQ(drive(plain, x, list), 50.0f);
    list.correlationMode = kImanConoverCorrelation;
    // The first phase ends at 25 with the same draws as the plain design.
    ranked.reset();
    EXPECT_EQ(ranked.generate(25.0f, y, list), 25.0f);
    EXPECT_EQ(column(x, 0), column(y, 0));
    ASSERT_EQ(drive(ranked, y, list), 50.0f);
    for (int c : {0, 2}) {
        std::vector<double> a = column(x, c), b = column(y, c);
        std::sort(a.begin(), a.end());
        std::sort(b.begin(), b.end());
        EXPECT_EQ(a, b);
    }
    EXPECT_NEAR(spearman(column(y, 0), column(y, 2)), -0.8, 0.08);
    for (double v : column(y, 1)) EXPECT_EQ(v, 1.0);
}

TEST(RandomSampler, FailedMatrixLeavesIndependentColumns) {
    FactorList list;
    makeImpossibleCorrelations(list);
    RandomSampler s;
    ASSERT_EQ(s.setSamples(1000), 1);
    sampValues store;
    ASSERT_EQ(drive(s, store, list), 50.0f);
    EXPECT_EQ(s.warningText(), "The Iman Conover Matrix is not positive definited.\nNo correlation can be calculated.");
    for (int c = 0; c < 3; ++c) {
        const std::vector<double> v = column(store, c);
        // Not collapsed onto one value.
        EXPECT_EQ(std::set<double>(v.begin(), v.end()).size(), v.size());
    }
    EXPECT_NEAR(spearman(column(store, 0), column(store, 1)), 0.0, 0.1);
    EXPECT_NEAR(spearman(column(store, 1), column(store, 2)), 0.0, 0.1);
}

TEST(RandomSampler, DependenceTreeAndSeeds) {
    FactorList list;
    ASSERT_EQ(list.addFactor(uniformFactor("p")), 1);
    ASSERT_EQ(list.addFactor(uniformFactor("c")), 1);
    ASSERT_EQ(list.addFactor(uniformFactor("g")), 1);
    ASSERT_EQ(list.linkFactor(1, 0, 0.6), 1);
    ASSERT_EQ(list.linkFactor(2, 1, -0.4), 1);
    list.correlationMode = kTreeCorrelation;
    RandomSampler s;
    ASSERT_EQ(s.setSamples(5000), 1);
    ASSERT_EQ(s.setSeed(8), 1);
    sampValues one, two;
    ASSERT_EQ(drive(s, one, list), 50.0f);
    EXPECT_NEAR(spearman(column(one, 0), column(one, 1)), 0.6, 0.04);
    EXPECT_NEAR(spearman(column(one, 1), column(one, 2)), -0.4, 0.04);
    ASSERT_EQ(drive(s, two, list), 50.0f);
    for (int c = 0; c < 3; ++c) EXPECT_EQ(column(one, c), column(two, c));
}

}  // namespace
}  // namespace tarvex
