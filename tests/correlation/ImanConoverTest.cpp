// Iman-Conover rank tables: the Cholesky step and its failure rule, the ranks
// as permutations reaching the target, the seed rule.
#include <gtest/gtest.h>

#include <Eigen/Dense>
#include <cmath>
#include <vector>

#include "Correlations.h"
#include "TestSupport.h"
#include "correlation/ColumnFile.h"
#include "correlation/ImanConover.h"

namespace tarvex {
namespace {

std::vector<float> matrix2(float rho) { return {1.0f, rho, rho, 1.0f}; }

std::vector<double> ranksOf(const ImanConover& ic, int32_t column) {
    std::vector<double> r;
    for (int32_t row = 0; row < ic.rowCount(); ++row) r.push_back(ic.rankOf(column, row));
    return r;
}

// Rank correlation of two rank columns (ranks 0..N-1, no ties).
double spearman(const ImanConover& ic, int32_t a, int32_t b) { return test::pearson(ranksOf(ic, a), ranksOf(ic, b)); }

bool isPermutation(const ImanConover& ic, int32_t column) {
    std::vector<int> seen(static_cast<size_t>(ic.rowCount()), 0);
    for (int32_t r = 0; r < ic.rowCount(); ++r) {
        const int32_t k = ic.rankOf(column, r);
        if (k < 0 || k >= ic.rowCount() || seen[size_t(k)]++) return false;
    }
    return true;
}

TEST(ImanConover, ReachesTargetRankCorrelation) {
    const std::vector<float> m = matrix2(0.9f);
    ImanConover ic(m.data(), 2, 1000);
    ASSERT_EQ(ic.isValid(), 1);
    EXPECT_TRUE(isPermutation(ic, 0));
    EXPECT_TRUE(isPermutation(ic, 1));
    EXPECT_NEAR(spearman(ic, 0, 1), 0.9, 0.03);

    // 0.75 N random exchanges leave about e^-1.5 of each shuffled column in
    // place, which pulls every pair up by about 0.05: targets away from 1 are
    // met within a tenth.
    const std::vector<float> neg = matrix2(-0.5f);
    ImanConover icNeg(neg.data(), 2, 1000);
    EXPECT_NEAR(spearman(icNeg, 0, 1), -0.5, 0.1);

    // Three columns with a full matrix.
    const std::vector<float> m3 = {1.0f, 0.6f, -0.3f, 0.6f, 1.0f, 0.2f, -0.3f, 0.2f, 1.0f};
    ImanConover ic3(m3.data(), 3, 2000);
    ASSERT_EQ(ic3.isValid(), 1);
    EXPECT_NEAR(spearman(ic3, 0, 1), 0.6, 0.1);
    EXPECT_NEAR(spearman(ic3, 0, 2), -0.3, 0.1);
    EXPECT_NEAR(spearman(ic3, 1, 2), 0.2, 0.1);
}

TEST(ImanConover, IdentityGivesIndependentShuffledColumns) {
    const std::vector<float> id = {1, 0, 0, 0, 1, 0, 0, 0, 1};
    ImanConover ic(id.data(), 3, 3000);
    ASSERT_EQ(ic.isValid(), 1);
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) EXPECT_EQ(ic.cholesky()[size_t(i * 3 + j)], i == j ? 1.0 : 0.0);
    for (int c = 0; c < 3; ++c) EXPECT_TRUE(isPermutation(ic, c));
    EXPECT_NEAR(spearman(ic, 0, 1), 0.0, 0.1);
    EXPECT_NEAR(spearman(ic, 1, 2), 0.0, 0.1);
    // The first column is shuffled too: its ranks are not the row order.
    int inPlace = 0;
    for (int32_t r = 0; r < 3000; ++r) inPlace += ic.rankOf(0, r) == r;
    EXPECT_LT(inPlace, 1000);
}

TEST(ImanConover, CholeskyMatchesEigenTransposed) {
    const std::vector<float> m = {1.0f, 0.5f, 0.25f, 0.5f, 1.0f, -0.4f, 0.25f, -0.4f, 1.0f};
    ImanConover preview(m.data(), 3);
    ASSERT_EQ(preview.isValid(), 1);
    Eigen::Matrix3d a;
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) a(i, j) = double(m[size_t(i * 3 + j)]);
    const Eigen::Matrix3d lower = a.llt().matrixL();
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) EXPECT_NEAR(preview.cholesky()[size_t(j * 3 + i)], lower(i, j), 1e-14);
    EXPECT_EQ(preview.rankOf(0, 0), 0);
}

TEST(ImanConover, NotPositiveSemidefiniteFails) {
    // Pairwise 0.9, 0.9, -0.9: d of the third column is negative.
    const std::vector<float> m = {1.0f, 0.9f, 0.9f, 0.9f, 1.0f, -0.9f, 0.9f, -0.9f, 1.0f};
    ImanConover preview(m.data(), 3);
    EXPECT_EQ(preview.isValid(), 0);
    ImanConover ic(m.data(), 3, 100);
    EXPECT_EQ(ic.isValid(), 0);
    for (int32_t r = 0; r < 100; ++r) EXPECT_EQ(ic.rankOf(1, r), 0);
}

TEST(ImanConover, CorrelationOfOnePassesAndFinishes) {
    // d is exactly 0 for the second column; the run must go on.
    const std::vector<float> m = matrix2(1.0f);
    ImanConover preview(m.data(), 2);
    EXPECT_EQ(preview.isValid(), 1);
    EXPECT_EQ(preview.cholesky()[3], 0.0);
    ImanConover ic(m.data(), 2, 500);
    EXPECT_EQ(ic.isValid(), 1);
    EXPECT_TRUE(isPermutation(ic, 0));
    EXPECT_TRUE(isPermutation(ic, 1));
    EXPECT_NEAR(spearman(ic, 0, 1), 1.0, 1e-9);
}

TEST(ImanConover, SeedRuleAndRepeatability) {
    const std::vector<float> m = matrix2(0.4f);
    ImanConover a(m.data(), 2, 300), b(m.data(), 2, 300);
    ImanConover c(m.data(), 2, 300, 77), d(m.data(), 2, 300, 77);
    ImanConover e(m.data(), 2, 300, ImanConover::defaultSeed);
    int sameAB = 1, sameCD = 1, sameAC = 1, sameAE = 1;
    for (int col = 0; col < 2; ++col)
        for (int32_t r = 0; r < 300; ++r) {
            sameAB &= a.rankOf(col, r) == b.rankOf(col, r);
            sameCD &= c.rankOf(col, r) == d.rankOf(col, r);
            sameAC &= a.rankOf(col, r) == c.rankOf(col, r);
            sameAE &= a.rankOf(col, r) == e.rankOf(col, r);
        }
    EXPECT_TRUE(sameAB);
    EXPECT_TRUE(sameCD);
    EXPECT_FALSE(sameAC);
    EXPECT_TRUE(sameAE) << "the default is the seed 5648423";
    // Places outside the table.
    EXPECT_EQ(a.rankOf(2, 0), 0);
    EXPECT_EQ(a.rankOf(0, 300), 0);
    EXPECT_EQ(a.rankOf(-1, 0), 0);
}

TEST(ColumnFile, DiskAndMemoryGiveTheSameTable) {
    const std::vector<float> m = {1.0f, 0.3f, 0.5f, 0.3f, 1.0f, 0.1f, 0.5f, 0.1f, 1.0f};
    // Without a usable temporary directory the table is kept in memory.
    auto table = [&m](bool expectOnDisk) {
        ColumnFile file;
        EXPECT_EQ(file.onDisk(), expectOnDisk);
        const int32_t a[] = {1, 2, 3};
        EXPECT_TRUE(file.write(8, a, sizeof a));
        int32_t back[5] = {9, 9, 9, 9, 9};
        EXPECT_TRUE(file.read(0, back, sizeof back));
        EXPECT_EQ(back[0], 0) << "never written reads as zero";
        EXPECT_EQ(back[2], 1);
        EXPECT_EQ(back[4], 3);
        ImanConover ic(m.data(), 3, 20000);
        std::vector<int32_t> ranks;
        for (int c = 0; c < 3; ++c)
            for (int32_t r = 0; r < 20000; ++r) ranks.push_back(ic.rankOf(c, r));
        return ranks;
    };
    const std::vector<int32_t> onDisk = table(true);
    test::EnvironmentValue temp("TEMP", "/nonexistent/tarvex-no-such-directory");
    EXPECT_EQ(table(false), onDisk);
}

}  // namespace
}  // namespace tarvex
