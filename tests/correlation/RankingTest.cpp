// Sorting and ranking against plain counting.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "common/UniformRandom.h"
#include "correlation/Ranking.h"
#include "correlation/SteinRanks.h"

namespace tarvex {
namespace {

// Rank by counting: values below, then equal values in earlier rows.
std::vector<int32_t> countedRanks(const std::vector<double>& v) {
    std::vector<int32_t> out(v.size());
    for (size_t i = 0; i < v.size(); ++i) {
        int32_t k = 0;
        for (size_t j = 0; j < v.size(); ++j) k += v[j] < v[i] || (v[j] == v[i] && j < i);
        out[i] = k;
    }
    return out;
}

TEST(Ranking, RanksAreStablePermutationsAtEverySize) {
    int32_t state = -99;
    for (int32_t n : {1, 2, 7, 4095, 4096, 6000}) {
        std::vector<double> v(static_cast<size_t>(n));
        for (auto& x : v) x = double(int(uniformRandom(&state) * 50)) - 25.0 + 0.5 * (uniformRandom(&state) < 0.1);
        if (n > 3) v[1] = -1e300, v[2] = 1e300;
        std::vector<int32_t> ranks(static_cast<size_t>(n));
        rankPositions(v.data(), n, ranks.data());
        EXPECT_EQ(ranks, countedRanks(v)) << n;
    }
}

TEST(Ranking, LargeColumnsMatchAStableComparisonSort) {
    int32_t state = -4242;
    const int32_t n = 200000;
    std::vector<double> v(static_cast<size_t>(n));
    // Many ties, both zeros, wide exponents.
    for (auto& x : v) {
        const double u = uniformRandom(&state);
        x = u < 0.1 ? 0.0 : u < 0.2 ? -0.0 : std::ldexp(double(int(u * 1000)) - 500.0, int(u * 40) - 20);
    }
    std::vector<int32_t> order(static_cast<size_t>(n));
    for (int32_t i = 0; i < n; ++i) order[size_t(i)] = i;
    std::stable_sort(order.begin(), order.end(), [&](int32_t a, int32_t b) { return v[size_t(a)] < v[size_t(b)]; });
    std::vector<int32_t> expected(static_cast<size_t>(n)), ranks(static_cast<size_t>(n));
    for (int32_t p = 0; p < n; ++p) expected[size_t(order[size_t(p)])] = p;
    rankPositions(v.data(), n, ranks.data());
    EXPECT_EQ(ranks, expected);
}

TEST(Ranking, SortAscendingOnSortedAndReversedColumns) {
    std::vector<double> up(100000), down(100000);
    for (size_t i = 0; i < up.size(); ++i) up[i] = double(i) * 0.5, down[i] = -double(i);
    std::vector<double> upSorted = up;
    sortAscending(upSorted.data(), int64_t(upSorted.size()));
    EXPECT_EQ(upSorted, up);
    sortAscending(down.data(), int64_t(down.size()));
    for (size_t i = 0; i < down.size(); ++i) ASSERT_EQ(down[i], -double(down.size() - 1 - i));
}

TEST(SteinRanks, RanksWithinReplicateBlocks) {
    // Two columns, five rows; blocks of two rows.
    const std::vector<std::vector<double>> rows = {{3, 10}, {1, 20}, {5, 5}, {7, 1}, {2, 2}};
    auto reader = [&](int32_t r, double* out) {
        out[0] = rows[size_t(r)][0];
        out[1] = rows[size_t(r)][1];
        return 1;
    };
    SteinRanks ranks(reader, 5, 2, 5, 2, 3);
    ASSERT_EQ(ranks.isValid(), 1);
    const int32_t expected0[] = {1, 0, 0, 1, 0};
    const int32_t expected1[] = {0, 1, 1, 0, 0};
    for (int32_t r = 0; r < 5; ++r) {
        EXPECT_EQ(ranks.rankOf(0, r), expected0[r]) << r;
        EXPECT_EQ(ranks.rankOf(1, r), expected1[r]) << r;
    }
    // One block over the whole sample, as the Latin hypercube asks.
    SteinRanks whole(reader, 5, 2, 4, 4, 1);
    const int32_t whole0[] = {1, 0, 2, 3};
    for (int32_t r = 0; r < 4; ++r) EXPECT_EQ(whole.rankOf(0, r), whole0[r]);
    EXPECT_EQ(whole.rankOf(0, 4), 0);

    SteinRanks tooFew(reader, 5, 2, 6, 6, 1);
    EXPECT_EQ(tooFew.isValid(), 0);
    EXPECT_EQ(tooFew.errorText(),
              "The Stein correlation sample is smaller than the sample to generate.\nNo correlation can be calculated.");
    SteinRanks unreadable([](int32_t, double*) { return 0; }, 5, 2, 3, 3, 1);
    EXPECT_EQ(unreadable.isValid(), 0);
}

}  // namespace
}  // namespace tarvex
