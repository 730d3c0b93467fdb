// mean, stdDev, cumulative and density of every class against closed forms
// and Boost.Math, the kept quirks included.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

#include <boost/math/distributions/beta.hpp>
#include <boost/math/distributions/exponential.hpp>
#include <boost/math/distributions/gamma.hpp>
#include <boost/math/distributions/lognormal.hpp>
#include <boost/math/distributions/normal.hpp>
#include <boost/math/distributions/triangular.hpp>
#include <boost/math/distributions/weibull.hpp>
#include <boost/math/quadrature/gauss_kronrod.hpp>
#include <boost/math/quadrature/tanh_sinh.hpp>

#include "factors/Beta.h"
#include "factors/Dummy.h"
#include "factors/Exponential.h"
#include "factors/Gamma.h"
#include "factors/LogNormal.h"
#include "factors/LogUniform.h"
#include "factors/Triangular.h"
#include "factors/Weibull.h"

namespace tarvex {
namespace {

namespace bm = boost::math;

double integrate(const std::function<double(double)>& f, double a, double b) {
    // tanh-sinh copes with the integrable end singularities of gamma, beta and
    // Weibull densities; the infinite tails go to Gauss-Kronrod.
    bm::quadrature::tanh_sinh<double> ts;
    if (std::isinf(a)) return bm::quadrature::gauss_kronrod<double, 61>::integrate(f, a, b, 15, 1e-13);
    if (std::isinf(b)) {
        return ts.integrate(f, a, a + 1.0) + bm::quadrature::gauss_kronrod<double, 61>::integrate(f, a + 1.0, b, 15, 1e-13);
    }
    return ts.integrate(f, a, b);
}

template <class F, class Dist>
void expectCdfMatches(const F& factor, const Dist& dist, double shift, double scale, std::initializer_list<double> xs) {
    for (double x : xs) {
        EXPECT_NEAR(factor.cumulative(x), bm::cdf(dist, (x - shift) / scale), 1e-14) << factor.typeName() << " x=" << x;
    }
}

TEST(DistributionFunctions, NormalAndLogNormal) {
    Normal n;
    ASSERT_EQ(n.setMean(3.0), 1);
    ASSERT_EQ(n.setStdDeviation(2.0), 1);
    EXPECT_EQ(n.mean(), 3.0);
    EXPECT_EQ(n.stdDev(), 2.0);
    bm::normal_distribution<> nd(3.0, 2.0);
    for (double x : {-5.0, 0.0, 3.0, 4.4, 11.0}) {
        EXPECT_NEAR(n.cumulative(x), bm::cdf(nd, x), 1e-15);
        EXPECT_NEAR(n.density(x), bm::pdf(nd, x), 1e-15);
    }
    EXPECT_NEAR(integrate([&](double x) { return n.density(x); }, -INFINITY, INFINITY), 1.0, 1e-12);

    LogNormal ln;
    ASSERT_EQ(ln.setMean(0.5), 1);
    ASSERT_EQ(ln.setStdDeviation(0.75), 1);
    bm::lognormal_distribution<> lnd(0.5, 0.75);
    EXPECT_NEAR(ln.mean(), bm::mean(lnd), 1e-13);
    EXPECT_NEAR(ln.stdDev(), bm::standard_deviation(lnd), 1e-13);
    EXPECT_EQ(ln.cumulative(-1.0), 0.0);
    EXPECT_EQ(ln.density(-1.0), 0.0);
    EXPECT_EQ(ln.cumulative(0.0), 0.0);
    for (double x : {0.1, 1.0, 1.6487, 5.0, 30.0}) {
        EXPECT_NEAR(ln.cumulative(x), bm::cdf(lnd, x), 1e-15);
        EXPECT_NEAR(ln.density(x), bm::pdf(lnd, x), 1e-14);
    }
    EXPECT_NEAR(integrate([&](double x) { return ln.density(x); }, 0.0, INFINITY), 1.0, 1e-10);

    // A refused routine shows as -1.0.
    ASSERT_EQ(n.setStdDeviation(0.0), 1);
    EXPECT_EQ(n.cumulative(1.0), -1.0);
    ASSERT_EQ(ln.setStdDeviation(0.0), 1);
    EXPECT_EQ(ln.cumulative(1.0), -1.0);
    EXPECT_EQ(ln.cumulative(-1.0), 0.0);  // below 0 the routine is not called
}

TEST(DistributionFunctions, ExponentialGammaWeibull) {
    Exponential e;
    ASSERT_EQ(e.setLambda(2.5), 1);
    ASSERT_EQ(e.setB(1.0), 1);
    bm::exponential_distribution<> ed(2.5);
    EXPECT_NEAR(e.mean(), bm::mean(ed) + 1.0, 1e-15);
    EXPECT_NEAR(e.stdDev(), bm::standard_deviation(ed), 1e-15);
    expectCdfMatches(e, ed, 1.0, 1.0, {1.0, 1.3, 2.0, 5.0});
    EXPECT_EQ(e.cumulative(0.99), 0.0);
    EXPECT_EQ(e.density(0.99), 0.0);
    EXPECT_EQ(e.density(1.0), 2.5);
    EXPECT_NEAR(integrate([&](double x) { return e.density(x); }, 1.0, INFINITY), 1.0, 1e-12);

    for (double r : {0.5, 1.0, 3.7}) {
        Gamma g;
        ASSERT_EQ(g.setR(r), 1);
        ASSERT_EQ(g.setLambda(2.0), 1);
        ASSERT_EQ(g.setB(0.5), 1);
        bm::gamma_distribution<> gd(r, 0.5);  // Boost takes a scale: 1/lambda
        EXPECT_NEAR(g.mean(), bm::mean(gd) + 0.5, 1e-14);
        EXPECT_NEAR(g.stdDev(), bm::standard_deviation(gd), 1e-14);
        expectCdfMatches(g, gd, 0.5, 1.0, {0.6, 1.0, 2.5, 6.0});
        EXPECT_EQ(g.cumulative(0.4), 0.0);
        EXPECT_EQ(g.density(0.4), 0.0);
        EXPECT_NEAR(g.density(1.7), bm::pdf(gd, 1.2), 1e-14);
        // With r < 1 the density is unbounded at b, and x - b cannot resolve the
        // first 1e-16 above it: about 1e-8 of mass is out of the quadrature's reach.
        EXPECT_NEAR(integrate([&](double x) { return g.density(x); }, 0.5, INFINITY), 1.0, 5e-8) << r;
    }

    for (double beta : {0.8, 1.0, 2.0, 3.5}) {
        Weibull w;
        ASSERT_EQ(w.setBeta(beta), 1);
        ASSERT_EQ(w.setN(1.5), 1);
        ASSERT_EQ(w.setB(2.0), 1);
        bm::weibull_distribution<> wd(beta, 1.5);
        EXPECT_NEAR(w.mean(), bm::mean(wd) + 2.0, 1e-13);
        EXPECT_NEAR(w.stdDev(), bm::standard_deviation(wd), 1e-13);
        expectCdfMatches(w, wd, 2.0, 1.0, {2.01, 2.5, 3.0, 6.0});
        EXPECT_EQ(w.cumulative(2.0), 0.0);
        EXPECT_NEAR(w.density(3.0), bm::pdf(wd, 1.0), 1e-14);
        EXPECT_NEAR(integrate([&](double x) { return w.density(x); }, 2.0, INFINITY), 1.0, 1e-9) << beta;
    }
    // Below b the Weibull density is not tested against b: with shape 3 it is
    // (3/1) (-0.5)^2 exp(0.125) at x = b - 0.5.
    Weibull w3;
    ASSERT_EQ(w3.setBeta(3.0), 1);
    ASSERT_EQ(w3.setB(1.0), 1);
    EXPECT_NEAR(w3.density(0.5), 3.0 * 0.25 * std::exp(0.125), 1e-15);
}

TEST(DistributionFunctions, BetaKeepsItsMeanWithoutLowerBound) {
    Beta b;
    ASSERT_EQ(b.setParameters(2.0, 2.0, 10.0, 20.0), 1);
    EXPECT_EQ(b.mean(), 5.0);  // range * alfa / (alfa + beta), lower not added
    ASSERT_EQ(b.setParameters(0.7, 2.5, -1.0, 3.0), 1);
    bm::beta_distribution<> bd(0.7, 2.5);
    EXPECT_NEAR(b.mean(), 4.0 * bm::mean(bd), 1e-15);
    EXPECT_NEAR(b.stdDev(), 4.0 * bm::standard_deviation(bd), 1e-15);
    expectCdfMatches(b, bd, -1.0, 4.0, {-1.0, -0.9, 0.0, 1.5, 2.99, 3.0});
    EXPECT_EQ(b.cumulative(-1.01), 0.0);
    EXPECT_EQ(b.cumulative(3.01), 1.0);
    EXPECT_EQ(b.density(3.01), 0.0);
    EXPECT_NEAR(b.density(0.2), bm::pdf(bd, 0.3) / 4.0, 1e-14);
    EXPECT_NEAR(integrate([&](double x) { return b.density(x); }, -1.0, 3.0), 1.0, 1e-9);
}

TEST(DistributionFunctions, Triangular) {
    Triangular t;
    ASSERT_EQ(t.setParameters(-1.0, 0.5, 4.0), 1);
    bm::triangular_distribution<> td(-1.0, 0.5, 4.0);
    EXPECT_NEAR(t.mean(), bm::mean(td), 1e-14);
    EXPECT_NEAR(t.stdDev(), bm::standard_deviation(td), 1e-14);
    for (double x : {-2.0, -1.0, 0.0, 0.5, 1.0, 3.9, 4.0, 5.0}) {
        EXPECT_NEAR(t.cumulative(x), bm::cdf(td, std::clamp(x, -1.0, 4.0)), 1e-15) << x;
        EXPECT_NEAR(t.density(x), x < -1.0 || x > 4.0 ? 0.0 : bm::pdf(td, x), 1e-15) << x;
    }
    EXPECT_NEAR(integrate([&](double x) { return t.density(x); }, -1.0, 0.5) +
                    integrate([&](double x) { return t.density(x); }, 0.5, 4.0),
                1.0, 1e-14);
    Triangular def;
    EXPECT_NEAR(def.mean(), 1.0, 1e-15);
    EXPECT_NEAR(def.stdDev(), std::sqrt(1.0 / 6.0), 1e-15);
}

TEST(DistributionFunctions, PiecewiseUniformAndLogUniform) {
    Uniform u;  // [0,1] weight 0.25, gap, [2,4] weight 0.75
    u.intervalAt(0)->weight = 0.25;
    ASSERT_EQ(u.addInterval(std::make_unique<Interval>(2.0, 4.0, 0.75)), 1);
    // E[X] = 0.25 * 0.5 + 0.75 * 3; E[X^2] = 0.25 / 3 + 0.75 * (64 - 8) / 6.
    EXPECT_NEAR(u.mean(), 2.375, 1e-15);
    EXPECT_NEAR(u.stdDev(), std::sqrt(0.25 / 3.0 + 7.0 - 2.375 * 2.375), 1e-15);
    EXPECT_EQ(u.cumulative(-0.1), 0.0);
    EXPECT_NEAR(u.cumulative(0.4), 0.1, 1e-16);
    EXPECT_EQ(u.cumulative(1.5), 0.25);
    EXPECT_NEAR(u.cumulative(3.0), 0.625, 1e-16);
    EXPECT_EQ(u.cumulative(4.0), 1.0);
    EXPECT_EQ(u.cumulative(9.0), 1.0);
    EXPECT_EQ(u.density(0.5), 0.25);
    EXPECT_EQ(u.density(1.5), 0.0);
    EXPECT_EQ(u.density(3.0), 0.375);
    EXPECT_EQ(u.density(4.5), 0.0);
    EXPECT_NEAR(integrate([&](double x) { return u.density(x); }, 0.0, 1.0) +
                    integrate([&](double x) { return u.density(x); }, 2.0, 4.0),
                1.0, 1e-14);

    LogUniform lu;  // [1, e]
    const double e = std::exp(1.0);
    EXPECT_NEAR(lu.mean(), e - 1.0, 1e-15);
    EXPECT_NEAR(lu.stdDev(), std::sqrt((e * e - 1.0) / 2.0 - (e - 1.0) * (e - 1.0)), 1e-15);
    EXPECT_NEAR(lu.cumulative(std::sqrt(e)), 0.5, 1e-15);
    EXPECT_NEAR(lu.density(2.0), 0.5, 1e-15);
    EXPECT_EQ(lu.density(0.5), 0.0);
    ASSERT_EQ(lu.addInterval(std::make_unique<LogInterval>(10.0, 100.0, 1.0)), 1);
    lu.intervalAt(0)->weight = 0.5;
    lu.intervalAt(1)->weight = 0.5;
    EXPECT_NEAR(lu.cumulative(std::sqrt(1000.0)), 0.75, 1e-15);
    EXPECT_NEAR(integrate([&](double x) { return lu.density(x); }, 1.0, e) +
                    integrate([&](double x) { return lu.density(x); }, 10.0, 100.0),
                1.0, 1e-14);
}

TEST(DistributionFunctions, DummyYieldsZero) {
    Dummy d;
    EXPECT_EQ(d.prepareInverse(), 1);
    EXPECT_TRUE(d.table().empty());
    EXPECT_EQ(d.mean(), 0.0);
    EXPECT_EQ(d.stdDev(), 0.0);
    EXPECT_EQ(d.cumulative(3.0), 0.0);
    EXPECT_EQ(d.density(3.0), 0.0);
    EXPECT_EQ(d.inverse(0.3), 0.0);
}

} // namespace
} // namespace tarvex
