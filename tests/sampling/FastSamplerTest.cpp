// The FAST design: frequency sets, groups, the sample-size rule.
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <sstream>

#include "sampling/FastFrequencies.h"
#include "sampling/FastSampler.h"
#include "SamplingFixtures.h"

namespace tarvex {
namespace {

using namespace tarvex::testing;

FastSampler fast(int32_t mode, int32_t n, int32_t seed = 3) {
    FastSampler s;
    EXPECT_EQ(s.setAnalysisMode(mode), 1);
    EXPECT_EQ(s.setSamples(n), 1);
    EXPECT_EQ(s.setSeed(seed), 1);
    return s;
}

// Whether the frequencies interfere up to the fourth order: a nonzero
// integer combination with |r_1| + ... + |r_k| <= 4 that vanishes, that is a
// positive part P and a negative part N on different factors, at most four
// terms in all, with equal sums. The harmonics of one factor would then be
// read as another's.
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
    // The check's frequency: 13 for three factors although the set reaches 15.
    EXPECT_EQ(classicCheckFrequency(2), 9);
    EXPECT_EQ(classicCheckFrequency(3), 13);
    EXPECT_EQ(classicCheckFrequency(8), 125);
    EXPECT_EQ(classicCheckFrequency(51), 0);

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
    s.reset();  // a (zero-row) table to be dropped
    ASSERT_NE(s.designTable(), nullptr);
    EXPECT_EQ(s.addGroup("first"), 1);
    EXPECT_EQ(s.designTable(), nullptr);
    EXPECT_EQ(s.addGroup("second"), 1);
    EXPECT_EQ(s.addGroup("third"), 1);
    EXPECT_EQ(s.addGroup(std::string(81, 'g')), 0);
    EXPECT_EQ(s.addGroup("two\nlines"), 0);
    EXPECT_EQ(s.addElement("first", "a"), 1);
    EXPECT_EQ(s.addElement("third", "c"), 1);
    EXPECT_EQ(s.addElement("second", "b"), 1);
    EXPECT_EQ(s.addElement("third", "d"), 1);
    EXPECT_EQ(s.addElement("nowhere", "e"), 0);
    EXPECT_EQ(s.groupSize("third"), 2);
    EXPECT_EQ(s.groupSize("nowhere"), -1);
    EXPECT_EQ(s.groupElement("third", 1), std::optional<std::string>("d"));
    EXPECT_EQ(s.groupElement("third", 2), std::nullopt);
    EXPECT_EQ(s.isInGroup("c"), 1);
    EXPECT_EQ(s.isInGroup("e"), 0);

    s.reset();
    EXPECT_EQ(s.removeGroup("nowhere"), 0);
    ASSERT_NE(s.designTable(), nullptr);
    EXPECT_EQ(s.removeGroup("second"), 1);
    EXPECT_EQ(s.designTable(), nullptr);
    EXPECT_EQ(s.groupNames(), (std::vector<std::string>{"first", "third"}));
    EXPECT_EQ(s.elementNames(), (std::vector<std::string>{"a", "c", "d"}));
    EXPECT_EQ(s.elementGroups(), (std::vector<int32_t>{0, 1, 1}));  // third moved down
    s.reset();
    EXPECT_EQ(s.removeElement("b"), 0);
    ASSERT_NE(s.designTable(), nullptr);
    EXPECT_EQ(s.removeElement("c"), 1);
    EXPECT_EQ(s.designTable(), nullptr);
    EXPECT_EQ(s.groupSize("third"), 1);
    EXPECT_EQ(s.setAnalysisMode(3), 0);
    EXPECT_EQ(s.setAnalysisMode(-1), 0);
    EXPECT_EQ(s.analysisMode(), 1);
}

TEST(FastSampler, CheckSampleSize) {
    FastSampler s = fast(1, 194);
    EXPECT_EQ(s.checkSampleSize(3), 0);
    EXPECT_EQ(s.errorText(), "Sample size too small\nThe sample size must be >= 65 per factor/group");
    ASSERT_EQ(s.setSamples(195), 1);
    EXPECT_EQ(s.checkSampleSize(3), 1);
    // Groups: a group of three of five factors makes three units.
    ASSERT_EQ(s.setAnalysisMode(2), 1);
    ASSERT_EQ(s.addGroup("g"), 1);
    for (const char* f : {"a", "b", "c"}) ASSERT_EQ(s.addElement("g", f), 1);
    EXPECT_EQ(s.checkSampleSize(5), 1);
    ASSERT_EQ(s.setSamples(194), 1);
    EXPECT_EQ(s.checkSampleSize(5), 0);

    // Classic: 8 F + 1 with F = 9 for two factors, and 13 (not 15) for three.
    ASSERT_EQ(s.setAnalysisMode(0), 1);
    ASSERT_EQ(s.setSamples(72), 1);
    EXPECT_EQ(s.checkSampleSize(2), 0);
    EXPECT_EQ(s.errorText(), "Sample size too small\nChoose sample size greater than or equal to 73");
    ASSERT_EQ(s.setSamples(104), 1);
    EXPECT_EQ(s.checkSampleSize(3), 0);
    EXPECT_EQ(s.errorText(), "Sample size too small\nChoose sample size greater than or equal to 105");
    ASSERT_EQ(s.setSamples(105), 1);
    EXPECT_EQ(s.checkSampleSize(3), 1);
    EXPECT_EQ(s.checkSampleSize(51), 0);
    EXPECT_EQ(s.errorText(), "The classic FAST takes from 2 to 50 stochastic factors");
}

}  // namespace
}  // namespace tarvex
