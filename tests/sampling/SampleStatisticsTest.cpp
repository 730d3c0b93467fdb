// Sample statistics against hand computation.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <vector>

#include "sampling/SampleStatistics.h"
#include "sampling/sampValues.h"

namespace tarvex {
namespace {

// Columns x = 1..4, y = a permutation of x, z = zeros, w = constant 5.
// With n = 4 every divisor is 3, the mean's too: mean(x) = 10/3, mean(w) = 20/3.
void fillFour(sampValues& store) {
    ASSERT_EQ(store.allocate(4), 1);
    const double rows[4][4] = {{1, 2, 0, 5}, {2, 1, 0, 5}, {3, 4, 0, 5}, {4, 3, 0, 5}};
    for (const auto& row : rows) ASSERT_NE(store.addRow(row), 0);
}

TEST(SampleStatistics, MomentsAndCorrelationByHand) {
    sampValues store;
    fillFour(store);
    SampleStatistics stats(store);
    ASSERT_FALSE(stats.empty());
    ASSERT_EQ(stats.size(), 4);
    const double tol = 1e-12;

    // x: deviations -7/3, -4/3, -1/3, 2/3; sums of powers 70/9, -400/27, 2674/81.
    const double sx = std::sqrt(70.0 / 27.0);
    EXPECT_NEAR(stats.mean(0), 10.0 / 3.0, tol);
    EXPECT_NEAR(stats.stdDev(0), sx, tol);
    EXPECT_NEAR(stats.skewness(0), (-400.0 / 27.0) / (3.0 * sx * sx * sx), tol);
    EXPECT_NEAR(stats.kurtosis(0), 2674.0 * 3.0 / 4900.0 - 3.0, tol);
    // y has the same values in another order.
    EXPECT_NEAR(stats.mean(1), 10.0 / 3.0, tol);
    EXPECT_NEAR(stats.kurtosis(1), -1.3628571428571428, tol);

    // z: standard deviation 0, so no skewness, kurtosis or correlation.
    EXPECT_EQ(stats.mean(2), 0.0);
    EXPECT_EQ(stats.stdDev(2), 0.0);
    EXPECT_EQ(stats.skewness(2), 0.0);
    EXPECT_EQ(stats.kurtosis(2), 0.0);

    // w = 5 everywhere: with the mean's divisor n - 1 every deviation is -5/3,
    // which gives sqrt(100/27), -sqrt(3)/2 and 0.75 - 3.
    EXPECT_NEAR(stats.mean(3), 20.0 / 3.0, tol);
    EXPECT_NEAR(stats.stdDev(3), 10.0 / std::sqrt(27.0), tol);
    EXPECT_NEAR(stats.skewness(3), -std::sqrt(3.0) / 2.0, tol);
    EXPECT_NEAR(stats.kurtosis(3), -2.25, tol);

    // Correlations: sum of products 52/9 for x,y and 50/9 for x,w.
    EXPECT_NEAR(stats.correlation(0, 1), 26.0 / 35.0, tol);
    EXPECT_NEAR(stats.correlation(0, 3), 50.0 / std::sqrt(7000.0), tol);
    EXPECT_NEAR(stats.correlation(1, 3), 50.0 / std::sqrt(7000.0), tol);
    for (int32_t i = 0; i < 4; ++i) {
        EXPECT_EQ(stats.correlation(i, i), 1.0);
        EXPECT_EQ(stats.correlation(2, i == 2 ? 0 : i), 0.0);
        for (int32_t j = 0; j < 4; ++j) EXPECT_EQ(stats.correlation(i, j), stats.correlation(j, i));
    }
}

TEST(SampleStatistics, OutOfRangeAndAbsentGiveMinusTen) {
    SampleStatistics none;
    EXPECT_TRUE(none.empty());
    EXPECT_EQ(none.mean(0), -10.0);
    EXPECT_EQ(none.correlation(0, 0), -10.0);

    sampValues store;
    fillFour(store);
    SampleStatistics stats(store);
    EXPECT_EQ(stats.mean(4), -10.0);
    EXPECT_EQ(stats.stdDev(-1), -10.0);
    EXPECT_EQ(stats.skewness(7), -10.0);
    EXPECT_EQ(stats.kurtosis(4), -10.0);
    EXPECT_EQ(stats.correlation(0, 4), -10.0);
    EXPECT_EQ(stats.correlation(-1, 0), -10.0);
    EXPECT_EQ(stats.moment(0, 4), -10.0);
}

// One row: the divisor n - 1 would be 0; it is taken as 1.
TEST(SampleStatistics, SingleRowAndNoRows) {
    sampValues one;
    ASSERT_EQ(one.allocate(2), 1);
    const double row[2] = {3.5, -1.0};
    ASSERT_NE(one.addRow(row), 0);
    SampleStatistics stats(one);
    EXPECT_EQ(stats.mean(0), 3.5);
    EXPECT_EQ(stats.mean(1), -1.0);
    EXPECT_EQ(stats.stdDev(0), 0.0);
    EXPECT_EQ(stats.correlation(0, 1), 0.0);

    sampValues none;
    ASSERT_EQ(none.allocate(3), 1);
    SampleStatistics empty(none);
    EXPECT_EQ(empty.size(), 3);
    EXPECT_EQ(empty.mean(2), 0.0);
    EXPECT_EQ(empty.correlation(1, 1), 1.0);
}

// A table spread over many blocks gives what a direct computation gives.
TEST(SampleStatistics, LargeStoreMatchesDirectSums) {
    sampValues store(64);
    const int32_t columns = 5, rows = 3001;
    ASSERT_EQ(store.allocate(columns), 1);
    std::vector<std::vector<double>> data(columns);
    for (int32_t r = 0; r < rows; ++r) {
        double row[columns];
        for (int32_t c = 0; c < columns; ++c) {
            row[c] = std::sin(0.37 * r * (c + 1)) + 0.001 * r * c + (c == 4 ? row[0] * 2 : 0);
            data[size_t(c)].push_back(row[c]);
        }
        ASSERT_NE(store.addRow(row), 0);
    }
    SampleStatistics stats(store);
    for (int32_t c = 0; c < columns; ++c) {
        double sum = 0;
        for (double x : data[size_t(c)]) sum += x;
        const double m = sum / (rows - 1);
        double s2 = 0, s3 = 0;
        for (double x : data[size_t(c)]) {
            s2 += (x - m) * (x - m);
            s3 += std::pow(x - m, 3);
        }
        const double s = std::sqrt(s2 / (rows - 1));
        EXPECT_NEAR(stats.mean(c), m, 1e-12);
        EXPECT_NEAR(stats.stdDev(c), s, 1e-12);
        EXPECT_NEAR(stats.skewness(c), s3 / ((rows - 1) * s * s * s), 1e-9);
    }
    double cross = 0, sa = 0, sb = 0;
    const double ma = stats.mean(0), mb = stats.mean(4);
    for (int32_t r = 0; r < rows; ++r) {
        cross += (data[0][size_t(r)] - ma) * (data[4][size_t(r)] - mb);
        sa += (data[0][size_t(r)] - ma) * (data[0][size_t(r)] - ma);
        sb += (data[4][size_t(r)] - mb) * (data[4][size_t(r)] - mb);
    }
    EXPECT_NEAR(stats.correlation(0, 4), cross / std::sqrt(sa * sb), 1e-12);
}

TEST(SampleStatistics, TextFormAndRoundTrip) {
    sampValues store;
    ASSERT_EQ(store.allocate(2), 1);
    const double rows[4][2] = {{1, 2}, {2, 1}, {3, 4}, {4, 3}};
    for (const auto& row : rows) ASSERT_NE(store.addRow(row), 0);
    SampleStatistics stats(store);
    std::ostringstream out;
    out << stats;
    EXPECT_EQ(out.str(),
              "2\n"
              "1\t0.742857\t\n"
              "0.742857\t1\t\n"
              "3.33333\t1.61015\t-1.18297\t-1.36286\t\n"
              "3.33333\t1.61015\t-1.18297\t-1.36286\t\n");

    std::stringstream exact;
    exact.precision(17);
    exact << stats << "tail";
    SampleStatistics back;
    exact >> back;
    ASSERT_FALSE(exact.fail());
    ASSERT_EQ(back.size(), 2);
    for (int32_t i = 0; i < 2; ++i) {
        for (int32_t k = 0; k < 4; ++k) EXPECT_EQ(back.moment(i, k), stats.moment(i, k));
        for (int32_t j = 0; j < 2; ++j) EXPECT_EQ(back.correlation(i, j), stats.correlation(i, j));
    }
    std::string rest;
    exact >> rest;
    EXPECT_EQ(rest, "tail");

    std::ostringstream none;
    none << SampleStatistics();
    EXPECT_EQ(none.str(), "0\n");
}

TEST(SampleStatistics, BadTextsLeaveNothing) {
    for (const char* text : {"", "-1\n", "2\n1\t0.5\t\n0.5\t1\t\n1\t2\t3\t", "1\n1\tx\t0\t0\t0\t\n", "one\n"}) {
        SCOPED_TRACE(text);
        std::istringstream in(text);
        SampleStatistics stats;
        in >> stats;
        EXPECT_TRUE(in.fail());
        EXPECT_TRUE(stats.empty());
        EXPECT_EQ(stats.size(), 0);
        EXPECT_EQ(stats.mean(0), -10.0);
    }
}

}  // namespace
}  // namespace tarvex
