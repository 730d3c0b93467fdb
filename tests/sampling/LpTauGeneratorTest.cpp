// The LP-tau direction table and point generator.
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <vector>

#include "sampling/LpTauGenerator.h"

namespace tarvex {
namespace {

// Point n from the table's definition: the XOR of v_(i+1) over the set bits i
// of n, where v_(i+1) = W_i ^ W_(i-1) undoes the running XOR of a column.
double fromDirectionNumbers(int32_t n, int32_t j) {
    uint32_t x = 0;
    for (int i = 0; i < 31; ++i)
        if ((uint32_t(n) >> i) & 1u) x ^= DIRECTION[i][j] ^ (i > 0 ? DIRECTION[i - 1][j] : 0u);
    return x * 0x1p-31;
}

TEST(LpTauGenerator, DirectionTableHasTheKnownRowsAndScaling) {
    const int rows[] = {0, 1, 2, 3, 30};
    const uint32_t known[5][6] = {
        {0x40000000, 0x40000000, 0x40000000, 0x40000000, 0x40000000, 0x40000000},
        {0x60000000, 0x20000000, 0x60000000, 0x20000000, 0x60000000, 0x20000000},
        {0x70000000, 0x70000000, 0x10000000, 0x50000000, 0x30000000, 0x30000000},
        {0x78000000, 0x08000000, 0x48000000, 0x78000000, 0x28000000, 0x38000000},
        {0x7FFFFFFF, 0x7FFFFFFF, 0x45005555, 0x50042483, 0x3004FF8F, 0x40333333},
    };
    for (int r = 0; r < 5; ++r)
        for (int j = 0; j < 6; ++j) EXPECT_EQ(DIRECTION[rows[r]][j], known[r][j]) << rows[r] << " " << j;
    // Row b: bits 30 down to 30 - b, the lowest one set, in every column.
    for (int b = 0; b < kLpTauRows; ++b)
        for (int j = 0; j < kLpTauDimensions; ++j) {
            ASSERT_LE(std::bit_width(DIRECTION[b][j]), 31) << b << " " << j;
            ASSERT_EQ(std::countr_zero(DIRECTION[b][j]), 30 - b) << b << " " << j;
        }
}

TEST(LpTauGenerator, PointsLimitsAndJumps) {
    std::vector<double> x;
    // Column 0 is van der Corput's sequence: the bits of n mirrored about the
    // point (0.5, 0.25, 0.75, ...), exactly, so the scale is 2^-31 itself.
    for (int32_t n = 1; n < 5000; ++n) {
        ASSERT_EQ(lpTauPoint(n, 1, x), 1);
        double mirrored = 0.0, weight = 0.5;
        for (int32_t m = n; m > 0; m >>= 1, weight /= 2) mirrored += (m & 1) * weight;
        ASSERT_EQ(x, std::vector<double>{mirrored}) << n;
    }
    EXPECT_EQ(lpTauPoint(0, 370, x), 1);
    EXPECT_EQ(x, std::vector<double>(370, 0.0));
    EXPECT_EQ(lpTauPoint(1, 370, x), 1);
    // Refusals leave the output alone.
    EXPECT_EQ(lpTauPoint(1, 371, x) + lpTauPoint(1, 0, x) + lpTauPoint(-1, 5, x), 0);
    EXPECT_EQ(x, std::vector<double>(370, 0.5));
    // 2^31 - 1 sets every bit: row 30 is used, and the point stays below 1.
    EXPECT_EQ(lpTauPoint(INT32_MAX, 1, x), 1);
    EXPECT_EQ(x[0], 1.0 - 0x1p-31);

    // Out of order, backwards, wider than the last: jumps; then steps, one of
    // them narrower, which makes the next one a jump.
    LpTauGenerator generator;
    std::vector<double> p(370);
    std::vector<int32_t> indices = {1000, 17, 3, 999, 4096, 1 << 30, INT32_MAX, 5};
    for (int32_t n = 1; n <= 4096; ++n) indices.push_back(n);
    for (int32_t n : indices) {
        const int32_t width = n % 97 == 0 ? 40 : 370;
        ASSERT_EQ(generator.point(n, width, p.data()), 1);
        for (int j = 0; j < width; ++j) ASSERT_EQ(p[size_t(j)], fromDirectionNumbers(n, j)) << n << " " << j;
    }
}

// Indices 0 .. 2^m - 1 put one point in each interval [i 2^-m, (i + 1) 2^-m),
// in all dimensions; at 2^16 points, in the first and the last ones.
TEST(LpTauGenerator, EveryDimensionIsBalancedOverDyadicIntervals) {
    std::vector<int> all(370);
    for (int j = 0; j < 370; ++j) all[size_t(j)] = j;
    const std::vector<int> ends = {0, 1, 2, 3, 366, 367, 368, 369};
    LpTauGenerator generator;
    std::vector<double> x(370);
    for (int m : {1, 3, 6, 12, 16}) {
        const std::vector<int>& dims = m < 16 ? all : ends;
        const int32_t count = int32_t(1) << m;
        std::vector<std::vector<int32_t>> hits(dims.size(), std::vector<int32_t>(size_t(count), 0));
        for (int32_t n = 0; n < count; ++n) {
            ASSERT_EQ(generator.point(n, 370, x.data()), 1);
            for (size_t d = 0; d < dims.size(); ++d) {
                const double v = x[size_t(dims[d])];
                ASSERT_TRUE(v >= 0.0 && v < 1.0) << n;
                ++hits[d][size_t(v * count)];
            }
        }
        for (size_t d = 0; d < dims.size(); ++d)
            ASSERT_EQ(std::count(hits[d].begin(), hits[d].end(), 1), count) << m << " " << dims[d];
    }
}

}  // namespace
}  // namespace tarvex
