// The sampler frame: method table, parameter setters with their texts, reset,
// copies, and the method section of the sample file.
#include <gtest/gtest.h>

#include <sstream>

#include "sampling/LatinSampler.h"
#include "sampling/RandomSampler.h"
#include "sampling/Sampler.h"
#include "sampling/sampValues.h"
#include "SamplingFixtures.h"

namespace tarvex {
namespace {

TEST(Sampler, MethodTable) {
    const char* names[] = {"Fast",   "Fixed samples", "Latin Hypercube", "QuasiRandom LpTau",
                           "Morris", "Random",        "Replicated Latin Hypercube", "Sobol"};
    for (int id = 0; id < 8; ++id) EXPECT_STREQ(Sampler::nameOf(id), names[id]);
    EXPECT_STREQ(Sampler::nameOf(8), "");
    EXPECT_STREQ(Sampler::nameOf(-1), "");

    auto latin = Sampler::create(2);
    ASSERT_TRUE(latin);
    EXPECT_NE(dynamic_cast<LatinSampler*>(latin.get()), nullptr);
    EXPECT_EQ(latin->methodName(), "Latin Hypercube");
    EXPECT_EQ(latin->randomState(), -1);  // the default seed 1, ready to draw
    auto random = Sampler::create(5);
    EXPECT_NE(dynamic_cast<RandomSampler*>(random.get()), nullptr);

    EXPECT_FALSE(Sampler::create(8));
    EXPECT_FALSE(Sampler::create(-1));
}

TEST(Sampler, SettersRefuseWithTheirTexts) {
    RandomSampler s;
    EXPECT_EQ(s.setSeed(42), 1);
    EXPECT_EQ(s.seed(), 42);
    EXPECT_EQ(s.randomState(), -42);
    EXPECT_EQ(s.setSeed(0), 0);
    EXPECT_EQ(s.errorText(), "Seed must be a value greater than 0 and less than 2,147,483,647");
    EXPECT_EQ(s.setSeed(-1), 0);
    EXPECT_EQ(s.seed(), 42);
    EXPECT_EQ(s.randomState(), -42);

    EXPECT_EQ(s.setSamples(10), 1);
    EXPECT_EQ(s.setSamples(-1), 0);
    EXPECT_EQ(s.errorText(), "Number of execution must be a positive value");
    EXPECT_EQ(s.numSamples(), 10);
    EXPECT_EQ(s.setSamples(0), 1);
    EXPECT_EQ(s.numSamples(), 0);

    // Nothing to generate is a failure of the generation, with its text.
    FactorList list;
    ASSERT_EQ(list.addFactor(testing::uniformFactor("a")), 1);
    sampValues store;
    EXPECT_EQ(s.generate(50.0f, store, list), -1.0f);
    EXPECT_EQ(s.errorText(), "  No samples to generate");
}

TEST(Sampler, ResetAndCopies) {
    LatinSampler latin;
    ASSERT_EQ(latin.setSeed(9), 1);
    ASSERT_EQ(latin.setSamples(20), 1);
    FactorList list;
    ASSERT_EQ(list.addFactor(testing::uniformFactor("a")), 1);
    sampValues store;
    const float reached = latin.generate(10.0f, store, list);
    EXPECT_EQ(reached, latin.progress());
    EXPECT_GE(latin.progress(), 10.0f);
    EXPECT_NE(latin.randomState(), -9);

    std::unique_ptr<Sampler> copy = latin.clone();
    EXPECT_NE(dynamic_cast<LatinSampler*>(copy.get()), nullptr);
    EXPECT_EQ(copy->seed(), 9);
    EXPECT_EQ(copy->numSamples(), 20);
    EXPECT_EQ(copy->numFactors(), 1);
    EXPECT_EQ(copy->progress(), 0.0f) << "a copy starts a generation afresh";

    latin.reset();
    EXPECT_EQ(latin.progress(), 0.0f);
    EXPECT_EQ(latin.sampleIndex(), 0);
    EXPECT_EQ(latin.factorPosition(), 0);
    EXPECT_EQ(latin.phase(), 0);
    EXPECT_EQ(latin.randomState(), -9);
}

TEST(Sampler, MethodSectionRoundTripAndDefaultsOnFailure) {
    LatinSampler latin;
    ASSERT_EQ(latin.setSamples(250), 1);
    ASSERT_EQ(latin.setNumFactors(4), 1);
    ASSERT_EQ(latin.setSeed(77), 1);
    std::ostringstream out;
    latin.writeSection(out);
    EXPECT_EQ(out.str(), "2\nLatin Hypercube\n250\n4\n77\n");

    std::istringstream in("250\n4\n77\n");
    LatinSampler back;
    back.readItems(in);
    EXPECT_TRUE(in);
    EXPECT_EQ(back.numSamples(), 250);
    EXPECT_EQ(back.numFactors(), 4);
    EXPECT_EQ(back.seed(), 77);
    EXPECT_EQ(back.randomState(), -77);

    RandomSampler random;
    EXPECT_EQ(random.setSamples(5), 1);
    EXPECT_EQ(random.setSeed(3), 1);
    std::istringstream bad("12\nx\n");
    random.readItems(bad);
    EXPECT_FALSE(bad);
    EXPECT_EQ(random.methodName(), "Random");
    EXPECT_EQ(random.numSamples(), 0);
    EXPECT_EQ(random.numFactors(), 0);
    EXPECT_EQ(random.seed(), 1);
}

}  // namespace
}  // namespace tarvex
