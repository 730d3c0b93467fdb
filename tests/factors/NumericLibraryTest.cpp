#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>

#include <boost/math/special_functions/erf.hpp>
#include <boost/multiprecision/cpp_bin_float.hpp>

#include "factors/NumericLibrary.h"

namespace tarvex {
namespace {

using Big = boost::multiprecision::cpp_bin_float_50;

struct Out {
    double p = 42.0, q = 43.0, bound = -99.0;
    int status = 99;
};

Out normal(double x, double mean, double sd, int which = 1) {
    Out o;
    cdfNormal(which, o.p, o.q, x, mean, sd, o.status, o.bound);
    return o;
}
Out gammaCdf(double x, double shape, double rate, int which = 1) {
    Out o;
    cdfGamma(which, o.p, o.q, x, shape, rate, o.status, o.bound);
    return o;
}
Out betaCdf(double x, double y, double a, double b, int which = 1) {
    Out o;
    cdfBeta(which, o.p, o.q, x, y, a, b, o.status, o.bound);
    return o;
}

double relErr(double got, double want) {
    if (want == 0.0) return std::fabs(got);
    return std::fabs(got - want) / std::fabs(want);
}

// Reference tails from a 50-digit complementary error function.
TEST(NumericLibrary, NormalTailsRelativeTo1e14OutTo37) {
    double worst = 0.0;
    for (int k = -3700; k <= 3700; k += 7) {
        const double z = k / 100.0;
        const Big arg = Big(z) / boost::multiprecision::sqrt(Big(2));
        const double lowerRef = static_cast<double>(boost::math::erfc(-arg) / 2);
        const double upperRef = static_cast<double>(boost::math::erfc(arg) / 2);
        const Out o = normal(z, 0.0, 1.0);
        ASSERT_EQ(o.status, 0);
        worst = std::max({worst, relErr(o.p, lowerRef), relErr(o.q, upperRef)});
        ASSERT_LT(relErr(o.p, lowerRef), 1e-14) << "z=" << z;
        ASSERT_LT(relErr(o.q, upperRef), 1e-14) << "z=" << z;
    }
    // The ends themselves: Phi(-37) is about 5.7e-300, still a normal double.
    for (double z : {-37.0, 37.0, -36.99, 0.66291, -0.66291, 5.656854248, -5.6568543}) {
        const Big arg = Big(z) / boost::multiprecision::sqrt(Big(2));
        const Out o = normal(z, 0.0, 1.0);
        EXPECT_LT(relErr(o.p, static_cast<double>(boost::math::erfc(-arg) / 2)), 1e-14) << z;
        EXPECT_LT(relErr(o.q, static_cast<double>(boost::math::erfc(arg) / 2)), 1e-14) << z;
    }
    EXPECT_GT(normal(-37.0, 0, 1).p, 5.7e-300);
    EXPECT_LT(normal(-37.0, 0, 1).p, 5.8e-300);
    std::printf("largest relative error of the normal tails on [-37, 37]: %.3g\n", worst);
}

TEST(NumericLibrary, NormalPublishedValuesAndScaling) {
    const Out mid = normal(3.5, 3.5, 2.0);
    EXPECT_EQ(mid.status, 0);
    EXPECT_EQ(mid.p, 0.5);
    EXPECT_EQ(mid.q, 0.5);
    // Abramowitz and Stegun, table 26.1.
    EXPECT_NEAR(normal(1.0, 0, 1).p, 0.841344746068543, 1e-15);
    EXPECT_NEAR(normal(1.96, 0, 1).p, 0.975002104851780, 1e-15);
    EXPECT_LT(relErr(normal(-5.0, 0, 1).p, 2.866515718791939e-7), 1e-14);
    // x = mean + k sd is the standard value at k.
    EXPECT_DOUBLE_EQ(normal(10.0 + 2.0 * 3.0, 10.0, 3.0).p, normal(2.0, 0, 1).p);
    // Below the smallest normal double the tail is flushed to zero.
    const Out far = normal(-40.0, 0, 1);
    EXPECT_EQ(far.p, 0.0);
    EXPECT_EQ(far.q, 1.0);
}

TEST(NumericLibrary, GammaPoissonIdentityAtIntegerShapes) {
    // For integer shape n, Q(n, z) = sum_{k<n} e^-z z^k / k!.
    for (int n = 1; n <= 40; n += 3) {
        for (double z : {0.05, 0.5, 1.0, 2.5, 7.0, 15.0, 33.0, 60.0}) {
            long double term = std::exp(-static_cast<long double>(z));
            long double sum = 0.0L;
            for (int k = 0; k < n; ++k) {
                sum += term;
                term *= z / (k + 1);
            }
            const double qRef = static_cast<double>(sum);
            const double pRef = static_cast<double>(1.0L - sum);
            // x * rate = z, with rate 2 to check that the scale is a rate.
            const Out o = gammaCdf(z / 2.0, n, 2.0);
            ASSERT_EQ(o.status, 0);
            if (qRef > 1e-300) {
                EXPECT_LT(relErr(o.q, qRef), 1e-12) << n << " " << z;
            }
            if (pRef > 1e-3) {
                EXPECT_LT(relErr(o.p, pRef), 1e-13) << n << " " << z;
            }
            EXPECT_NEAR(o.p + o.q, 1.0, 1e-15);
        }
    }
}

TEST(NumericLibrary, GammaHalfShapeAndChiSquare) {
    // P(1/2, z) = erf(sqrt z).
    for (double z : {1e-6, 0.01, 0.3, 1.0, 4.0, 12.0}) {
        EXPECT_LT(relErr(gammaCdf(z, 0.5, 1.0).p, std::erf(std::sqrt(z))), 1e-14) << z;
    }
    // Chi-square with one degree of freedom: the 95% point is 3.841458820694124.
    EXPECT_NEAR(gammaCdf(3.841458820694124, 0.5, 0.5).p, 0.95, 1e-14);
    const Out zero = gammaCdf(0.0, 2.0, 1.0);
    EXPECT_EQ(zero.status, 0);
    EXPECT_EQ(zero.p, 0.0);
    EXPECT_EQ(zero.q, 1.0);
}

TEST(NumericLibrary, BetaBinomialIdentityAtIntegerParameters) {
    // I_x(k, n-k+1) = P(Binomial(n, x) >= k).
    for (int n = 1; n <= 30; n += 4) {
        for (int k = 1; k <= n; ++k) {
            for (double x : {0.01, 0.2, 0.5, 0.77, 0.99}) {
                long double tail = 0.0L, below = 0.0L;
                for (int j = 0; j <= n; ++j) {
                    long double c = 1.0L;
                    for (int i = 1; i <= j; ++i) c = c * (n - j + i) / i;
                    const long double t =
                        c * std::pow(static_cast<long double>(x), j) * std::pow(1.0L - x, n - j);
                    (j >= k ? tail : below) += t;
                }
                const Out o = betaCdf(x, 1.0 - x, k, n - k + 1);
                ASSERT_EQ(o.status, 0);
                if (tail > 1e-280L) {
                    EXPECT_LT(relErr(o.p, static_cast<double>(tail)), 1e-12) << n << k << x;
                }
                if (below > 1e-280L) {
                    EXPECT_LT(relErr(o.q, static_cast<double>(below)), 1e-12) << n << k << x;
                }
            }
        }
    }
}

TEST(NumericLibrary, BetaClosedFormsAndEnds) {
    const Out u = betaCdf(0.3, 0.7, 1.0, 1.0);
    EXPECT_EQ(u.status, 0);
    EXPECT_NEAR(u.p, 0.3, 1e-16);
    EXPECT_NEAR(u.q, 0.7, 1e-16);
    // I_x(a, 1) = x^a and I_x(1, b) = 1 - (1-x)^b, also at non-integer exponents.
    EXPECT_LT(relErr(betaCdf(0.4, 0.6, 2.5, 1.0).p, std::pow(0.4, 2.5)), 1e-14);
    EXPECT_LT(relErr(betaCdf(0.4, 0.6, 1.0, 3.7).q, std::pow(0.6, 3.7)), 1e-14);
    // Arcsine law: I_x(1/2, 1/2) = (2/pi) asin(sqrt x).
    EXPECT_LT(relErr(betaCdf(0.2, 0.8, 0.5, 0.5).p, 2.0 / M_PI * std::asin(std::sqrt(0.2))), 1e-14);
    const Out lo = betaCdf(0.0, 1.0, 2.0, 3.0);
    EXPECT_EQ(lo.status, 0);
    EXPECT_EQ(lo.p, 0.0);
    EXPECT_EQ(lo.q, 1.0);
    const Out hi = betaCdf(1.0, 0.0, 2.0, 3.0);
    EXPECT_EQ(hi.status, 0);
    EXPECT_EQ(hi.p, 1.0);
    EXPECT_EQ(hi.q, 0.0);
}

TEST(NumericLibrary, LogGammaAndLogBeta) {
    EXPECT_NEAR(std::exp(lnGamma(5.0)), 24.0, 24.0 * 4e-15);
    const double five = 5.0;
    EXPECT_EQ(lnGamma(&five), lnGamma(5.0));
    EXPECT_NEAR(lnGamma(0.5), 0.5 * std::log(M_PI), 1e-15);
    EXPECT_NEAR(lnGamma(1.0), 0.0, 1e-16);
    EXPECT_NEAR(lnGamma(2.0), 0.0, 1e-16);
    // ln 170! from the factorial product.
    long double logFact = 0.0L;
    for (int i = 2; i < 171; ++i) logFact += std::log(static_cast<long double>(i));
    EXPECT_LT(relErr(lnGamma(171.0), static_cast<double>(logFact)), 1e-15);

    for (double a : {0.1, 0.5, 1.0, 2.5, 7.0, 40.0, 300.0}) {
        for (double b : {0.2, 1.0, 3.3, 12.0, 150.0}) {
            const double sums = lnGamma(a) + lnGamma(b) - lnGamma(a + b);
            // The sum cancels: its error follows the size of its terms.
            const double scale = std::fabs(lnGamma(a)) + std::fabs(lnGamma(b)) + std::fabs(lnGamma(a + b));
            EXPECT_NEAR(lnBeta(a, b), sums, 1e-15 * scale + 1e-15) << a << " " << b;
        }
    }
    // B(1, b) = 1/b; B(2, 3) = 1/12.
    EXPECT_NEAR(lnBeta(1.0, 4.0), -std::log(4.0), 1e-15);
    EXPECT_NEAR(lnBeta(2.0, 3.0), -std::log(12.0), 1e-15);
    // Where B underflows the logarithm is still finite and right.
    const double big = 1e6;
    const double sums = lnGamma(big) + lnGamma(big) - lnGamma(2 * big);
    EXPECT_LT(relErr(lnBeta(&big, &big), sums), 1e-12);
    EXPECT_TRUE(std::isfinite(lnBeta(big, big)));
}

// Every check of the table, in its order, with p and q left as they were.
TEST(NumericLibrary, StatusAndBoundTable) {
    auto expectRefused = [](const Out& o, int status, double bound) {
        EXPECT_EQ(o.status, status);
        EXPECT_EQ(o.bound, bound);
        EXPECT_EQ(o.p, 42.0);
        EXPECT_EQ(o.q, 43.0);
    };
    for (int which : {0, -3}) {
        expectRefused(normal(0, 0, 1, which), -1, 1.0);
        expectRefused(gammaCdf(1, 1, 1, which), -1, 1.0);
        expectRefused(betaCdf(0.5, 0.5, 1, 1, which), -1, 1.0);
    }
    for (int which : {2, 4, 5, 17}) {
        expectRefused(normal(0, 0, 1, which), -1, 4.0);
        expectRefused(gammaCdf(1, 1, 1, which), -1, 4.0);
        expectRefused(betaCdf(0.5, 0.5, 1, 1, which), -1, 4.0);
    }
    const double nan = std::numeric_limits<double>::quiet_NaN();
    expectRefused(normal(0, 0, 0.0), -6, 0.0);
    expectRefused(normal(0, 0, -1.0), -6, 0.0);
    expectRefused(normal(0, 0, nan), -6, 0.0);

    expectRefused(gammaCdf(-1e-300, 1, 1), -4, 0.0);
    expectRefused(gammaCdf(-1, -1, -1), -4, 0.0);  // first failing check wins
    expectRefused(gammaCdf(1, 0.0, -1), -5, 0.0);
    expectRefused(gammaCdf(1, nan, 1), -5, 0.0);
    expectRefused(gammaCdf(1, 1, 0.0), -6, 0.0);

    expectRefused(betaCdf(-0.1, 1.1, 1, 1), -4, 0.0);
    expectRefused(betaCdf(1.1, -0.1, 1, 1), -4, 1.0);
    expectRefused(betaCdf(0.5, -0.5, 1, 1), -5, 0.0);
    expectRefused(betaCdf(0.5, 1.5, 1, 1), -5, 1.0);
    expectRefused(betaCdf(0.5, 0.5, 0.0, -1), -6, 0.0);
    expectRefused(betaCdf(0.5, 0.5, 1, 0.0), -7, 0.0);
    expectRefused(betaCdf(0.3, 0.6, 1, 1), 4, 0.0);
    expectRefused(betaCdf(0.5, 0.6, 1, 1), 4, 1.0);

    // Within 3 eps of x + y = 1 is accepted.
    const double eps = std::numeric_limits<double>::epsilon();
    EXPECT_EQ(betaCdf(0.5, 0.5 + 2.5 * eps, 1, 1).status, 0);
    EXPECT_EQ(betaCdf(0.5, 0.5 + 4 * eps, 1, 1).status, 4);
}

} // namespace
} // namespace tarvex
