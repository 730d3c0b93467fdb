// Latin hypercube designs checked on their output: strata, permutation,
// rank correlation, dependence tree, and phase ends at sizes where the float
// percent cannot tell them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "common/UniformRandom.h"
#include "correlation/ImanConover.h"
#include "sampling/LatinSampler.h"
#include "SamplingFixtures.h"

namespace tarvex {
namespace {

using namespace tarvex::testing;

TEST(LatinSampler, OneValuePerStratumWithoutCorrelation) {
    FactorList list;
    ASSERT_EQ(list.addFactor(uniformFactor("a")), 1);
    ASSERT_EQ(list.addFactor(constantFactor("k", 7.5)), 1);
    ASSERT_EQ(list.addFactor(uniformFactor("b")), 1);
    ASSERT_EQ(list.addFactor(relationFactor("r", "a+b")), 1);
    ASSERT_EQ(list.addFactor(normalFactor("c", 0, 1)), 1);
    LatinSampler latin;
    ASSERT_EQ(latin.setSamples(1000), 1);
    ASSERT_EQ(latin.setSeed(12345), 1);
    sampValues store;
    ASSERT_EQ(drive(latin, store, list), 50.0f);
    EXPECT_EQ(latin.numFactors(), 5);
    ASSERT_EQ(store.rowCount(), 1000);
    ASSERT_EQ(store.columnCount(), 5);
    for (int c : {0, 2, 4}) {
        const std::vector<double> v = column(store, c);
        EXPECT_TRUE(oneValuePerStratum(v)) << c;
        // Permuted, not left in stratum order.
        EXPECT_FALSE(std::is_sorted(v.begin(), v.end())) << c;
    }
    for (double k : column(store, 1)) ASSERT_EQ(k, 7.5);
    // Independent columns.
    EXPECT_NEAR(spearman(column(store, 0), column(store, 2)), 0.0, 0.1);
}

TEST(LatinSampler, SingleStratumIsAPlainDraw) {
    FactorList list;
    ASSERT_EQ(list.addFactor(uniformFactor("a")), 1);
    LatinSampler latin;
    ASSERT_EQ(latin.numSamples(), 1);
    sampValues store;
    ASSERT_EQ(drive(latin, store, list), 50.0f);
    double x = 0.0;
    ASSERT_EQ(store.getValue(0, 0, &x), 1);
    // The first value of the stream from seed 1.
    EXPECT_EQ(x, 0.5285838720992343);
}

TEST(LatinSampler, ImanConoverKeepsValuesAndReachesTarget) {
    auto makeList = [](int mode) {
        FactorList list;
        EXPECT_EQ(list.addFactor(uniformFactor("a")), 1);
        EXPECT_EQ(list.addFactor(uniformFactor("b")), 1);
        EXPECT_EQ(list.setMatrixValue(0, 1, 0.9), 1);
        list.correlationMode = mode;
        return list;
    };
    FactorList correlated = makeList(kImanConoverCorrelation);
    FactorList plain = makeList(kNoCorrelation);
    LatinSampler a, b;
    for (LatinSampler* s : {&a, &b}) {
        ASSERT_EQ(s->setSamples(1000), 1);
        ASSERT_EQ(s->setSeed(4711), 1);
    }
    sampValues withRanks, without;

    // After the first phase each column stands in stratum order.
    a.reset();
    ASSERT_EQ(a.generate(25.0f, withRanks, correlated), 25.0f);
    EXPECT_EQ(a.progress(), 25.0f);
    EXPECT_EQ(a.phase(), 2) << "no exchange phase under rank correlation";
    for (int c = 0; c < 2; ++c) {
        const std::vector<double> v = column(withRanks, c);
        EXPECT_TRUE(std::is_sorted(v.begin(), v.end()));
    }

    ASSERT_EQ(drive(a, withRanks, correlated), 50.0f);
    EXPECT_TRUE(a.warningText().empty());
    ASSERT_EQ(drive(b, without, plain), 50.0f);
    for (int c = 0; c < 2; ++c) {
        std::vector<double> x = column(withRanks, c), y = column(without, c);
        EXPECT_TRUE(oneValuePerStratum(x));
        std::sort(x.begin(), x.end());
        std::sort(y.begin(), y.end());
        EXPECT_EQ(x, y) << "the same draws, only reordered";
    }
    EXPECT_NEAR(spearman(column(withRanks, 0), column(withRanks, 1)), 0.9, 0.03);
    EXPECT_NEAR(spearman(column(without, 0), column(without, 1)), 0.0, 0.1);

    // The order is exactly the one of the rank table: row r holds the value
    // of sorted place rankOf(column, r).
    ImanConover table(correlated, 1000);
    std::vector<double> sorted = column(withRanks, 1);
    std::sort(sorted.begin(), sorted.end());
    const std::vector<double> b1 = column(withRanks, 1);
    for (int32_t r = 0; r < 1000; ++r) ASSERT_EQ(b1[size_t(r)], sorted[size_t(table.rankOf(1, r))]);
}

TEST(LatinSampler, FailedMatrixIsReportedAndSampleLeftUncorrelated) {
    FactorList list;
    makeImpossibleCorrelations(list);
    LatinSampler latin;
    ASSERT_EQ(latin.setSamples(1000), 1);
    sampValues store;
    ASSERT_EQ(drive(latin, store, list), 50.0f);
    EXPECT_EQ(latin.warningText(), "The Iman Conover Matrix is not positive definited.\nNo correlation can be calculated.");
    for (int c = 0; c < 3; ++c) {
        const std::vector<double> v = column(store, c);
        EXPECT_TRUE(oneValuePerStratum(v)) << "no column collapses";
    }
    for (int i = 0; i < 3; ++i)
        for (int j = i + 1; j < 3; ++j) EXPECT_NEAR(spearman(column(store, i), column(store, j)), 0.0, 0.1);
}

TEST(LatinSampler, DependenceTreeChildFollowsParent) {
    FactorList list;
    ASSERT_EQ(list.addFactor(uniformFactor("child")), 1);
    ASSERT_EQ(list.addFactor(uniformFactor("parent")), 1);
    ASSERT_EQ(list.addFactor(uniformFactor("free")), 1);
    ASSERT_EQ(list.linkFactor(0, 1, 0.7), 1);
    list.correlationMode = kTreeCorrelation;
    LatinSampler latin;
    ASSERT_EQ(latin.setSamples(4000), 1);
    ASSERT_EQ(latin.setSeed(99), 1);
    sampValues store;
    ASSERT_EQ(drive(latin, store, list), 50.0f);
    const std::vector<double> child = column(store, 0), parent = column(store, 1);
    EXPECT_TRUE(oneValuePerStratum(parent));
    EXPECT_TRUE(oneValuePerStratum(column(store, 2)));
    EXPECT_FALSE(oneValuePerStratum(child)) << "children are not stratified";
    EXPECT_NEAR(spearman(parent, child), 0.7, 0.04);
    EXPECT_NEAR(spearman(parent, column(store, 2)), 0.0, 0.06);

    // Under any other mode the link is ignored: the child is a root.
    list.correlationMode = kNoCorrelation;
    ASSERT_EQ(drive(latin, store, list), 50.0f);
    EXPECT_TRUE(oneValuePerStratum(column(store, 0)));
    EXPECT_NEAR(spearman(column(store, 0), column(store, 1)), 0.0, 0.06);
}

TEST(LatinSampler, ConstantsOnlyUnderRankCorrelationComplete) {
    FactorList list;
    ASSERT_EQ(list.addFactor(constantFactor("k", 2.0)), 1);
    ASSERT_EQ(list.addFactor(constantFactor("m", -3.0)), 1);
    list.correlationMode = kSteinCorrelation;
    LatinSampler s;
    ASSERT_EQ(s.setSamples(10), 1);
    sampValues store;
    ASSERT_EQ(drive(s, store, list), 50.0f);
    ASSERT_EQ(store.rowCount(), 10);
    for (double v : column(store, 0)) EXPECT_EQ(v, 2.0);
    for (double v : column(store, 1)) EXPECT_EQ(v, -3.0);

    // And without correlation, where nothing is stratified.
    list.correlationMode = kNoCorrelation;
    ASSERT_EQ(drive(s, store, list), 50.0f);
    ASSERT_EQ(store.rowCount(), 10);
    for (double v : column(store, 1)) EXPECT_EQ(v, -3.0);
}

TEST(LatinSampler, SteinRanksCopyTheImportedOrder) {
    FactorList list;
    ASSERT_EQ(list.addFactor(uniformFactor("a")), 1);
    ASSERT_EQ(list.addFactor(uniformFactor("b")), 1);
    // An imported sample in which b falls as a rises.
    const int32_t rows = 50;
    std::vector<double> values;
    for (int32_t r = 0; r < rows; ++r) {
        values.push_back(double((r * 7) % rows));
        values.push_back(-double((r * 7) % rows));
    }
    list.steinInfo.assign(rows, 2, values);
    list.correlationMode = kSteinCorrelation;
    LatinSampler s;
    ASSERT_EQ(s.setSamples(rows), 1);
    sampValues store;
    ASSERT_EQ(drive(s, store, list), 50.0f);
    EXPECT_TRUE(s.warningText().empty());
    const std::vector<double> a = column(store, 0), b = column(store, 1);
    EXPECT_TRUE(oneValuePerStratum(a));
    EXPECT_NEAR(spearman(a, b), -1.0, 1e-12);
    for (int32_t r = 0; r < rows; ++r) EXPECT_EQ(int(a[size_t(r)] * rows), (r * 7) % rows);

    // A sample too short for the design is reported; the columns are still
    // permutations of their strata.
    ASSERT_EQ(s.setSamples(rows + 1), 1);
    ASSERT_EQ(drive(s, store, list), 50.0f);
    EXPECT_FALSE(s.warningText().empty());
    EXPECT_TRUE(oneValuePerStratum(column(store, 0)));
}

// At a million rows by three factors the last phase spans three million
// cells, and a single-precision percent reaches 50 before the last of them.
TEST(LatinSampler, EveryCellDoneBeyondFloatPercentResolution) {
    FactorList list;
    ASSERT_EQ(list.addFactor(uniformFactor("root")), 1);
    ASSERT_EQ(list.addFactor(uniformFactor("child")), 1);
    ASSERT_EQ(list.addFactor(constantFactor("k", 7.5)), 1);
    ASSERT_EQ(list.linkFactor(1, 0, 0.5), 1);
    list.correlationMode = kTreeCorrelation;
    const int32_t n = 1000000;
    // The premise: the float percent of the next-to-last cell reads 50.
    EXPECT_EQ(float(3 * n - 1) / float(3 * n) * 5.0f + 45.0f, 50.0f);

    LatinSampler s;
    ASSERT_EQ(s.setSamples(n), 1);
    sampValues store;
    s.reset();
    int calls = 0;
    float p = 0.0f;
    for (int target = 1; target <= 50; ++target) {
        p = s.generate(float(target), store, list);
        ++calls;
        if (target < 50) {
            EXPECT_LT(p, 50.0f);
        }
    }
    ASSERT_EQ(p, 50.0f);
    ASSERT_EQ(store.rowCount(), n);
    EXPECT_TRUE(oneValuePerStratum(column(store, 0)));
    const std::vector<double> child = column(store, 1), constant = column(store, 2);
    for (int32_t r = 0; r < n; ++r) {
        ASSERT_EQ(constant[size_t(r)], 7.5) << r;
        ASSERT_TRUE(child[size_t(r)] > 0.0 && child[size_t(r)] < 1.0) << r;
    }
}

// Past 2^24 rows n is no longer exact in single precision (2^24 + 1 rounds
// to 2^24): the last stratum must still lie inside [(n - 1) / n, 1), whatever
// the draw, up to the largest sample size.
TEST(LatinSampler, StrataStayBelowOneAtEverySize) {
    const double smallest = 4.656613057391769e-10, largest = 0.9999998807907104;  // the generator's extremes
    for (int64_t n : {int64_t(1) << 24, (int64_t(1) << 24) + 1, (int64_t(1) << 24) + 3, (int64_t(1) << 25) + 1,
                      int64_t(std::numeric_limits<int32_t>::max())}) {
        for (int64_t stratum : {int64_t(0), int64_t(1), n - 1}) {
            for (double u : {smallest, 0.5, largest}) {
                const double x = LatinSampler::stratumPoint(u, int32_t(stratum), int32_t(n));
                ASSERT_LT(x, 1.0) << n << " " << stratum << " " << u;
                const long double scaled = (long double)x * (long double)n;
                ASSERT_GE(scaled, (long double)stratum) << n << " " << stratum << " " << u;
                ASSERT_LT(scaled, (long double)(stratum + 1)) << n << " " << stratum << " " << u;
            }
        }
    }
}

// The same through the sampler at 2^24 + 1 rows of one factor, up to the end
// of the stratification: the exchanges after it only permute the column, and
// would triple the time.
TEST(LatinSampler, LargestExactSizePlusOneStaysInsideItsStrata) {
    FactorList list;
    EXPECT_EQ(list.addFactor(uniformFactor("a")), 1);
    const int32_t n = (int32_t(1) << 24) + 1;
    LatinSampler s;
    EXPECT_EQ(s.setSamples(n), 1);
    sampValues store;
    ASSERT_EQ(drive(s, store, list, 25), 25.0f);
    ASSERT_EQ(s.phase(), 1);
    ASSERT_EQ(store.rowCount(), n);
    // Still in stratum order: row i holds the point of stratum i.
    const std::vector<double> v = column(store, 0);
    for (int32_t i = 0; i < n; ++i) {
        const long double scaled = (long double)v[size_t(i)] * n;
        ASSERT_TRUE(v[size_t(i)] < 1.0 && scaled >= i && scaled < i + 1) << i << " " << v[size_t(i)];
    }
}

}  // namespace
}  // namespace tarvex
