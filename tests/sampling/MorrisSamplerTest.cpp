// Morris trajectories: one factor per step by d / p, on grid midpoints, the
// change record, the order of draws, and the section.
#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <sstream>

#include "TestSupport.h"
#include "common/Environment.h"
#include "common/UniformRandom.h"
#include "sampling/GenerationLoop.h"
#include "sampling/MorrisSampler.h"
#include "sampling/PrepConfiguration.h"
#include "SampleFileRoundTrip.h"
#include "SamplingFixtures.h"

namespace tarvex {
namespace {

using namespace tarvex::testing;
using namespace tarvex::test;

// Grid level of a cell: i where the cell is (i + 0.5) / p, or -1.
int levelOf(double x, int p) {
    const double i = x * p - 0.5;
    return std::fabs(i - std::round(i)) < 1e-9 ? int(std::round(i)) : -1;
}

TEST(MorrisSampler, EveryStepChangesOneFactorByHalfTheLevels) {
    FactorList list;
    ASSERT_EQ(list.addFactor(uniformFactor("a")), 1);
    ASSERT_EQ(list.addFactor(constantFactor("k", 4.5)), 1);
    ASSERT_EQ(list.addFactor(uniformFactor("b")), 1);
    ASSERT_EQ(list.addFactor(relationFactor("r", "a+b")), 1);
    ASSERT_EQ(list.addFactor(uniformFactor("c")), 1);
    const std::vector<int> stochastic = {0, 2, 4};
    const int k = 3, r = 8;
    // p = 4: d = 2, levels 0 to 3. p = 5: d = 2 as well, and level 4 is never
    // reached (bases 0 or 1, jump 2).
    for (int p : {4, 5}) {
        SCOPED_TRACE(p);
        MorrisSampler s;
        ASSERT_EQ(s.setLevels(uint32_t(p)), 1);
        ASSERT_EQ(s.setTrajectories(r), 1);
        ASSERT_EQ(s.setSamples(r * (k + 1)), 1);
        ASSERT_EQ(s.setSeed(3), 1);
        sampValues store;
        ASSERT_EQ(drive(s, store, list), 50.0f);
        ASSERT_EQ(store.rowCount(), r * (k + 1));
        EXPECT_EQ(s.numStochastic(), k);
        const std::vector<int32_t>& changed = s.changedFactor();
        ASSERT_EQ(changed.size(), size_t(r * (k + 1)));
        std::vector<std::vector<int>> levels(stochastic.size());
        for (size_t c = 0; c < stochastic.size(); ++c)
            for (double x : column(store, stochastic[c])) {
                levels[c].push_back(levelOf(x, p));
                EXPECT_TRUE(levels[c].back() >= 0 && levels[c].back() <= 3) << x;
            }
        for (double x : column(store, 1)) EXPECT_EQ(x, 4.5);
        for (double x : column(store, 3)) EXPECT_EQ(x, 0.0);
        for (int t = 0; t < r; ++t) {
            const int first = t * (k + 1);
            EXPECT_EQ(changed[size_t(first)], -1);
            std::set<int32_t> seen;
            for (int i = first + 1; i < first + k + 1; ++i) {
                int moved = -1, count = 0;
                for (int c = 0; c < k; ++c) {
                    const int jump = levels[size_t(c)][size_t(i)] - levels[size_t(c)][size_t(i - 1)];
                    if (jump == 0) continue;
                    ++count;
                    moved = c;
                    EXPECT_EQ(std::abs(jump), 2);
                }
                EXPECT_EQ(count, 1) << i;
                EXPECT_EQ(changed[size_t(i)], moved) << i;
                seen.insert(changed[size_t(i)]);
            }
            EXPECT_EQ(seen, std::set<int32_t>({0, 1, 2}));
        }
    }
}

// The first trajectory worked out in closed form from the stream: column j
// of the unshuffled table sits at level x_j + d * b_j up to row j and
// x_j + d * (1 - b_j) after it; the exchanges then move the columns.
TEST(MorrisSampler, DrawsInTheirOrder) {
    FactorList list;
    ASSERT_EQ(list.addFactor(uniformFactor("a")), 1);
    ASSERT_EQ(list.addFactor(uniformFactor("b")), 1);
    ASSERT_EQ(list.addFactor(uniformFactor("c")), 1);
    const int k = 3, p = 6, d = 3;
    MorrisSampler s;
    ASSERT_EQ(s.setLevels(p), 1);
    ASSERT_EQ(s.setSamples(k + 1), 1);
    sampValues store;
    ASSERT_EQ(drive(s, store, list), 50.0f);

    int32_t state = -1;
    std::vector<double> u;
    for (int i = 0; i < 4 * k; ++i) u.push_back(uniformRandom(&state));
    std::vector<int> at = {0, 1, 2};  // unshuffled column at each place
    for (int e = 0; e < k; ++e) std::swap(at[size_t(int(u[size_t(2 * k + 2 * e)] * k))],
                                          at[size_t(int(u[size_t(2 * k + 2 * e + 1)] * k))]);
    for (int c = 0; c < k; ++c) {
        const int j = at[size_t(c)];
        const int b = u[size_t(j)] >= 0.5 ? 1 : 0;
        const int x = std::min(int(u[size_t(k + j)] * p / 2), d - 1);
        const std::vector<double> v = column(store, c);
        for (int i = 0; i <= k; ++i) {
            const int level = x + d * (i > j ? 1 - b : b);
            EXPECT_NEAR(v[size_t(i)], (level + 0.5) / p, 1e-15) << c << " " << i;
        }
        EXPECT_EQ(s.changedFactor()[size_t(j + 1)], c);
    }
}

TEST(MorrisSampler, ShortLastTrajectoryAndSetters) {
    MorrisSampler s;
    EXPECT_EQ(s.setLevels(0), 0);
    EXPECT_EQ(s.errorText(), "Num level must be a positive value");
    EXPECT_EQ(s.setTrajectories(0), 0);
    EXPECT_EQ(s.errorText(), "Num trajectories must be a positive value");
    FactorList list;
    ASSERT_EQ(list.addFactor(uniformFactor("a")), 1);
    ASSERT_EQ(list.addFactor(uniformFactor("b")), 1);
    ASSERT_EQ(s.setSamples(5), 1);
    sampValues store;
    EXPECT_EQ(drive(s, store, list), -1.0f) << "no levels set";
    ASSERT_EQ(s.setLevels(1), 1);
    EXPECT_EQ(drive(s, store, list), -1.0f);
    EXPECT_EQ(s.errorText(), kTooFewLevelsText);

    // Five runs of trajectories of three: the second is cut after two runs.
    ASSERT_EQ(s.setLevels(2), 1);
    ASSERT_EQ(drive(s, store, list), 50.0f);
    EXPECT_EQ(store.rowCount(), 5);
    ASSERT_EQ(s.changedFactor().size(), 5u);
    EXPECT_EQ(s.changedFactor()[0], -1);
    EXPECT_EQ(s.changedFactor()[3], -1);
    EXPECT_TRUE(s.changedFactor()[4] == 0 || s.changedFactor()[4] == 1);
    // p = 2: levels 0 and 1, cells 0.25 and 0.75.
    for (double x : column(store, 0)) EXPECT_TRUE(x == 0.25 || x == 0.75) << x;
}

TEST(MorrisSampler, SectionAndSampleFileRoundTrip) {
    PrepConfiguration config;
    ASSERT_EQ(config.factors.addFactor(uniformFactor("u", 2.0, 4.0)), 1);
    ASSERT_EQ(config.factors.addFactor(constantFactor("k", 1.5)), 1);
    ASSERT_EQ(config.factors.addFactor(relationFactor("r", "u*k")), 1);
    auto morris = std::make_unique<MorrisSampler>();
    ASSERT_EQ(morris->setLevels(4), 1);
    ASSERT_EQ(morris->setTrajectories(2), 1);
    ASSERT_EQ(morris->setSamples(4), 1);
    ASSERT_EQ(morris->setSeed(9), 1);
    config.sampler = std::move(morris);
    PrepConfiguration back;
    const auto [text, again] = sampleFileRoundTrip(config, back);
    EXPECT_EQ(again, text);
    // u on [2, 4] at the midpoints 0.125 ... 0.875: 2.25, 2.75, 3.25, 3.75.
    for (double x : column(config.samples, 0)) {
        const double level = (x - 2.25) / 0.5;
        EXPECT_NEAR(level, std::round(level), 1e-6) << x;
    }
    const auto& changed = dynamic_cast<MorrisSampler&>(*config.sampler).changedFactor();
    std::ostringstream section;
    section << "4\nMorris\n4\n2\n4\n3\n9\nElementary effects\n";
    for (int32_t c : changed) section << c << '\n';
    EXPECT_NE(text.find(section.str()), std::string::npos);
    EXPECT_EQ(dynamic_cast<MorrisSampler&>(*back.sampler).changedFactor(), changed);

    // Without a record; then the reader's fallback.
    MorrisSampler fresh;
    ASSERT_EQ(fresh.setLevels(6), 1);
    std::ostringstream out;
    fresh.writeSection(out);
    EXPECT_EQ(out.str(), "4\nMorris\n6\n0\n0\n0\n1\nNo elementary effects\n");
    for (const char* bad : {"4\n2\n-3\n3\n9\n", "4\n2\nx\n"}) {
        std::istringstream in(bad);
        fresh.readItems(in);
        EXPECT_FALSE(in);
        EXPECT_EQ(fresh.levels(), 0u);
        EXPECT_EQ(fresh.numSamples(), 0);
        EXPECT_EQ(fresh.seed(), 5648423);
    }
}

}  // namespace
}  // namespace tarvex
