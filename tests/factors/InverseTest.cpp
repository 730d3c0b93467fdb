// The inverse cumulative table and the inverse of every class, against Boost
// cumulatives with the truncation rescaling applied.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <string>

#include <boost/math/distributions/beta.hpp>
#include <boost/math/distributions/exponential.hpp>
#include <boost/math/distributions/gamma.hpp>
#include <boost/math/distributions/lognormal.hpp>
#include <boost/math/distributions/normal.hpp>
#include <boost/math/distributions/triangular.hpp>
#include <boost/math/distributions/weibull.hpp>

#include "factors/Beta.h"
#include "factors/Discrete.h"
#include "factors/Exponential.h"
#include "factors/Gamma.h"
#include "factors/LogNormal.h"
#include "factors/LogUniform.h"
#include "factors/Triangular.h"
#include "factors/Weibull.h"

namespace tarvex {
namespace {

namespace bm = boost::math;

struct Case {
    std::string label;
    std::unique_ptr<Distribution> factor;
    std::function<double(double)> cdf;  // independent reference
};

template <class Dist>
Case boostCase(std::string label, std::unique_ptr<Distribution> f, Dist d, double shift = 0.0, double scale = 1.0) {
    return {std::move(label), std::move(f), [=](double x) { return bm::cdf(d, std::clamp((x - shift) / scale, bm::support(d).first, bm::support(d).second)); }};
}

std::vector<Case> allCases() {
    std::vector<Case> cases;
    cases.push_back(boostCase("Normal(0,1)", std::make_unique<Normal>(), bm::normal_distribution<>(0.0, 1.0)));
    {
        auto n = std::make_unique<Normal>();
        EXPECT_EQ(n->setMean(5.0), 1);
        EXPECT_EQ(n->setStdDeviation(0.3), 1);
        EXPECT_EQ(n->setTruncations(0.05, 0.95), 1);
        cases.push_back(boostCase("Normal(5,0.3) [0.05,0.95]", std::move(n), bm::normal_distribution<>(5.0, 0.3)));
    }
    {
        auto ln = std::make_unique<LogNormal>();
        EXPECT_EQ(ln->setMean(0.5), 1);
        EXPECT_EQ(ln->setStdDeviation(0.75), 1);
        cases.push_back(boostCase("LogNormal(0.5,0.75)", std::move(ln), bm::lognormal_distribution<>(0.5, 0.75)));
    }
    {
        auto e = std::make_unique<Exponential>();
        EXPECT_EQ(e->setLambda(2.5), 1);
        EXPECT_EQ(e->setB(1.0), 1);
        cases.push_back(boostCase("Exponential(2.5,b=1)", std::move(e), bm::exponential_distribution<>(2.5), 1.0));
    }
    for (auto [r, lambda, b] : {std::tuple{0.5, 2.0, 0.0}, {3.7, 0.5, 1.5}}) {
        auto g = std::make_unique<Gamma>();
        EXPECT_EQ(g->setR(r), 1);
        EXPECT_EQ(g->setLambda(lambda), 1);
        EXPECT_EQ(g->setB(b), 1);
        g->setRightTruncation(0.99);
        char label[64];
        std::snprintf(label, sizeof label, "Gamma(%g,%g,b=%g)", r, lambda, b);
        cases.push_back(boostCase(label, std::move(g), bm::gamma_distribution<>(r, 1.0 / lambda), b));
    }
    for (auto [shape, n, b] : {std::tuple{0.8, 1.5, 2.0}, {3.5, 1.0, 0.0}}) {
        auto w = std::make_unique<Weibull>();
        EXPECT_EQ(w->setBeta(shape), 1);
        EXPECT_EQ(w->setN(n), 1);
        EXPECT_EQ(w->setB(b), 1);
        char label[64];
        std::snprintf(label, sizeof label, "Weibull(%g,%g,b=%g)", shape, n, b);
        cases.push_back(boostCase(label, std::move(w), bm::weibull_distribution<>(shape, n), b));
    }
    for (auto [a, bb, lo, up] : {std::tuple{0.7, 2.5, -1.0, 3.0}, {2.0, 2.0, 10.0, 20.0}}) {
        auto be = std::make_unique<Beta>();
        EXPECT_EQ(be->setParameters(a, bb, lo, up), 1);
        char label[64];
        std::snprintf(label, sizeof label, "Beta(%g,%g,[%g,%g])", a, bb, lo, up);
        cases.push_back(boostCase(label, std::move(be), bm::beta_distribution<>(a, bb), lo, up - lo));
    }
    {
        auto t = std::make_unique<Triangular>();
        EXPECT_EQ(t->setParameters(-1.0, 0.5, 4.0), 1);
        cases.push_back(boostCase("Triangular(-1,0.5,4)", std::move(t), bm::triangular_distribution<>(-1.0, 0.5, 4.0)));
    }
    cases.push_back({"Uniform[0,1]", std::make_unique<Uniform>(), [](double x) { return std::clamp(x, 0.0, 1.0); }});
    {
        auto u = std::make_unique<Uniform>();
        u->intervalAt(0)->weight = 0.25;
        EXPECT_EQ(u->addInterval(std::make_unique<Interval>(2.0, 4.0, 0.75)), 1);
        cases.push_back({"Uniform[0,1]0.25+[2,4]0.75", std::move(u), [](double x) {
                             if (x < 1.0) return std::max(x, 0.0) * 0.25;
                             if (x < 2.0) return 0.25;
                             return 0.25 + std::min(x - 2.0, 2.0) / 2.0 * 0.75;
                         }});
    }
    cases.push_back({"LogUniform[1,e]", std::make_unique<LogUniform>(),
                     [](double x) { return std::clamp(std::log(x), 0.0, 1.0); }});
    return cases;
}

// Truncated classes search to 1e-6 of the probability, the others to 1e-11.
double probabilityTolerance(const Distribution& f, double v) {
    const bool truncated = dynamic_cast<const TruncatedDistribution*>(&f) != nullptr;
    return (truncated ? 1.0e-6 : 1.0e-11) * v + 2e-11;
}

double rescaled(const Distribution& f, double u) {
    if (auto* t = dynamic_cast<const TruncatedDistribution*>(&f)) {
        return (t->getRightTruncation() - t->getLeftTruncation()) * u + t->getLeftTruncation();
    }
    return u;
}

TEST(Inverse, TableHasPercentilesAndEnds) {
    for (Case& c : allCases()) {
        Distribution& f = *c.factor;
        ASSERT_EQ(f.prepareInverse(), 1) << c.label;
        ASSERT_EQ(f.table().size(), 101u) << c.label;
        EXPECT_LE(f.table()[0].p, 1e-11) << c.label;
        EXPECT_NEAR(f.table()[100].p, 1.0, 1e-11) << c.label;
        double target = 0.0;
        for (int k = 1; k <= 99; ++k) {
            target += 0.01;
            EXPECT_GE(f.table()[k].p, target) << c.label << " k=" << k;
            EXPECT_LE(f.table()[k].p, target + 2e-11) << c.label << " k=" << k;
            EXPECT_LE(f.table()[k - 1].x, f.table()[k].x) << c.label << " k=" << k;
            // The point is the reference percentile, up to the search tolerance.
            EXPECT_NEAR(c.cdf(f.table()[k].x), target, 3e-11) << c.label << " k=" << k;
        }
        EXPECT_LE(f.table()[99].x, f.table()[100].x) << c.label;
        f.clearTable();
        EXPECT_TRUE(f.table().empty());
    }
}

TEST(Inverse, MatchesReferenceQuantilesOverAGrid) {
    for (Case& c : allCases()) {
        Distribution& f = *c.factor;
        ASSERT_EQ(f.prepareInverse(), 1) << c.label;
        std::vector<double> us;
        for (int k = 0; k < 1000; ++k) us.push_back((k + 0.5) / 1000.0);
        for (double u : {1e-6, 0.01, 0.5, 0.73, 0.99, 1.0 - 1e-6}) us.push_back(u);
        for (double u : us) {
            const double v = rescaled(f, u);
            if (c.label.rfind("Uniform[0,1]0.25", 0) == 0 && std::fabs(v - 0.25) < 1e-6) continue;  // the gap
            const double x = f.inverse(u);
            const double tol = probabilityTolerance(f, v);
            // x is the v-quantile of the reference law up to the search tolerance...
            EXPECT_NEAR(c.cdf(x), v, tol) << c.label << " u=" << u;
            // ...and the factor's own cumulative returns to v.
            EXPECT_NEAR(f.cumulative(x), v, tol) << c.label << " u=" << u;
        }
        f.clearTable();
    }
}

TEST(Inverse, EdgeCases) {
    Uniform u;
    ASSERT_EQ(u.prepareInverse(), 1);
    EXPECT_NEAR(u.inverse(0.5), 0.5, 1e-9);
    EXPECT_EQ(u.inverse(1.0), u.table()[100].x);
    // A u on a table point returns that point.
    EXPECT_EQ(u.inverse(u.table()[37].p), u.table()[37].x);

    // Truncation keeps values inside the truncated span.
    Normal n;
    ASSERT_EQ(n.prepareInverse(), 1);
    const double q001 = bm::quantile(bm::normal_distribution<>(), 0.001);
    EXPECT_NEAR(n.inverse(0.0), q001, 1e-5);
    // 1e-6 of probability at the upper end is 3e-4 in x, where the density is 0.0034.
    EXPECT_NEAR(n.inverse(std::nextafter(1.0, 0.0)), -q001, 5e-4);
    EXPECT_NEAR(q001, -3.0902, 1e-4);

    // A lower end at b: u near 0 maps close to b.
    Exponential e;
    ASSERT_EQ(e.setB(2.0), 1);
    ASSERT_EQ(e.prepareInverse(), 1);
    EXPECT_NEAR(e.inverse(1e-9), 2.0, 1e-6);
    Gamma g;
    ASSERT_EQ(g.setB(1.0), 1);
    ASSERT_EQ(g.setR(2.0), 1);
    ASSERT_EQ(g.prepareInverse(), 1);
    EXPECT_NEAR(g.inverse(0.0), 1.0, 1e-5);
    Weibull w;
    ASSERT_EQ(w.setB(3.0), 1);
    ASSERT_EQ(w.prepareInverse(), 1);
    EXPECT_NEAR(w.inverse(1e-9), 3.0, 1e-6);

    // The Beta mean leaves out the lower bound; the search still finds 15.
    Beta b;
    ASSERT_EQ(b.setParameters(2.0, 2.0, 10.0, 20.0), 1);
    ASSERT_EQ(b.prepareInverse(), 1);
    EXPECT_NEAR(b.inverse(0.5), 15.0, 1e-9);

    // Below a shifted lower end x - b cannot come closer than about 1e-16, so
    // a shape well under 1, whose cumulative there is still 1e-8, never gets
    // its lower end under 1e-11: the build gives up. At b = 0 it succeeds.
    Gamma steep;
    ASSERT_EQ(steep.setR(0.5), 1);
    ASSERT_EQ(steep.setB(0.5), 1);
    EXPECT_EQ(steep.prepareInverse(), 0);
    steep.clearTable();
    ASSERT_EQ(steep.setB(0.0), 1);
    EXPECT_EQ(steep.prepareInverse(), 1);

    // A zero standard deviation cannot be bracketed.
    Normal flat;
    ASSERT_EQ(flat.setStdDeviation(0.0), 1);
    EXPECT_EQ(flat.prepareInverse(), 0);
    LogNormal flatLog;
    ASSERT_EQ(flatLog.setStdDeviation(0.0), 1);
    EXPECT_EQ(flatLog.prepareInverse(), 0);
}

// A Normal whose table is laid out by hand, at points where its own search
// could not place one.
struct HandTableNormal : Normal {
    void addTablePoint(double x) { table_.push_back({x, cumulative(x)}); }
};

// The column form runs several searches interleaved, on an inlined copy of
// the cumulative where the class has a closed form: every value must be the
// very double the one-by-one inverse gives, whatever the batch size and
// wherever u falls (ends, table points, exact percentiles, the gap).
TEST(Inverse, ColumnFormMatchesOneByOneBitForBit) {
    std::vector<Case> cases = allCases();
    {
        auto u = std::make_unique<Uniform>();
        u->clear();
        ASSERT_EQ(u->addInterval(std::make_unique<Interval>(-5.0, -4.0, 0.2)), 1);
        ASSERT_EQ(u->addInterval(std::make_unique<Interval>(-4.0, 0.5, 0.3)), 1);
        ASSERT_EQ(u->addInterval(std::make_unique<Interval>(7.0, 7.25, 0.5)), 1);
        cases.push_back({"Uniform three intervals", std::move(u), nullptr});
    }
    {
        auto lu = std::make_unique<LogUniform>();
        lu->clear();
        ASSERT_EQ(lu->addInterval(std::make_unique<LogInterval>(0.01, 0.1, 0.6)), 1);
        ASSERT_EQ(lu->addInterval(std::make_unique<LogInterval>(10.0, 1000.0, 0.4)), 1);
        cases.push_back({"LogUniform two decades apart", std::move(lu), nullptr});
    }
    {
        auto ln = std::make_unique<LogNormal>();
        ASSERT_EQ(ln->setMean(1.0), 1);
        ASSERT_EQ(ln->setStdDeviation(0.4), 1);
        ASSERT_EQ(ln->setTruncations(0.2, 0.6), 1);
        cases.push_back({"LogNormal truncated", std::move(ln), nullptr});
    }
    for (Case& c : cases) {
        Distribution& f = *c.factor;
        ASSERT_EQ(f.prepareInverse(), 1) << c.label;
        std::vector<double> us = {0.0, 1e-300, 1e-12, 0.001, 0.01, 0.25, 0.5, 0.999, std::nextafter(1.0, 0.0), 1.0};
        for (int k = 0; k <= 100; ++k) {
            us.push_back(k / 100.0);
            us.push_back(f.table()[size_t(k)].p);
        }
        uint32_t state = 2024u;
        for (int k = 0; k < 3000; ++k) {
            state = state * 1664525u + 1013904223u;
            us.push_back((state >> 8) / 16777216.0);
        }
        std::vector<double> expected;
        for (double u : us) expected.push_back(f.inverse(u));
        // Whole column, then batches smaller than the searches in flight.
        std::vector<double> column = us;
        f.inverseMany(column.data(), int64_t(column.size()));
        for (size_t i = 0; i < us.size(); ++i)
            ASSERT_EQ(std::bit_cast<uint64_t>(column[i]), std::bit_cast<uint64_t>(expected[i]))
                << c.label << " u=" << us[i] << " many=" << column[i] << " one=" << expected[i];
        for (int64_t batch : {1, 3, 5}) {
            std::vector<double> values(us.begin(), us.begin() + 40);
            for (int64_t at = 0; at < 40; at += batch) f.inverseMany(values.data() + at, std::min<int64_t>(batch, 40 - at));
            for (size_t i = 0; i < values.size(); ++i)
                ASSERT_EQ(values[i], expected[i]) << c.label << " batch " << batch << " u=" << us[i];
        }
        f.inverseMany(nullptr, 0);  // an empty batch touches nothing
        // Unprepared: every value maps to 0, as one by one.
        f.clearTable();
        std::vector<double> unprepared = {0.1, 0.5, 0.9};
        f.inverseMany(unprepared.data(), 3);
        EXPECT_EQ(unprepared, std::vector<double>(3, 0.0)) << c.label;
    }
}

// A cumulative that jumps between two adjacent doubles can never close the
// truncated search's bracket; the search stops at the jump instead of looping,
// one by one and in the interleaved column form.
TEST(Inverse, TruncatedSearchEndsAtAJump) {
    HandTableNormal step;
    EXPECT_EQ(step.setMean(1.0), 1);
    EXPECT_EQ(step.setStdDeviation(1e-20), 1);  // far below the spacing of doubles near 1
    ASSERT_EQ(step.setTruncations(0.1, 0.9), 1);
    for (int k = 0; k <= 100; ++k) step.addTablePoint(k * 0.02);  // the jump at 1.0 lies in cell 50
    EXPECT_NEAR(step.inverse(0.5), 1.0, 4e-16);  // v = 0.5
    EXPECT_EQ(step.cumulative(std::nextafter(1.0, 0.0)), 0.0);
    EXPECT_EQ(step.cumulative(std::nextafter(1.0, 2.0)), 1.0);
    // Cells 49 and 50 both end at the jump, from below and from above.
    std::vector<double> values = {0.5, 0.499, 0.5, 0.501, 0.4995, 0.5, 0.5005, 0.5, 0.5};
    step.inverseMany(values.data(), int64_t(values.size()));
    for (double x : values) EXPECT_NEAR(x, 1.0, 4e-16);
}

TEST(Inverse, PrepareAppendsUntilCleared) {
    Triangular t;
    ASSERT_EQ(t.prepareInverse(), 1);
    const double before = t.inverse(0.3);
    ASSERT_EQ(t.prepareInverse(), 1);
    EXPECT_EQ(t.table().size(), 202u);
    EXPECT_EQ(t.inverse(0.3), before);  // the first table still answers
    t.clearTable();
    EXPECT_TRUE(t.table().empty());
    EXPECT_EQ(t.inverse(0.3), 0.0);  // unprepared: no mapping, and no crash
    ASSERT_EQ(t.prepareInverse(), 1);
    EXPECT_EQ(t.inverse(0.3), before);
    // The default triangle is symmetric around 1: F^-1(0.3) = sqrt(0.6).
    EXPECT_NEAR(before, std::sqrt(0.6), 1e-10);
}

} // namespace
} // namespace tarvex
