// Fixed samples: typed rows become the sample as they stand, the section
// carries them, and the panel's starting row.
#include <gtest/gtest.h>

#include <sstream>

#include "TestSupport.h"
#include "common/Environment.h"
#include "sampling/FixedSampler.h"
#include "sampling/GenerationLoop.h"
#include "sampling/PrepConfiguration.h"
#include "SampleFileRoundTrip.h"
#include "SamplingFixtures.h"

namespace tarvex {
namespace {

using namespace tarvex::testing;
using namespace tarvex::test;

size_t occurrences(const std::string& text, const std::string& part) {
    size_t n = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++n;
    return n;
}

TEST(FixedSampler, TypedRowsAreTheSampleAndTheFileCarriesThemTwice) {
    PrepConfiguration config;
    ASSERT_EQ(config.factors.addFactor(uniformFactor("a", 2.0, 4.0)), 1);
    ASSERT_EQ(config.factors.addFactor(constantFactor("k", 1.5)), 1);
    ASSERT_EQ(config.factors.addFactor(relationFactor("r", "a*k")), 1);
    auto fixed = std::make_unique<FixedSampler>();
    ASSERT_EQ(fixed->setNumFactors(3), 1);
    fixed->clearRows();
    const double rows[2][3] = {{2.125, 1.5, -7.0}, {3.0000000001, 1.5, 1e-300}};
    for (const auto& row : rows) ASSERT_EQ(fixed->addRow(row), 1);
    ASSERT_EQ(fixed->setSamples(2), 1);
    EXPECT_EQ(fixed->copyRow(1), std::vector<double>(rows[1], rows[1] + 3));
    EXPECT_TRUE(fixed->copyRow(2).empty());
    config.sampler = std::move(fixed);
    PrepConfiguration back;
    const auto [text, again] = sampleFileRoundTrip(config, back);
    EXPECT_EQ(again, text);
    EXPECT_EQ(config.sampler->numSamples(), 2);
    ASSERT_EQ(config.samples.rowCount(), 2);
    // No value pass: not even the relation is evaluated.
    for (int c = 0; c < 3; ++c) EXPECT_EQ(column(config.samples, c), std::vector<double>({rows[0][c], rows[1][c]}));

    const std::string store = "2\n3\n0\n2.125\t1.5\t-7\t\n3\t1.5\t1e-300\t\n";
    EXPECT_EQ(occurrences(text, store), 2u) << text;
    EXPECT_NE(text.find("1\nFixed samples\n2\n3\n" + store), std::string::npos);
    EXPECT_EQ(dynamic_cast<FixedSampler&>(*back.sampler).copyRow(0), std::vector<double>(rows[0], rows[0] + 3));
}

TEST(FixedSampler, WidthCountsAndSectionFailure) {
    FactorList list;
    ASSERT_EQ(list.addFactor(uniformFactor("a")), 1);
    FixedSampler s;
    ASSERT_EQ(s.setNumFactors(2), 1);
    const double row[2] = {1.0, 2.0};
    ASSERT_EQ(s.addRow(row), 1);
    ASSERT_EQ(s.setSamples(1), 1);
    sampValues store;
    EXPECT_EQ(s.generate(50.0f, store, list), -1.0f);
    EXPECT_EQ(s.errorText(), "The fixed samples have 2 columns, the factor list 1 factors.");
    // A new list width empties and reallocates the rows.
    ASSERT_EQ(s.setNumFactors(1), 1);
    EXPECT_EQ(s.values().columnCount(), 1);
    EXPECT_EQ(s.values().rowCount(), 0);
    EXPECT_EQ(s.generate(50.0f, store, list), -1.0f);
    EXPECT_EQ(s.errorText(), "  No samples to generate");
    ASSERT_EQ(s.addRow(row), 1);
    EXPECT_EQ(s.generate(1.0f, store, list), 50.0f);
    EXPECT_EQ(store.rowCount(), 1);

    std::istringstream bad("1\n1\n2\n1\n0\n5\t\n");  // two rows announced, one given
    s.readItems(bad);
    EXPECT_FALSE(bad);
    EXPECT_EQ(s.numSamples(), 0);
    EXPECT_EQ(s.numFactors(), 0);
    EXPECT_EQ(s.values().rowCount(), 0);
    EXPECT_EQ(s.values().columnCount(), 0);
}

TEST(FixedSampler, StartingRowTakesMediansAndRelationsOnMeans) {
    FactorList list;
    ASSERT_EQ(list.addFactor(constantFactor("k", 3.0)), 1);
    // 80% of the weight on [0, 1], 20% on [1, 5]: median 0.625, mean 1.
    auto skewed = uniformFactor("x");
    skewed->clear();
    ASSERT_EQ(skewed->addInterval(std::make_unique<Interval>(0.0, 1.0, 0.8)), 1);
    ASSERT_EQ(skewed->addInterval(std::make_unique<Interval>(1.0, 5.0, 0.2)), 1);
    ASSERT_EQ(list.addFactor(std::move(skewed)), 1);
    ASSERT_EQ(list.addFactor(relationFactor("r", "x*2+k")), 1);
    ASSERT_EQ(list.addFactor(relationFactor("s", "r+1")), 1);
    ASSERT_EQ(list.addFactor(normalFactor("n", 10.0, 2.0)), 1);
    std::vector<double> row;
    std::string error;
    ASSERT_EQ(FixedSampler::startingRow(list, row, error), 1);
    ASSERT_EQ(row.size(), 5u);
    EXPECT_EQ(row[0], 3.0);
    EXPECT_NEAR(row[1], 0.625, 1e-6);
    EXPECT_NEAR(row[2], 5.0, 1e-9);
    EXPECT_NEAR(row[3], 6.0, 1e-9);
    EXPECT_NEAR(row[4], 10.0, 1e-6);

    ASSERT_EQ(list.addFactor(normalFactor("bad", 1.0, 0.0)), 1);  // no inverse table with sd 0
    EXPECT_EQ(FixedSampler::startingRow(list, row, error), 0);
    EXPECT_EQ(error, "I cannot calculate the inverse cumulative of factor 6");
}

}  // namespace
}  // namespace tarvex
