#include "model/levele/LevelEModel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "LevelECases.h"
#include "model/levele/LaplaceSolution.h"

using namespace tarvex::levele;
using tarvex::levele::test::readReference;
using tarvex::levele::test::referenceCases;
using tarvex::levele::test::tolerance;

namespace {

double peakOf(const std::vector<tarvex::levele::test::ReferenceRow>& rows, std::size_t column) {
    double peak = 0.0;
    for (const auto& row : rows) peak = std::max(peak, row.values[column]);
    return peak;
}

}  // namespace

// The total dose of the four cases at the 26 times against the 40-digit
// solution, and the split over the nuclides against four printed digits.
TEST(LevelEModel, FourCasesMatchTheReferenceSolution) {
    const auto reference = readReference("mp_ref_dfrac0.1.txt");
    const auto shares = readReference("cpp_cases_dfrac0.1.txt");
    ASSERT_EQ(reference.size(), 4u);
    ASSERT_EQ(shares.size(), 4u);
    const LevelEModel model;
    for (std::size_t c = 0; c < 4; ++c) {
        SCOPED_TRACE("case " + std::to_string(c));
        const LevelEDoses doses = model.run(referenceCases()[c]);
        ASSERT_EQ(reference[c].size(), std::size_t(kTimeCount));
        ASSERT_EQ(shares[c].size(), std::size_t(kTimeCount));
        const double peak = peakOf(reference[c], 0);
        for (int i = 0; i < kTimeCount; ++i) {
            const auto& ref = reference[c][std::size_t(i)];
            EXPECT_EQ(kTimes[std::size_t(i)], ref.time);
            EXPECT_NEAR(doses.total(i), ref.values[0], tolerance(ref.values[0], peak)) << "t = " << ref.time;
            // Columns: dose, dose in long double, then I129 Np237 U233 Th229 at four digits.
            for (int n = 0; n < kNuclideCount; ++n) {
                const double share = shares[c][std::size_t(i)].values[std::size_t(2 + n)];
                if (std::fabs(share) < 1e-6 * peak) continue;
                EXPECT_NEAR(doses.byNuclide[std::size_t(i)][std::size_t(n)], share, 5.5e-4 * std::fabs(share))
                    << "t = " << ref.time << ", nuclide " << n;
            }
        }
    }
}

// The stream only dilutes: twice the flow, half of every dose, of every nuclide.
TEST(LevelEModel, DoubledStreamFlowHalvesEveryDose) {
    const LevelEModel model;
    for (FactorValues factors : referenceCases()) {
        const LevelEDoses base = model.run(factors);
        factors[kStreamFlow] *= 2.0;
        const LevelEDoses diluted = model.run(factors);
        for (int i = 0; i < kTimeCount; ++i)
            for (int n = 0; n < kNuclideCount; ++n)
                EXPECT_DOUBLE_EQ(diluted.byNuclide[std::size_t(i)][std::size_t(n)],
                                 0.5 * base.byNuclide[std::size_t(i)][std::size_t(n)]);
    }
}

// All iodine that leaves the repository and survives the journey reaches the
// stream: the time integral of its dose equals the transform at s = 0, here
// from its closed form, beta_I (w/W) kI A_I(T) / (lambda_I + kI) e^(mu1 l1) e^(mu2 l2).
TEST(LevelEModel, IodineTimeIntegralEqualsItsTransformAtZero) {
    const FactorValues f = referenceCases()[1];  // the fast path: a pulse of a few thousand years
    const double lambda = std::log(2.0) / 1.57e7;
    const double inventory = 100.0 * std::exp(-lambda * f[kContainmentTime]);
    auto layerFactor = [lambda](double v, double l, double R) {
        const double d = l / 10.0;
        const double g = R * lambda;
        return std::exp(-(2.0 * g / v) / (1.0 + std::sqrt(1.0 + 4.0 * d * g / v)) * l);
    };
    const double expected = 56.0 * 0.73 / f[kStreamFlow] * f[kIodineLeachRate] * inventory /
                            (lambda + f[kIodineLeachRate]) *
                            layerFactor(f[kVelocity1], f[kLength1], f[kIodineRetention1]) *
                            layerFactor(f[kVelocity2], f[kLength2], f[kIodineRetention2]);

    const LevelEModel model;
    const LaplaceSolution solution(f);
    // Trapezoids of 4 yr up to 4e4 yr after the release, where the pulse
    // (about 2900 yr after it, 900 yr wide) has long passed.
    const double step = 4.0;
    double integral = 0.0;
    double previous = 0.0;  // the dose is 0 when the release begins
    for (double tau = step; tau <= 4e4; tau += step) {
        const double dose = model.dosesAt(solution, f[kContainmentTime] + tau)[kI129];
        integral += 0.5 * step * (previous + dose);
        previous = dose;
    }
    EXPECT_NEAR(integral, expected, 1e-5 * expected);
}

// Nothing arrives before the containment fails; at the failure itself neither.
TEST(LevelEModel, NoDoseUpToTheContainmentTime) {
    FactorValues f = referenceCases()[1];
    f[kContainmentTime] = 3e4;
    const LevelEModel model;
    const LevelEDoses doses = model.run(f);
    for (int n = 0; n < kNuclideCount; ++n) {
        EXPECT_EQ(doses.byNuclide[0][std::size_t(n)], 0.0);  // 2e4 yr
        EXPECT_EQ(doses.byNuclide[1][std::size_t(n)], 0.0);  // 3e4 yr, the failure itself
    }
    EXPECT_GT(doses.total(3), 1e-6);  // 5e4 yr: the chain has arrived
}

// The inventories at the failure against the decay chain integrated step by
// step (classical Runge-Kutta, half a year), down to the Np -> U -> Th term of
// about 1e-9 of the Th-229 inventory.
TEST(LevelEModel, InventoriesAtFailureFollowTheDecayChain) {
    const double halfLife[4] = {1.57e7, 2.14e6, 1.592e5, 7.34e3};
    double lambda[4];
    for (int n = 0; n < 4; ++n) lambda[n] = std::log(2.0) / halfLife[n];
    auto rate = [&lambda](const std::array<double, 4>& a) {
        return std::array<double, 4>{-lambda[0] * a[0], -lambda[1] * a[1], lambda[1] * a[1] - lambda[2] * a[2],
                                     lambda[2] * a[2] - lambda[3] * a[3]};
    };
    for (double T : {0.0, 1000.0, 2.5e4}) {
        std::array<double, 4> a = {100.0, 1000.0, 100.0, 1000.0};
        const int steps = int(T / 0.5);
        for (int k = 0; k < steps; ++k) {
            auto shifted = [&a](const std::array<double, 4>& d, double by) {
                std::array<double, 4> s;
                for (int n = 0; n < 4; ++n) s[std::size_t(n)] = a[std::size_t(n)] + by * d[std::size_t(n)];
                return s;
            };
            const auto k1 = rate(a);
            const auto k2 = rate(shifted(k1, 0.25));
            const auto k3 = rate(shifted(k2, 0.25));
            const auto k4 = rate(shifted(k3, 0.5));
            for (int n = 0; n < 4; ++n)
                a[std::size_t(n)] += 0.5 / 6.0 * (k1[std::size_t(n)] + 2 * k2[std::size_t(n)] + 2 * k3[std::size_t(n)] +
                                                   k4[std::size_t(n)]);
        }
        FactorValues f = referenceCases()[0];
        f[kContainmentTime] = T;
        const auto& inventory = LaplaceSolution(f).inventoryAtFailure();
        for (int n = 0; n < 4; ++n)
            EXPECT_NEAR(inventory[std::size_t(n)], a[std::size_t(n)], 1e-12 * a[std::size_t(n)])
                << "T = " << T << ", nuclide " << n;
    }
}

// Names in the case's order; what the model takes, at the boundaries.
TEST(LevelEModel, FactorNamesValuesAndPublishedRanges) {
    const char* names[] = {"T", "kI", "kC", "v1", "l1", "RI1", "RC1", "v2", "l2", "RI2", "RC2", "W"};
    for (int i = 0; i < kFactorCount; ++i) EXPECT_EQ(factorIndex(names[i]), i);
    EXPECT_EQ(factorIndex("w"), -1);
    EXPECT_EQ(factorIndex("V1"), -1);
    EXPECT_EQ(factorIndex(""), -1);

    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    EXPECT_EQ(valueProblem(kContainmentTime, 0.0), "");
    EXPECT_EQ(valueProblem(kContainmentTime, -1e-300), "is negative");
    EXPECT_EQ(valueProblem(kContainmentTime, nan), "is not finite");
    EXPECT_EQ(valueProblem(kContainmentTime, inf), "is not finite");
    for (int i = 1; i < kFactorCount; ++i) {
        EXPECT_EQ(valueProblem(i, 1e-300), "") << names[i];
        EXPECT_EQ(valueProblem(i, 0.0), "is not above 0") << names[i];
        EXPECT_EQ(valueProblem(i, -0.0), "is not above 0") << names[i];
        EXPECT_EQ(valueProblem(i, -inf), "is not finite") << names[i];
        EXPECT_EQ(valueProblem(i, nan), "is not finite") << names[i];
    }

    const double low[] = {100, 1e-3, 1e-6, 1e-3, 100, 1, 3, 1e-2, 50, 1, 3, 1e5};
    const double high[] = {1000, 1e-2, 1e-5, 1e-1, 500, 5, 30, 1e-1, 200, 5, 30, 1e7};
    for (int i = 0; i < kFactorCount; ++i) {
        EXPECT_TRUE(insidePublishedRange(i, low[i])) << names[i];
        EXPECT_TRUE(insidePublishedRange(i, high[i])) << names[i];
        EXPECT_FALSE(insidePublishedRange(i, std::nextafter(low[i], 0.0))) << names[i];
        EXPECT_FALSE(insidePublishedRange(i, std::nextafter(high[i], inf))) << names[i];
        EXPECT_FALSE(insidePublishedRange(i, nan)) << names[i];
    }
}
