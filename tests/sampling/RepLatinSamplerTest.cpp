// Replicated Latin hypercube: replicates permute the base block, the run
// table finds each value in each replicate, the stream goes on across
// generations, and the section reads back what it wrote.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <sstream>

#include "TestSupport.h"
#include "common/Environment.h"
#include "common/UniformRandom.h"
#include "sampling/GenerationLoop.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/RepLatinSampler.h"
#include "SampleFileRoundTrip.h"
#include "SamplingFixtures.h"

namespace tarvex {
namespace {

using namespace tarvex::testing;
using namespace tarvex::test;

std::vector<double> rowsOf(const std::vector<double>& v, int32_t first, int32_t count) {
    return std::vector<double>(v.begin() + first, v.begin() + first + count);
}

std::vector<double> sorted(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v;
}

// Checks the design of m runs by r replicates against its definition.
void checkDesign(RepLatinSampler& s, sampValues& store, const std::vector<int>& stochastic, int32_t m, int32_t r) {
    ASSERT_EQ(store.rowCount(), m * r);
    EXPECT_EQ(s.numSamples(), m * r);
    for (int f : stochastic) {
        const std::vector<double> v = column(store, f);
        const std::vector<double> base = sorted(rowsOf(v, 0, m));
        EXPECT_TRUE(oneValuePerStratum(base)) << f;
        for (int32_t rep = 1; rep < r; ++rep) EXPECT_EQ(sorted(rowsOf(v, rep * m, m)), base) << f << " " << rep;
        for (int32_t j = 0; j < m; ++j) {
            const int32_t* runs = s.runOf(f, j);
            ASSERT_NE(runs, nullptr);
            for (int32_t rep = 0; rep < r; ++rep) {
                EXPECT_GE(runs[rep], rep * m) << f << " " << j;
                EXPECT_LT(runs[rep], rep * m + m) << f << " " << j;
                EXPECT_EQ(v[size_t(runs[rep])], base[size_t(j)]) << f << " " << j << " " << rep;
            }
        }
    }
    EXPECT_EQ(s.runOf(stochastic[0], m), nullptr);
    EXPECT_EQ(s.runOf(-1, 0), nullptr);
}

// Without correlation, with Iman-Conover, and with a Stein sample, whose
// ranks replicate k takes from the imported rows k * m to k * m + m - 1.
TEST(RepLatinSampler, ReplicatesPermuteTheBaseBlockAndTheRunTableFindsEachValue) {
    FactorList list;
    ASSERT_EQ(list.addFactor(uniformFactor("a")), 1);
    ASSERT_EQ(list.addFactor(constantFactor("k", 2.5)), 1);
    ASSERT_EQ(list.addFactor(uniformFactor("b")), 1);
    ASSERT_EQ(list.addFactor(relationFactor("r", "a+b")), 1);
    ASSERT_EQ(list.setMatrixValue(0, 1, 0.8), 1);  // a and b, by their rank-matrix rows
    std::vector<double> imported;
    for (int32_t i = 0; i < 15; ++i) {
        imported.push_back(double((i * 7) % 11));  // distinct within each block of 5
        imported.push_back(double((i * 4) % 13));
    }
    list.steinInfo.assign(15, 2, imported);
    struct Case {
        int mode;
        int32_t m, r;
    };
    for (const Case& c : {Case{kNoCorrelation, 20, 4}, Case{kImanConoverCorrelation, 50, 3}, Case{kSteinCorrelation, 5, 3},
                          Case{kNoCorrelation, 7, 1}, Case{kImanConoverCorrelation, 1, 5}, Case{kNoCorrelation, 1, 1}}) {
        SCOPED_TRACE(::testing::Message() << "mode " << c.mode << " m " << c.m << " r " << c.r);
        list.correlationMode = c.mode;
        RepLatinSampler s;
        ASSERT_EQ(s.setSeed(77), 1);
        ASSERT_EQ(s.setBaseDesign(c.m), 1);
        ASSERT_EQ(s.setReplications(c.r), 1);
        sampValues store;
        ASSERT_EQ(drive(s, store, list), 50.0f);
        EXPECT_TRUE(s.warningText().empty());
        checkDesign(s, store, {0, 2}, c.m, c.r);
        for (double k : column(store, 1)) EXPECT_EQ(k, 2.5);
        const std::vector<double> a = column(store, 0), b = column(store, 2);
        if (c.m >= 20) {
            EXPECT_NE(rowsOf(a, 0, c.m), rowsOf(a, c.m, c.m)) << "reordered, not copied";
            if (c.mode == kImanConoverCorrelation) {
                EXPECT_GT(spearman(rowsOf(a, c.m, c.m), rowsOf(b, c.m, c.m)), 0.6);
            }
        }
        for (int32_t rep = 0; c.mode == kSteinCorrelation && rep < c.r; ++rep) {
            std::vector<double> blockA, blockB;
            for (int32_t i = rep * c.m; i < rep * c.m + c.m; ++i) {
                blockA.push_back(imported[size_t(2 * i)]);
                blockB.push_back(imported[size_t(2 * i + 1)]);
            }
            EXPECT_EQ(ranksOf(rowsOf(a, rep * c.m, c.m)), ranksOf(blockA)) << rep;
            EXPECT_EQ(ranksOf(rowsOf(b, rep * c.m, c.m)), ranksOf(blockB)) << rep;
        }
    }
}

TEST(RepLatinSampler, SecondGenerationContinuesTheStream) {
    FactorList list;
    ASSERT_EQ(list.addFactor(uniformFactor("a")), 1);
    ASSERT_EQ(list.addFactor(uniformFactor("b")), 1);
    const int32_t m = 3, r = 2;
    RepLatinSampler s;
    ASSERT_EQ(s.setSeed(11), 1);
    ASSERT_EQ(s.setBaseDesign(m), 1);
    ASSERT_EQ(s.setReplications(r), 1);
    sampValues first, second;
    ASSERT_EQ(drive(s, first, list), 50.0f);
    ASSERT_EQ(drive(s, second, list), 50.0f);

    // The stream from seed 11: 2 * m stratum draws, then 2 * m exchanges of
    // two draws per column and replicate, then the second generation.
    int32_t state = -11;
    std::vector<double> u;
    for (int i = 0; i < 2 * (2 * m + r * 2 * (2 * m) * 2); ++i) u.push_back(uniformRandom(&state));
    const size_t next = u.size() / 2;
    for (int f = 0; f < 2; ++f) {
        std::vector<double> strata1, strata2;
        for (int32_t i = 0; i < m; ++i) {
            strata1.push_back(u[size_t(f * m + i)] / m + double(i) / m);
            strata2.push_back(u[next + size_t(f * m + i)] / m + double(i) / m);
        }
        EXPECT_EQ(sorted(rowsOf(column(first, f), 0, m)), strata1) << f;
        EXPECT_EQ(sorted(rowsOf(column(second, f), 0, m)), strata2) << f;
    }
    // reset does not restart the stream; a new seed does.
    ASSERT_EQ(s.setSeed(11), 1);
    sampValues again;
    ASSERT_EQ(drive(s, again, list), 50.0f);
    EXPECT_EQ(column(again, 0), column(first, 0));
}

TEST(RepLatinSampler, SettersElementsAndChoice) {
    RepLatinSampler s;
    EXPECT_EQ(s.setBaseDesign(0), 0);
    EXPECT_EQ(s.baseDesign(), 1);
    EXPECT_EQ(s.setReplications(0), 1) << "set in any case";
    EXPECT_EQ(s.replications(), 0);
    EXPECT_EQ(s.setNumFactors(3), 1);
    EXPECT_EQ(s.setNumFactors(0), 0);
    EXPECT_EQ(s.numFactors(), 3);

    FactorList list;
    ASSERT_EQ(list.addFactor(uniformFactor("a")), 1);
    ASSERT_EQ(list.addFactor(constantFactor("k", 1.0)), 1);
    ASSERT_EQ(list.addFactor(uniformFactor("b")), 1);
    s.addElement("b", 1);
    s.addElement("gone", 1);
    s.synchroniseElements(list);
    ASSERT_EQ(s.elementCount(), 3);
    EXPECT_EQ(std::vector<int32_t>({s.elementFlag(0), s.elementFlag(1), s.elementFlag(2), s.elementFlag(3)}),
              std::vector<int32_t>({0, -1, 1, -2}));
    EXPECT_STREQ(s.elementName(2), "b");
    EXPECT_EQ(s.elementName(-1), nullptr);
    EXPECT_EQ(s.setElementFlag(3, 1), 0);
    EXPECT_EQ(s.errorText(), "index out of range");

    // A selection of elements makes no rows.
    ASSERT_EQ(s.setReplications(2), 1);
    s.setChoice(1);
    sampValues store;
    EXPECT_EQ(s.generate(50.0f, store, list), -1.0f);
    EXPECT_EQ(s.errorText(), kChoiceGeneratesNothingText);
    EXPECT_EQ(store.rowCount(), 0);
}

TEST(RepLatinSampler, SectionAndSampleFileRoundTrip) {
    PrepConfiguration config;
    ASSERT_EQ(config.factors.addFactor(uniformFactor("a", 3.0, 4.0)), 1);
    ASSERT_EQ(config.factors.addFactor(constantFactor("k", 1.0)), 1);
    ASSERT_EQ(config.factors.addFactor(relationFactor("r", "a*2")), 1);
    auto made = std::make_unique<RepLatinSampler>();
    ASSERT_EQ(made->setSeed(5), 1);
    ASSERT_EQ(made->setBaseDesign(2), 1);
    ASSERT_EQ(made->setReplications(2), 1);
    RepLatinSampler& s = *made;
    config.sampler = std::move(made);
    PrepConfiguration back;
    const auto [first, second] = sampleFileRoundTrip(config, back);
    EXPECT_EQ(second, first);
    const std::vector<double> a = column(config.samples, 0);
    EXPECT_EQ(sorted(rowsOf(a, 2, 2)), sorted(rowsOf(a, 0, 2))) << "a replicate after the value pass";

    std::ostringstream out;
    s.writeSection(out);
    const int32_t* r0 = s.runOf(0, 0);
    const int32_t* r1 = s.runOf(0, 1);
    std::ostringstream expected;
    expected << "6\nReplicated Latin Hypercube\n5\n4\n3\n0\n2\n2\n0\ta\n-1\tk\n-1\tr\n" << r0[0] << '\t' << r0[1]
             << "\t\n" << r1[0] << '\t' << r1[1] << "\t\n0\t0\t\n0\t0\t\n0\t0\t\n0\t0\t\n";
    EXPECT_EQ(out.str(), expected.str());
    EXPECT_EQ(std::set<int32_t>({r0[0], r1[0], r0[1], r1[1]}), std::set<int32_t>({0, 1, 2, 3}));

    EXPECT_NE(first.find(out.str()), std::string::npos);
    EXPECT_TRUE(s.runListsAvailable());
    EXPECT_TRUE(dynamic_cast<const RepLatinSampler&>(*back.sampler).runListsAvailable());

    // The zeros written for a missing table read back as no table, so the
    // importance measures are not computed from run lists that never were;
    // in a design of one run the lists are all zeros by right.
    {
        RepLatinSampler none;
        ASSERT_EQ(none.setNumFactors(3), 1);
        ASSERT_EQ(none.setBaseDesign(2), 1);
        (void)none.setReplications(2);
        std::ostringstream zeros;
        none.writeSection(zeros);
        RepLatinSampler r;
        std::istringstream in(zeros.str().substr(std::string("6\nReplicated Latin Hypercube\n").size()));
        r.readItems(in);
        ASSERT_TRUE(in);
        EXPECT_FALSE(r.runListsAvailable());
        EXPECT_EQ(r.runOf(0, 0), nullptr);
        std::istringstream one("5\n1\n1\n0\n1\n1\n0\ta\n0\t\n");
        r.readItems(one);
        ASSERT_TRUE(one);
        EXPECT_TRUE(r.runListsAvailable());
        // A design changed since its generation has no lists of its own.
        EXPECT_EQ(s.setBaseDesign(3), 1);
        EXPECT_FALSE(s.runListsAvailable());
    }

    const std::string items = out.str().substr(std::string("6\nReplicated Latin Hypercube\n").size());
    std::string longName = items;
    longName.replace(longName.find("0\ta\n"), 4, "0\t" + std::string(99, 'n') + "\n");
    for (const std::string& bad : {std::string("5\n4\n3\n0\n0\n2\n"), std::string("5\n4\n0\n0\n2\n2\n"), longName,
                                   items.substr(0, items.size() - 12)}) {
        RepLatinSampler r;
        std::istringstream in(bad);
        r.readItems(in);
        EXPECT_FALSE(in) << bad;
        EXPECT_EQ(r.numFactors(), 0);
        EXPECT_EQ(r.seed(), 5648423);
        EXPECT_EQ(r.runOf(0, 0), nullptr);
    }
}

}  // namespace
}  // namespace tarvex
