// The FAST design: frequency sets, groups, the sample-size rule, the three
// analysis modes cell by cell, and the method section.
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <sstream>

#include "common/Environment.h"
#include "common/TextLines.h"
#include "common/UniformRandom.h"
#include "sampling/FastFrequencies.h"
#include "sampling/FastSampler.h"
#include "sampling/GenerationLoop.h"
#include "sampling/PrepConfiguration.h"
#include "SampleFileRoundTrip.h"
#include "SamplingFixtures.h"
#include "TestSupport.h"

namespace tarvex {
namespace {

using namespace tarvex::testing;
using namespace tarvex::test;

constexpr const char* kGroup = "group g, freely named";
constexpr const char* kPerUnitText = "Sample size too small\nThe sample size must be >= 65 per factor/group";

// In mode 2, or with members, the sampler has the group kGroup.
FastSampler fast(int32_t mode, int32_t n, int32_t seed = 3, const std::vector<std::string>& members = {}) {
    FastSampler s;
    EXPECT_EQ(s.setAnalysisMode(mode) + s.setSamples(n) + s.setSeed(seed), 3);
    if (mode == 2 || !members.empty()) {
        EXPECT_EQ(s.addGroup(kGroup), 1);
    }
    for (const std::string& f : members) EXPECT_EQ(s.addElement(kGroup, f), 1);
    return s;
}

void addUniforms(FactorList& list, int count) {
    for (int i = 0; i < count; ++i) ASSERT_EQ(list.addFactor(uniformFactor("u" + std::to_string(i))), 1);
}

// Whether some r != 0 with |r_1| + ... + |r_k| <= 4 has r . w = 0: a positive
// and a negative part on different factors with equal sums, two terms against
// two (or fewer), or one against three.
bool interferes(const std::vector<int32_t>& w) {
    const size_t none = w.size();
    // Sums of one factor (second index `none`) or of two.
    std::map<int64_t, std::vector<std::pair<size_t, size_t>>> sums;
    for (size_t j = 0; j < w.size(); ++j) {
        sums[w[j]].push_back({j, none});
        for (size_t l = j; l < w.size(); ++l) sums[int64_t(w[j]) + w[l]].push_back({j, l});
    }
    auto shares = [none](std::pair<size_t, size_t> a, std::pair<size_t, size_t> b) {
        return a.first == b.first || a.first == b.second || (a.second != none && (a.second == b.first || a.second == b.second));
    };
    // At most two terms on each side.
    for (const auto& [sum, parts] : sums)
        for (size_t a = 0; a < parts.size(); ++a)
            for (size_t b = a + 1; b < parts.size(); ++b)
                if (!shares(parts[a], parts[b])) return true;
    // One term against three.
    for (size_t i = 0; i < w.size(); ++i)
        for (const auto& [sum, parts] : sums) {
            const auto rest = sums.find(w[i] - sum);
            if (rest == sums.end()) continue;
            for (const auto& two : parts) {
                if (two.second == none || two.first == i || two.second == i) continue;
                for (const auto& one : rest->second)
                    if (one.second == none && one.first != i) return true;
            }
        }
    return false;
}

TEST(FastFrequencies, PublishedSetsFreeOfInterference) {
    // The sets of Cukier, Schaibly and Shuler (1975) and McRae et al. (1982).
    EXPECT_EQ(classicFrequencies(2), (std::vector<int32_t>{5, 9}));
    EXPECT_EQ(classicFrequencies(3), (std::vector<int32_t>{1, 9, 15}));
    EXPECT_EQ(classicFrequencies(4), (std::vector<int32_t>{5, 11, 19, 23}));
    EXPECT_EQ(classicFrequencies(5), (std::vector<int32_t>{11, 21, 27, 35, 39}));
    EXPECT_EQ(classicFrequencies(6), (std::vector<int32_t>{1, 21, 31, 37, 45, 49}));
    EXPECT_EQ(classicFrequencies(8), (std::vector<int32_t>{23, 55, 77, 97, 107, 113, 121, 125}));
    EXPECT_TRUE(classicFrequencies(1).empty());
    EXPECT_TRUE(classicFrequencies(51).empty());
    // Every set of the tables, as typed, is free of interference up to the
    // fourth order.
    EXPECT_TRUE(interferes({5, 9, 23}));   // 5 + 9 + 9 = 23
    EXPECT_TRUE(interferes({3, 7, 11}));  // 3 + 11 = 7 + 7
    for (int32_t k = 2; k <= 50; ++k) EXPECT_FALSE(interferes(classicFrequencies(k))) << k;

    // Complementary sets stay within omegaMax / 8, below the main frequency's
    // harmonics up to the fourth; there are min(omegaMax / 8, k - members)
    // distinct values, starting at 1.
    for (int32_t w = 8; w <= 400; ++w)
        for (int32_t members = 1; members <= 4; ++members)
            for (int32_t k = members + 1; k <= 40; ++k) {
                const std::vector<int32_t> set = complementaryFrequencies(w, members, k);
                ASSERT_EQ(int32_t(set.size()), std::min(w / 8, k - members)) << w << " " << members << " " << k;
                EXPECT_EQ(set.front(), 1);
                for (size_t j = 1; j < set.size(); ++j) EXPECT_GT(set[j], set[j - 1]);
                EXPECT_LE(set.back(), w / 8) << w << " " << members << " " << k;
            }
    // One other factor and m above 1: no step to divide out, the set is {1}.
    EXPECT_EQ(complementaryFrequencies(24, 1, 2), (std::vector<int32_t>{1}));
}

TEST(FastSampler, GroupsAndElements) {
    FastSampler s = fast(1, 400);
    for (const char* g : {"first", "second", "third"}) EXPECT_EQ(s.addGroup(g), 1);
    EXPECT_EQ(s.addGroup(std::string(81, 'g')), 0);  // would not read back
    EXPECT_EQ(s.addGroup("two\nlines"), 0);
    for (auto [g, f] : {std::pair{"first", "a"}, {"third", "c"}, {"second", "b"}, {"third", "d"}})
        EXPECT_EQ(s.addElement(g, f), 1);
    EXPECT_EQ(s.addElement("nowhere", "e"), 0);
    EXPECT_EQ(s.groupSize("third"), 2);
    EXPECT_EQ(s.groupSize("nowhere"), -1);
    EXPECT_EQ(s.groupElement("third", 1), std::optional<std::string>("d"));
    EXPECT_EQ(s.groupElement("third", 2), std::nullopt);
    EXPECT_EQ(s.isInGroup("c") * 2 + s.isInGroup("e"), 2);
    EXPECT_EQ(s.removeGroup("nowhere"), 0);
    EXPECT_EQ(s.removeElement("e"), 0);
    s.reset();  // a (zero-row) block table
    ASSERT_NE(s.designTable(), nullptr);
    EXPECT_EQ(s.removeGroup("second"), 1);
    EXPECT_EQ(s.designTable(), nullptr);  // every change to groups drops it
    EXPECT_EQ(s.groupNames(), (std::vector<std::string>{"first", "third"}));
    EXPECT_EQ(s.elementNames(), (std::vector<std::string>{"a", "c", "d"}));
    EXPECT_EQ(s.elementGroups(), (std::vector<int32_t>{0, 1, 1}));  // third moved down
    s.reset();
    EXPECT_EQ(s.removeElement("c"), 1);
    EXPECT_EQ(s.designTable(), nullptr);
    EXPECT_EQ(s.groupSize("third"), 1);
    EXPECT_EQ(s.setAnalysisMode(3) + s.setAnalysisMode(-1), 0);
    EXPECT_EQ(s.analysisMode(), 1);
}

TEST(FastSampler, CheckSampleSize) {
    const std::string needs = "Sample size too small\nChoose sample size greater than or equal to ";
    struct Case {
        int32_t mode, n, k;
        std::vector<std::string> members;
        std::string text;
    } const cases[] = {
        {1, 194, 3, {}, kPerUnitText},
        {1, 195, 3, {}, ""},
        {2, 195, 5, {"a", "b", "c"}, ""},  // a group of three of five: three units
        {2, 194, 5, {"a", "b", "c"}, kPerUnitText},
        {0, 72, 2, {}, needs + "73"},  // 8 * 9 + 1
        {0, 104, 3, {}, needs + "105"},  // 8 * 13 + 1, although the set reaches 15
        {0, 105, 3, {}, ""},
        {0, 100000, 51, {}, "The classic FAST takes from 2 to 50 stochastic factors"},
    };
    for (const Case& c : cases) {
        FastSampler s = fast(c.mode, c.n, 3, c.members);
        EXPECT_EQ(s.checkSampleSize(c.k), c.text.empty() ? 1 : 0) << c.n << " " << c.k;
        EXPECT_EQ(s.errorText(), c.text.empty() ? "No errors" : c.text);
    }
}

// Every cell of a design against x = 1/2 + arcsin(sin(w s + phase)) / pi,
// worked out here: blocks of `curves` curves of `length` runs, each curve with
// fresh phases for every factor in list order from the seed's stream, and
// s = (2t - length + 1) pi / length, t counted from the block's start.
struct ExpectedBlock {
    std::vector<int32_t> frequencies;  // per factor, 0 for the others
    int32_t curves;
    int32_t length;
};

void expectCurveValues(sampValues& store, const FactorList& list, int32_t seed,
                       const std::vector<ExpectedBlock>& blocks) {
    int32_t state = -seed;
    const int count = list.factorCount();
    std::vector<double> phases(static_cast<size_t>(count));
    int32_t run = 0;
    for (const ExpectedBlock& block : blocks)
        for (int32_t t = 0; t < block.curves * block.length; ++t, ++run) {
            if (t % block.length == 0)
                for (double& p : phases) p = 2.0 * M_PI * uniformRandom(&state);
            const double s = (2.0 * t - block.length + 1.0) * M_PI / block.length;
            for (int f = 0; f < count; ++f) {
                if (block.frequencies[size_t(f)] == 0) continue;
                double x = -1.0;
                ASSERT_EQ(store.getValue(run, f, &x), 1);
                const double expected = 0.5 + std::asin(std::sin(block.frequencies[size_t(f)] * s + phases[size_t(f)])) / M_PI;
                ASSERT_NEAR(x, expected, 1e-12) << "run " << run << " factor " << f;
                ASSERT_TRUE(x >= 0.0 && x <= 1.0);
            }
        }
    EXPECT_EQ(store.rowCount(), run);
}

TEST(FastSampler, ClassicMode) {
    FactorList list;
    ASSERT_EQ(list.addFactor(uniformFactor("a")), 1);
    ASSERT_EQ(list.addFactor(constantFactor("k", 2.5)), 1);
    ASSERT_EQ(list.addFactor(relationFactor("r", "a+b")), 1);
    ASSERT_EQ(list.addFactor(uniformFactor("b")), 1);
    FastSampler s = fast(0, 73, 11);
    sampValues store;
    ASSERT_EQ(drive(s, store, list), 50.0f);
    expectCurveValues(store, list, 11, {{{5, 0, 0, 9}, 1, 73}});
    for (double v : column(store, 1)) EXPECT_EQ(v, 2.5);
    ASSERT_NE(s.designTable(), nullptr);
    EXPECT_EQ(*s.designTable(), (std::vector<FastBlock>{{5, 1, 73, 73}, {9, 1, 73, 73}}));
    EXPECT_EQ(s.numSamples(), 73);

    // Fifty factors work; fifty-one have no frequency set and fail without a
    // text of their own.
    FactorList fifty;
    addUniforms(fifty, 50);
    FastSampler wide = fast(0, 40);
    ASSERT_EQ(drive(wide, store, fifty), 50.0f);
    EXPECT_EQ(store.rowCount(), 40);
    EXPECT_EQ(wide.designTable()->back().first, 2019 + 8886);  // OMEGA[50] plus the sum of DELTA
    ASSERT_EQ(fifty.addFactor(uniformFactor("u50")), 1);
    EXPECT_EQ(drive(wide, store, fifty), -1.0f);
    EXPECT_EQ(wide.errorText(), "No errors");
}

TEST(FastSampler, ExtendedModeBlocks) {
    FactorList three;
    addUniforms(three, 3);
    FastSampler s = fast(1, 195, 5);
    sampValues store;
    ASSERT_EQ(drive(s, store, three), 50.0f);
    EXPECT_EQ(s.samplesPerUnit(), 65);
    EXPECT_EQ(s.numSamples(), 195);
    EXPECT_EQ(*s.designTable(), (std::vector<FastBlock>(3, {8, 1, 65, 65})));
    // Block u: factor u at 8, the others at the only complementary value, 1.
    expectCurveValues(store, three, 5, {{{8, 1, 1}, 1, 65}, {{1, 8, 1}, 1, 65}, {{1, 1, 8}, 1, 65}});

    FactorList two;
    addUniforms(two, 2);
    FastSampler t = fast(1, 200);
    ASSERT_EQ(drive(t, store, two), 50.0f);
    EXPECT_EQ(t.samplesPerUnit(), 100);
    EXPECT_EQ(t.omegaMax(), 12);
    EXPECT_EQ(t.curveLength(), 97);
    EXPECT_EQ(t.numSamples(), 194);
    EXPECT_EQ(store.rowCount(), 194);
    // A second generation starts from the reduced count.
    ASSERT_EQ(drive(t, store, two), 50.0f);
    EXPECT_EQ(t.samplesPerUnit(), 97);
    EXPECT_EQ(t.numSamples(), 194);

    // Two factors with omegaMax 24: m = 3 but a single other factor, so the
    // complementary set is {1} with no step to divide out.
    FastSampler u = fast(1, 400, 9);
    ASSERT_EQ(drive(u, store, two), 50.0f);
    EXPECT_EQ(*u.designTable(), (std::vector<FastBlock>(2, {24, 1, 193, 193})));
    expectCurveValues(store, two, 9, {{{24, 1}, 1, 193}, {{1, 24}, 1, 193}});
}

TEST(FastSampler, GroupMode) {
    FactorList list;
    for (const char* name : {"a", "b"}) ASSERT_EQ(list.addFactor(uniformFactor(name)), 1);
    ASSERT_EQ(list.addFactor(constantFactor("k", 7.0)), 1);
    for (const char* name : {"x", "c", "y"}) ASSERT_EQ(list.addFactor(uniformFactor(name)), 1);
    FastSampler s = fast(2, 390, 17, {"a", "b", "c"});
    sampValues store;
    ASSERT_EQ(drive(s, store, list), 50.0f);
    EXPECT_EQ(s.samplesPerUnit(), 130);
    EXPECT_EQ(s.numSamples(), 388);
    EXPECT_EQ(*s.designTable(), (std::vector<FastBlock>{{8, 2, 65, 130}, {16, 1, 129, 129}, {16, 1, 129, 129}}));
    // The group at 8 with x and y at 1 (m = 1); then x, then y at 16 with
    // the unset factors taking 1, 2, 1, 2 in list order (m = 2).
    expectCurveValues(store, list, 17,
                      {{{8, 8, 0, 1, 8, 1}, 2, 65}, {{1, 2, 0, 16, 1, 2}, 1, 129}, {{1, 2, 0, 1, 2, 16}, 1, 129}});
    for (double v : column(store, 2)) EXPECT_EQ(v, 7.0);
}

TEST(FastSampler, FailuresWithTheirTexts) {
    FactorList list;
    addUniforms(list, 3);
    sampValues store;
    struct Case {
        int32_t mode, n;
        std::vector<std::string> members;
        const char* text;
    } const cases[] = {
        {2, 400, {}, "Group's cardinality equal to 0"},
        {1, 24, {}, "Sample set to generate too small"},            // 8 runs a factor: omegaMax 0
        {2, 100, {"u0", "u1"}, "Sample set to generate too small"},  // a group of two, 50 runs: no curve of 65
        {2, 400, {"u0", "u1", "u2"}, "No errors"},  // one unit, nothing to compare: no text of its own
    };
    for (const Case& c : cases) {
        FastSampler s = fast(c.mode, c.n, 3, c.members);
        EXPECT_EQ(drive(s, store, list), -1.0f) << c.text;
        EXPECT_EQ(s.errorText(), c.text);
    }
}

TEST(FastSampler, SampleFilesRoundTripInEveryMode) {
    for (int32_t mode : {0, 1, 2}) {
        SCOPED_TRACE(mode);
        PrepConfiguration config;
        ASSERT_EQ(config.factors.addFactor(uniformFactor("a", 2.0, 4.0)), 1);
        ASSERT_EQ(config.factors.addFactor(normalFactor("n", 10.0, 2.0)), 1);
        ASSERT_EQ(config.factors.addFactor(constantFactor("k", 0.5)), 1);
        ASSERT_EQ(config.factors.addFactor(uniformFactor("b")), 1);
        config.sampler = std::make_unique<FastSampler>(fast(mode, 200, 21, {"a", "n"}));
        PrepConfiguration back;
        const auto [first, second] = sampleFileRoundTrip(config, back);
        EXPECT_EQ(second, first);
        const auto* read = dynamic_cast<const FastSampler*>(back.sampler.get());
        ASSERT_TRUE(read != nullptr && read->designTable() != nullptr);
        EXPECT_EQ(*read->designTable(), *static_cast<const FastSampler&>(*config.sampler).designTable());
        EXPECT_TRUE(read->frequencies().empty());
        EXPECT_EQ(back.samples.rowCount(), read->numSamples());
    }
}

TEST(FastSampler, SectionReader) {
    const std::string head = "4\n97\n5\n3\n2\n1 groups:\ng\n2 elements in groups\n0\ta\n0\tb\n";
    FastSampler s;
    std::istringstream in(head + "group information\n8\t2\t65\t130\n16\t1\t129\t129\n");
    s.readItems(in);
    ASSERT_TRUE(in);
    EXPECT_EQ(s.seed() * 1000 + s.numSamples(), 4097);
    EXPECT_EQ(s.groupElement("g", 1), std::optional<std::string>("b"));
    EXPECT_EQ(*s.designTable(), (std::vector<FastBlock>{{8, 2, 65, 130}, {16, 1, 129, 129}}));
    // Without the marker there is no table, and the marker's line end stays
    // for the caller, who skips the rest of the section's last line.
    std::istringstream bare(head + "no group information\nnext\n");
    s.readItems(bare);
    std::string line;
    skipLine(bare);
    ASSERT_TRUE(std::getline(bare, line));
    EXPECT_EQ(line, "next");
    EXPECT_EQ(s.designTable(), nullptr);

    const std::string bad[] = {
        "6\n9\n2\n1\n2\n1 groups:\ng\n2 elements in groups\n0\ta\n0\tb\ngroup information\n",  // no unit
        "6\n9\n2\n-1\n0\n0 groups:\n0 elements in groups\nno group information\n",
        "6\n9\n2\n2\n3\n0 groups:\n0 elements in groups\nno group information\n",  // mode 3
        "6\n9\n2\n2\n2\n1 groups:\ng\n1 elements in groups\n1\ta\n",  // no group 1
        "6\n9\n2\n2\n2\n1 groups:\n" + std::string(81, 'g') + "\n",
        head + "group information\n8\t2\t65\t130\n",  // a row short
    };
    for (const std::string& text : bad) {
        FastSampler f;
        std::istringstream badIn(text);
        f.readItems(badIn);
        EXPECT_FALSE(badIn) << text;
        EXPECT_TRUE(f.numSamples() == 0 && f.seed() == 1 && f.groupNames().empty()) << text;
    }
}

}  // namespace
}  // namespace tarvex
