// The diagonal band conditional sampler: band parameter, the exact branches,
// the draw that always comes first, and the joint law it produces.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "Correlations.h"
#include "common/UniformRandom.h"
#include "correlation/DiagonalBand.h"

namespace tarvex {
namespace {

using tarvex::test::pearson;

// Root of a + a^2 - a^3 = r by Newton from 0.5, independent of the bisection.
double bandRoot(double r) {
    double a = 0.5;
    for (int i = 0; i < 100; ++i) a -= (a + a * a - a * a * a - r) / (1.0 + 2.0 * a - 3.0 * a * a);
    return a;
}

TEST(DiagonalBand, BandParameterSolvesItsEquation) {
    DiagonalBand band;
    EXPECT_EQ(band.rho(), 0.0);
    EXPECT_EQ(band.band(), 0.0);
    EXPECT_EQ(band.seed, -5648423);
    for (double r : {0.5, 0.1, 0.9, -0.5, -0.9}) {
        band.setCorrelation(r);
        EXPECT_EQ(band.rho(), r);
        EXPECT_GT(band.band(), 0.0);
        // |g(a) - r| <= 1e-5 and g' >= 1 near these roots bound the error in a.
        EXPECT_NEAR(band.band(), bandRoot(std::fabs(r)), 1e-5) << r;
    }
    band.setCorrelation(1.0);
    EXPECT_GT(band.band(), 0.99);
    EXPECT_LE(band.band(), 1.0);
    // Out of range and unreadable values mean independence.
    for (double bad : {1.5, -1.0000001, std::numeric_limits<double>::quiet_NaN()}) {
        band.setCorrelation(0.7);
        band.setCorrelation(bad);
        EXPECT_EQ(band.rho(), 0.0);
        EXPECT_EQ(band.band(), 0.0);
    }
}

TEST(DiagonalBand, ExactBranchesStillDrawFirst) {
    // Reference stream: a fresh word at the default seed restarts the shared
    // table just as the sampler's own first draw does.
    int32_t state = -5648423;
    (void)uniformRandom(&state);
    (void)uniformRandom(&state);
    const double t3 = uniformRandom(&state);
    const double t4 = uniformRandom(&state);

    DiagonalBand band;
    band.setCorrelation(1.0);
    EXPECT_EQ(band.sampleConditional(0.37), 0.37);
    band.setCorrelation(-1.0);
    EXPECT_DOUBLE_EQ(band.sampleConditional(0.3), 0.7);
    band.setCorrelation(0.0);
    // The draws of the two exact branches were spent: this is the third.
    EXPECT_EQ(band.sampleConditional(0.9), t3);
    EXPECT_EQ(band.sampleConditional(0.1), t4);
}

TEST(DiagonalBand, MiddlePieceByHand) {
    // With the default seed the first draw is t = 0.6514319932887886. On the
    // middle piece the density is 1/(2w), so the solution is lo + T * 2w to
    // within the bisection's tolerance of 0.001 in probability.
    const double t = 0.6514319932887886;
    {
        DiagonalBand band;
        band.setCorrelation(0.5);
        const double a = band.band(), w = 1.0 - a, u = 0.3;
        ASSERT_LT(u, w);
        const double m = (w - u) / w;  // mass of the first piece, below t
        ASSERT_GT(t, m);
        const double lo = w - u, hi = w + u;
        ASSERT_LE(u, a);
        ASSERT_LE(t, (hi - lo) / (2.0 * w) + m);
        EXPECT_NEAR(band.sampleConditional(u), lo + (t - m) * 2.0 * w, 0.001 * 2.0 * w);
    }
    {
        DiagonalBand band;
        band.setCorrelation(-0.5);
        const double a = band.band(), w = 1.0 - a, u = 0.395;
        ASSERT_LE(u, a);  // no first piece
        const double lo = a - u, hi = u + a;
        ASSERT_LE(t, (hi - lo) / (2.0 * w));
        EXPECT_NEAR(band.sampleConditional(u), lo + t * 2.0 * w, 0.001 * 2.0 * w);
    }
    {
        // Positive band, u near 1: no first piece, t beyond the middle one;
        // the last piece from (a - u) + 1 at density 1/w.
        DiagonalBand band;
        band.setCorrelation(0.5);
        const double a = band.band(), w = 1.0 - a, u = 0.95;
        const double lo = std::fabs(w - u), hi = (a - u) + 1.0;
        const double mass = (hi - lo) / (2.0 * w);
        ASSERT_GT(t, mass);
        EXPECT_NEAR(band.sampleConditional(u), hi + (t - mass) * w, 0.001 * w);
    }
}

TEST(DiagonalBand, DefaultGeneratorsRepeatTheirStream) {
    auto run = [] {
        DiagonalBand band;
        band.setCorrelation(0.6);
        std::vector<double> v = {0.1, 0.5, 0.95, 0.3, 0.7, 0.02};
        band.sampleConditional(v.data(), int32_t(v.size()));
        return v;
    };
    const std::vector<double> first = run();
    EXPECT_EQ(run(), first);
}

TEST(DiagonalBand, UniformMarginalAndWantedCorrelation) {
    for (double rho : {0.8, 0.5, 0.2, -0.3, -0.7}) {
        DiagonalBand band;
        band.setCorrelation(rho);
        int32_t state = -12345;
        const int n = 40000;
        std::vector<double> parent(n), child(n);
        std::vector<int> bins(10, 0);
        for (int i = 0; i < n; ++i) {
            parent[size_t(i)] = uniformRandom(&state);
            child[size_t(i)] = band.sampleConditional(parent[size_t(i)]);
            ASSERT_GE(child[size_t(i)], 0.0);
            ASSERT_LE(child[size_t(i)], 1.0);
            ++bins[size_t(std::min(9, int(child[size_t(i)] * 10)))];
        }
        // The child is again uniform: each tenth holds about a tenth.
        for (int b : bins) EXPECT_NEAR(b / double(n), 0.1, 0.01) << rho;
        // Both margins uniform: Pearson and Spearman coincide.
        EXPECT_NEAR(pearson(parent, child), rho, 0.03) << rho;
    }
}

}  // namespace
}  // namespace tarvex
