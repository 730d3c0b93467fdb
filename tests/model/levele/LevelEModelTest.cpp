#include "model/levele/LevelEModel.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "LevelECases.h"

using namespace tarvex::levele;
using namespace tarvex::levele::test;

// The total dose of the four cases at the 26 times against the 40-digit
// solution, and the split over the nuclides against four printed digits.
TEST(LevelEModel, FourCasesMatchTheReferenceSolution) {
    const auto reference = readReference("mp_ref_dfrac0.1.txt");
    const auto shares = readReference("cpp_cases_dfrac0.1.txt");  // t, dose, dose(ld), I, Np, U, Th
    ASSERT_EQ(reference.size(), 4u);
    ASSERT_EQ(shares.size(), 4u);
    for (std::size_t c = 0; c < 4; ++c) {
        const LevelEDoses doses = LevelEModel().run(referenceCases()[c]);
        ASSERT_EQ(reference[c].size(), std::size_t(kTimeCount));
        const double peak = peakOf(reference[c]);
        for (std::size_t i = 0; i < kTimeCount; ++i) {
            const double expected = reference[c][i].values[0];
            EXPECT_EQ(kTimes[i], reference[c][i].time);
            EXPECT_NEAR(doses.total(int(i)), expected, tolerance(expected, peak)) << c << ", " << kTimes[i];
            for (std::size_t n = 0; n < kNuclideCount; ++n) {
                const double share = shares[c][i].values[2 + n];
                if (std::fabs(share) < 1e-6 * peak) continue;
                EXPECT_NEAR(doses.byNuclide[i][n], share, 5.5e-4 * std::fabs(share)) << c << ", " << i << ", " << n;
            }
        }
    }
}

// The stream only dilutes: twice the flow, half of every dose of every nuclide.
TEST(LevelEModel, DoubledStreamFlowHalvesEveryDose) {
    for (FactorValues factors : referenceCases()) {
        const LevelEDoses base = LevelEModel().run(factors);
        factors[kStreamFlow] *= 2.0;
        const LevelEDoses diluted = LevelEModel().run(factors);
        for (std::size_t i = 0; i < kTimeCount; ++i)
            for (std::size_t n = 0; n < kNuclideCount; ++n)
                EXPECT_DOUBLE_EQ(diluted.byNuclide[i][n], 0.5 * base.byNuclide[i][n]);
    }
}

// All iodine that leaves the repository and survives the journey reaches the
// stream: the time integral of its dose equals the transform at s = 0, here
// from its closed form, beta_I (w/W) kI A_I(T) / (lambda_I + kI) e^(mu1 l1) e^(mu2 l2).
// Before the containment fails, and at the failure, there is no dose.
TEST(LevelEModel, IodineTimeIntegralEqualsItsTransformAtZero) {
    const FactorValues f = referenceCases()[1];  // the fast path: a pulse of a few thousand years
    const double lambda = std::log(2.0) / 1.57e7;
    auto layer = [lambda](double v, double l, double R) {
        const double g = R * lambda, d = l / 10.0;
        return std::exp(-(2.0 * g / v) / (1.0 + std::sqrt(1.0 + 4.0 * d * g / v)) * l);
    };
    const double expected = 56.0 * 0.73 / f[kStreamFlow] * f[kIodineLeachRate] * 100.0 *
                            std::exp(-lambda * f[kContainmentTime]) / (lambda + f[kIodineLeachRate]) *
                            layer(f[kVelocity1], f[kLength1], f[kIodineRetention1]) *
                            layer(f[kVelocity2], f[kLength2], f[kIodineRetention2]);

    const LevelEModel model;
    const LaplaceSolution solution(f);
    EXPECT_EQ(model.dosesAt(solution, f[kContainmentTime]), NuclideDoses{});
    EXPECT_EQ(model.dosesAt(solution, 0.5 * f[kContainmentTime]), NuclideDoses{});
    // Trapezoids of 4 yr up to 4e4 yr after the release, where the pulse
    // (about 2900 yr after it, 900 yr wide) has long passed.
    double integral = 0.0, previous = 0.0;
    for (double tau = 4.0; tau <= 4e4; tau += 4.0) {
        const double dose = model.dosesAt(solution, f[kContainmentTime] + tau)[kI129];
        integral += 2.0 * (previous + dose);
        previous = dose;
    }
    EXPECT_NEAR(integral, expected, 1e-5 * expected);
}

// The inventories at the failure against the decay chain integrated by
// classical Runge-Kutta in half-year steps, down to the Np -> U -> Th term of
// about 1e-6 of the Th-229 inventory.
TEST(LevelEModel, InventoriesAtFailureFollowTheDecayChain) {
    const std::array<double, 4> lambda = {std::log(2.0) / 1.57e7, std::log(2.0) / 2.14e6, std::log(2.0) / 1.592e5,
                                          std::log(2.0) / 7.34e3};
    using State = std::array<double, 4>;
    auto rate = [&lambda](const State& a, const State& d, double h) {
        State x, r;
        for (std::size_t n = 0; n < 4; ++n) x[n] = a[n] + h * d[n];
        for (std::size_t n = 0; n < 4; ++n) r[n] = (n >= 2 ? lambda[n - 1] * x[n - 1] : 0.0) - lambda[n] * x[n];
        return r;
    };
    for (double T : {0.0, 1000.0, 2.5e4}) {
        State a = {100.0, 1000.0, 100.0, 1000.0};
        for (int k = 0; k < int(T / 0.5); ++k) {
            const State k1 = rate(a, State{}, 0.0), k2 = rate(a, k1, 0.25), k3 = rate(a, k2, 0.25),
                        k4 = rate(a, k3, 0.5);
            for (std::size_t n = 0; n < 4; ++n) a[n] += 0.5 / 6.0 * (k1[n] + 2 * k2[n] + 2 * k3[n] + k4[n]);
        }
        FactorValues f = referenceCases()[0];
        f[kContainmentTime] = T;
        // The solution outlives the reference to its inventory.
        const LaplaceSolution solution(f);
        const auto& inventory = solution.inventoryAtFailure();
        for (std::size_t n = 0; n < 4; ++n) EXPECT_NEAR(inventory[n], a[n], 1e-12 * a[n]) << T << ", " << n;
    }
}

// Names in the case's order; what the model takes, at the boundaries.
TEST(LevelEModel, FactorNamesValuesAndPublishedRanges) {
    const char* names[] = {"T", "kI", "kC", "v1", "l1", "RI1", "RC1", "v2", "l2", "RI2", "RC2", "W"};
    const double low[] = {100, 1e-3, 1e-6, 1e-3, 100, 1, 3, 1e-2, 50, 1, 3, 1e5};
    const double high[] = {1000, 1e-2, 1e-5, 1e-1, 500, 5, 30, 1e-1, 200, 5, 30, 1e7};
    const double nan = std::numeric_limits<double>::quiet_NaN(), inf = std::numeric_limits<double>::infinity();
    EXPECT_EQ(factorIndex("V1"), -1);
    EXPECT_EQ(valueProblem(kContainmentTime, 0.0), "");
    EXPECT_EQ(valueProblem(kContainmentTime, -1e-300), "is negative");
    for (int i = 0; i < kFactorCount; ++i) {
        EXPECT_EQ(factorIndex(names[i]), i);
        EXPECT_EQ(valueProblem(i, nan), "is not finite") << names[i];
        EXPECT_EQ(valueProblem(i, -inf), "is not finite") << names[i];
        EXPECT_EQ(valueProblem(i, 1e-300), "") << names[i];
        EXPECT_EQ(valueProblem(i, -0.0), i > 0 ? "is not above 0" : "") << names[i];
        EXPECT_TRUE(insidePublishedRange(i, low[i]) && insidePublishedRange(i, high[i])) << names[i];
        EXPECT_FALSE(insidePublishedRange(i, std::nextafter(low[i], 0.0))) << names[i];
        EXPECT_FALSE(insidePublishedRange(i, std::nextafter(high[i], inf))) << names[i];
        EXPECT_FALSE(insidePublishedRange(i, nan)) << names[i];
    }
}
