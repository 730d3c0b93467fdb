// The Sobol design: base blocks from LP-tau points, the block layouts of both
// kinds, the sample-size rule, the section.
#include <gtest/gtest.h>

#include <set>
#include <sstream>

#include "sampling/Combinations.h"
#include "sampling/LpTauGenerator.h"
#include "sampling/SobolSampler.h"
#include "SampleFileRoundTrip.h"
#include "SamplingFixtures.h"

namespace tarvex {
namespace {

using namespace tarvex::testing;

// Rows of block `block` (of `size` runs) in one column.
std::vector<double> blockColumn(sampValues& store, int block, int size, int c) {
    const std::vector<double> all = column(store, c);
    return std::vector<double>(all.begin() + block * size, all.begin() + (block + 1) * size);
}

// Every column of `block` is block 0's (A) for the factors in `fromA`, block
// 1's (B) for the other factors of `stochastic`; the constant (factor 0) holds
// 7.5 throughout.
void expectBlock(sampValues& store, int block, const std::set<int>& fromA, const std::vector<int>& stochastic) {
    for (int f : stochastic)
        EXPECT_EQ(blockColumn(store, block, 16, f), blockColumn(store, fromA.count(f) ? 0 : 1, 16, f))
            << "block " << block << " factor " << f;
    EXPECT_EQ(blockColumn(store, block, 16, 0), std::vector<double>(16, 7.5)) << block;
}

// A constant before the stochastic factors a, b, c.
FactorList constantThenThree() {
    FactorList list;
    EXPECT_EQ(list.addFactor(constantFactor("k", 7.5)), 1);
    for (const char* name : {"a", "b", "c"}) EXPECT_EQ(list.addFactor(uniformFactor(name)), 1);
    return list;
}

TEST(SobolSampler, FirstAndTotalDesign) {
    FactorList list = constantThenThree();
    SobolSampler s;
    s.setDesignKind(1);
    ASSERT_EQ(s.setBaseSize(16), 1);
    ASSERT_EQ(SobolSampler::blockCount(3, 1, 0, false), 8);
    ASSERT_EQ(s.setSamples(128), 1);
    sampValues store;
    ASSERT_EQ(s.generate(50.0f, store, list), 50.0f);
    EXPECT_EQ(s.numFactors(), 3);
    ASSERT_EQ(store.rowCount(), 128);

    // Blocks 0 and 1: the two halves of the points of 6 coordinates; row 1 by
    // hand (the second direction numbers are 1/4 and 3/4 by turns).
    std::vector<double> point;
    for (int p = 0; p < 16; ++p) {
        ASSERT_EQ(lpTauPoint(p + 1, 6, point), 1);
        for (int c = 0; c < 3; ++c) {
            EXPECT_EQ(column(store, c + 1)[size_t(p)], point[size_t(c)]) << p;
            EXPECT_EQ(column(store, c + 1)[size_t(16 + p)], point[size_t(3 + c)]) << p;
        }
    }
    EXPECT_EQ((std::vector<double>{column(store, 1)[1], column(store, 2)[1], column(store, 1)[17]}),
              (std::vector<double>{0.25, 0.75, 0.75}));
    // Blocks 2-4: B with the j-th stochastic factor from A; 5-7: A with it from B.
    const std::vector<int> abc = {1, 2, 3};
    for (int j = 0; j < 3; ++j) {
        expectBlock(store, 2 + j, {abc[size_t(j)]}, abc);
        std::set<int> others(abc.begin(), abc.end());
        others.erase(abc[size_t(j)]);
        expectBlock(store, 5 + j, others, abc);
    }
}

TEST(SobolSampler, HigherOrderDesign) {
    FactorList list = constantThenThree();
    ASSERT_EQ(list.addFactor(uniformFactor("d")), 1);
    SobolSampler s;
    s.setDesignKind(3);
    s.setOrder(2);
    ASSERT_EQ(s.setBaseSize(16), 1);
    ASSERT_EQ(SobolSampler::blockCount(4, 3, 2, false), 12);
    ASSERT_EQ(s.setSamples(12 * 16), 1);
    sampValues store;
    ASSERT_EQ(s.generate(50.0f, store, list), 50.0f);
    EXPECT_EQ(s.orderStart(), (std::vector<int64_t>{2, 6}));
    EXPECT_EQ(s.comboCount(), (std::vector<int64_t>{4, 6}));
    // Stochastic factors 0-3 are list entries 1-4.
    const std::vector<std::set<int>> subsets = {{1}, {2}, {3}, {4}, {1, 2}, {1, 3}, {1, 4}, {2, 3}, {2, 4}, {3, 4}};
    for (size_t i = 0; i < subsets.size(); ++i) expectBlock(store, 2 + int(i), subsets[i], {1, 2, 3, 4});

    // An order equal to k walks the orders below it: 2 + 3 + 3 blocks for k = 3.
    FactorList three = constantThenThree();
    s.setOrder(3);
    ASSERT_EQ(SobolSampler::blockCount(3, 3, 3, false), 8);
    ASSERT_EQ(s.setSamples(8 * 16), 1);
    s.reset();
    ASSERT_EQ(s.generate(50.0f, store, three), 50.0f);
    EXPECT_EQ(s.orderStart(), (std::vector<int64_t>{2, 5}));
    EXPECT_EQ(s.comboCount(), (std::vector<int64_t>{3, 3}));
    expectBlock(store, 7, {2, 3}, {1, 2, 3});
    // A ninth block would have no subset to take from A.
    ASSERT_EQ(s.setSamples(8 * 16 + 1), 1);
    s.reset();
    EXPECT_EQ(s.generate(50.0f, store, three), -1.0f);
    EXPECT_EQ(s.errorText(), "  Sample size too big for the design: 129 runs need 9 blocks of 16, the design has 8.");
}

TEST(SobolSampler, SampleSizeRule) {
    std::vector<int32_t> sizes;
    std::string text;
    ASSERT_EQ(SobolSampler::sampleSizes(3, 1, 0, false, sizes, text), 1);
    EXPECT_EQ(sizes, (std::vector<int32_t>{128, 256, 512, 1024, 2048, 4096, 8192, 16384, 32768}));
    // Order k: 2 + 4 + C(4,2) + C(4,3) = 16; the cheap design stops at k / 2 = 2.
    EXPECT_EQ(SobolSampler::blockCount(4, 3, 4, false), 16);
    EXPECT_EQ(SobolSampler::blockCount(4, 3, 4, true), 12);
    EXPECT_EQ(SobolSampler::blockCount(5, 3, 1, true), 7);
    // An order above k: the message, and the sizes of order 1.
    EXPECT_EQ(SobolSampler::sampleSizes(5, 3, 9, false, sizes, text), 0);
    EXPECT_EQ(text, "  Incorrect order number, order too big.");
    EXPECT_EQ(sizes.front(), 16 * 7);
    // k = 60, order 6: 56,049,059 blocks (sum of C(60, r) for r = 2 to 6, plus
    // 62), which 32-bit products would have wrapped; two sizes fit in a run count.
    ASSERT_EQ(SobolSampler::sampleSizes(60, 3, 6, false, sizes, text), 1);
    EXPECT_EQ(sizes, (std::vector<int32_t>{896784944, 1793569888}));
    // k = 185, order 60: past 64 bits; nothing fits.
    EXPECT_EQ(SobolSampler::blockCount(185, 3, 60, false), INT64_MAX);
    EXPECT_EQ(SobolSampler::sampleSizes(185, 3, 60, false, sizes, text), 0);
    EXPECT_TRUE(sizes.empty());
    EXPECT_EQ(text, "  Sample size too big: the design needs more than 2147483647 runs.");
}

TEST(SobolSampler, PointLimitAndBaseSize) {
    FactorList list;
    for (int i = 0; i < 186; ++i) ASSERT_EQ(list.addFactor(uniformFactor("f" + std::to_string(i))), 1);
    SobolSampler s;
    s.setDesignKind(1);
    ASSERT_EQ(s.setSamples(4), 1);
    sampValues store;
    EXPECT_EQ(s.generate(50.0f, store, list), -1.0f);
    EXPECT_EQ(s.errorText(), "Base sample size must be a positive value");
    ASSERT_EQ(s.setBaseSize(16), 1);
    EXPECT_EQ(s.generate(50.0f, store, list), -1.0f);
    EXPECT_EQ(s.errorText(), "Sample number 1: generation failed");
    ASSERT_EQ(list.removeFactor(185), 1);
    s.reset();
    EXPECT_EQ(s.generate(50.0f, store, list), 50.0f);
    EXPECT_EQ(store.rowCount(), 4);
}

TEST(SobolSampler, SectionAndSampleFileRoundTrip) {
    auto made = Sampler::create(kSobolMethod);
    auto* sobol = dynamic_cast<SobolSampler*>(made.get());
    ASSERT_NE(sobol, nullptr);
    sobol->setDesignKind(3);
    sobol->setOrder(2);
    ASSERT_EQ(sobol->setBaseSize(16), 1);
    ASSERT_EQ(sobol->setSamples(16 * 4), 1);

    PrepConfiguration config;
    ASSERT_EQ(config.factors.addFactor(uniformFactor("a", 2.0, 4.0)), 1);
    ASSERT_EQ(config.factors.addFactor(constantFactor("k", 0.5)), 1);
    ASSERT_EQ(config.factors.addFactor(normalFactor("n", 10.0, 2.0)), 1);
    ASSERT_EQ(config.factors.addFactor(relationFactor("r", "a*k")), 1);
    config.sampler = std::move(made);
    PrepConfiguration back;
    const auto [first, second] = sampleFileRoundTrip(config, back);
    EXPECT_EQ(second, first);
    // Order 2 of k = 2 stops at order 1: 4 blocks.
    EXPECT_NE(first.find("\n7\nSobol\n16\n64\n3\n2\n2\n"), std::string::npos);
    // Block 2 takes a from A, n from B; the relation follows its row.
    const std::vector<double> a = column(back.samples, 0), n = column(back.samples, 2), r = column(back.samples, 3);
    EXPECT_EQ(a[32 + 3], a[3]);
    EXPECT_EQ(n[32 + 3], n[16 + 3]);
    EXPECT_EQ(r[32 + 3], r[3]);
    EXPECT_DOUBLE_EQ(r[3], a[3] * 0.5);

    std::istringstream bad("16\n64\n3\nx\n");
    SobolSampler read;
    read.readItems(bad);
    EXPECT_FALSE(bad);
    EXPECT_EQ(read.methodName(), "Sobol");
    EXPECT_EQ((std::vector<int32_t>{read.baseSize(), read.numSamples(), read.designKind(), read.order(),
                                    read.numFactors()}),
              std::vector<int32_t>(5, 0));
}

TEST(Combinations, LexicographicSubsetsThroughItems) {
    const int32_t items[] = {10, 11, 12, 13, 14};
    int64_t count = 0;
    EXPECT_EQ(combinations(5, 3, items, count),
              (std::vector<int32_t>{10, 11, 12, 10, 11, 13, 10, 11, 14, 10, 12, 13, 10, 12, 14, 10, 13, 14,
                                    11, 12, 13, 11, 12, 14, 11, 13, 14, 12, 13, 14}));
    EXPECT_EQ(count, 10);
    EXPECT_TRUE(combinations(3, 4, items, count).empty());
    EXPECT_EQ(count, 0);
    EXPECT_EQ(combinations(5, 2, items, count, 2), (std::vector<int32_t>{10, 11, 10, 12}));
    EXPECT_EQ(count, 10);
    EXPECT_EQ(binomial(62, 31), 465428353255261088);
    EXPECT_EQ(binomial(66, 33), 7219428434016265740);
    EXPECT_EQ(binomial(67, 33), INT64_MAX);  // 14226520737620288370
}

}  // namespace
}  // namespace tarvex
