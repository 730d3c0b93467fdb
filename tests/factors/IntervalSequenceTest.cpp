// The interval and point sequences of Uniform, LogUniform and Discrete.
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "factors/Discrete.h"
#include "factors/LogUniform.h"

namespace tarvex {
namespace {

std::unique_ptr<Interval> iv(double l, double r, double w) {
    return std::make_unique<Interval>(l, r, w);
}

Discrete points(std::initializer_list<std::pair<double, double>> pts) {
    Discrete d;
    d.clear();
    for (auto [x, w] : pts) EXPECT_EQ(d.addPoint(iv(x, x + 1.0, w)), 1);
    return d;
}

TEST(IntervalSequence, CountAccessRemoveClear) {
    Uniform u;
    EXPECT_EQ(u.addInterval(iv(1.0, 2.0, 0.5)), 1);
    EXPECT_EQ(u.addInterval(iv(3.0, 4.0, 0.5)), 1);
    EXPECT_EQ(u.count(), 3);
    EXPECT_EQ(u.intervalAt(1)->left, 1.0);
    EXPECT_EQ(u.intervalAt(7), nullptr);
    EXPECT_EQ(u.intervalAt(-1), nullptr);
    u.removeAt(9);  // out of range: nothing happens
    EXPECT_EQ(u.count(), 3);
    u.removeAt(0);
    EXPECT_EQ(u.count(), 2);
    EXPECT_EQ(u.intervalAt(0)->left, 1.0);
    u.clear();
    EXPECT_EQ(u.count(), 0);
}

TEST(IntervalSequence, UniformOverlapRuleAndLimit) {
    Uniform u;  // [0, 1]
    EXPECT_EQ(u.addInterval(iv(0.5, 2.0, 0.5)), 0);
    EXPECT_EQ(u.errorText(), "Interval to insert overloads previous intervals stored");
    EXPECT_EQ(u.count(), 1);
    EXPECT_EQ(u.addInterval(iv(1.0, 2.0, 0.5)), 1);  // touching
    EXPECT_EQ(u.addInterval(iv(5.0, 6.0, 0.5)), 1);  // with a gap
    EXPECT_EQ(u.addInterval(iv(-9.0, -8.0, 0.5)), 0);  // before the last one
    EXPECT_EQ(u.count(), 3);

    u.clear();
    for (int i = 0; i < 10001; ++i) ASSERT_EQ(u.addInterval(iv(i, i + 1.0, 1e-4)), 1) << i;
    EXPECT_EQ(u.addInterval(iv(20000.0, 20001.0, 1e-4)), 0);  // the 10002nd
    EXPECT_EQ(u.errorText(), "Too much intervals stored");
    EXPECT_EQ(u.count(), 10001);
}

TEST(IntervalSequence, DiscreteDuplicateAndLimit) {
    Discrete d;  // points 0 and 1
    EXPECT_EQ(d.addPoint(iv(1.0, 5.0, 0.1)), 0);
    EXPECT_EQ(d.errorText(), "The new point already exists");
    EXPECT_EQ(d.addPoint(iv(-1.0, 0.0, 0.1)), 1);  // no order of its own
    EXPECT_EQ(d.intervalAt(2)->left, -1.0);
    d.clear();
    for (int i = 0; i < 10001; ++i) ASSERT_EQ(d.addPoint(iv(i, i + 1.0, 1e-4)), 1);
    EXPECT_EQ(d.addPoint(iv(-5.0, -4.0, 1e-4)), 0);
    EXPECT_EQ(d.errorText(), "Too much intervals stored");
}

TEST(IntervalSequence, CheckWeightsThreshold) {
    Discrete d = points({{1.0, 0.5}, {2.0, 0.5 + 9e-14}});
    EXPECT_EQ(d.checkWeights(), 1);
    EXPECT_EQ(d.errorText(), "No errors");
    d.intervalAt(1)->weight = 0.5 + 2e-13;
    EXPECT_EQ(d.checkWeights(), 0);
    EXPECT_EQ(d.errorText(), "Sum of weights not equal to 1");
    Uniform u;
    u.intervalAt(0)->weight = 1.0 - 2e-13;
    EXPECT_EQ(u.checkWeights(), 0);
    EXPECT_EQ(u.errorText(), "Sum of weights not equal to 1");
    u.intervalAt(0)->weight = 1.0;
    EXPECT_EQ(u.checkWeights(), 1);
}

TEST(IntervalSequence, CopyKeepsOnlyValidWeights) {
    Discrete d = points({{1.0, 0.0}, {2.0, 1.5}, {3.0, 0.25}, {4.0, 1.0}});
    Discrete dc(d);
    ASSERT_EQ(dc.count(), 4);
    const char* const error = "Weight value error";
    const std::pair<double, std::string> expected[] = {{1.0, error}, {1.0, error}, {0.25, ""}, {1.0, ""}};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(dc.intervalAt(i)->weight, expected[i].first) << i;
        EXPECT_EQ(dc.intervalAt(i)->errorText(), expected[i].second) << i;
    }
    EXPECT_EQ(dc.intervalAt(1)->left, 2.0);
    EXPECT_EQ(dc.intervalAt(1)->right, 3.0);

    LogUniform lu;
    lu.intervalAt(0)->weight = -0.5;
    ASSERT_EQ(lu.addInterval(std::make_unique<LogInterval>(3.0, 4.0, 0.5)), 1);
    LogUniform luc(lu);
    ASSERT_EQ(luc.count(), 2);
    EXPECT_EQ(luc.intervalAt(0)->weight, 1.0);
    EXPECT_EQ(luc.intervalAt(0)->errorText(), "Weight value error");
    EXPECT_EQ(luc.intervalAt(1)->weight, 0.5);
    EXPECT_EQ(luc.intervalAt(1)->left, 3.0);
    // The copy's intervals are log intervals: they refuse a bound <= 0.
    EXPECT_EQ(luc.intervalAt(1)->setBounds(0.0, 1.0), 0);
    EXPECT_EQ(luc.intervalAt(1)->errorText(), "left bound < 0");
    EXPECT_EQ(luc.errorText(), "No errors");  // the factor's own text is untouched
}

TEST(IntervalSequence, DiscreteInverseTiesAndEnd) {
    Discrete d = points({{1.0, 0.2}, {2.0, 0.3}, {3.0, 0.5}});
    // Equal to a running sum (0.2): the next point; at the total and beyond: the last.
    for (auto [u, x] : {std::pair{0.0, 1.0}, {0.19, 1.0}, {0.2, 2.0}, {0.49, 2.0}, {0.51, 3.0}, {0.999, 3.0},
                        {1.0, 3.0}, {7.0, 3.0}})
        EXPECT_EQ(d.discreteInverse(u), x) << u;

    // Cumulative: stops at the first point above x, in stored order.
    EXPECT_EQ(d.cumulative(0.5), 0.0);
    EXPECT_EQ(d.cumulative(1.0), 0.2);
    EXPECT_NEAR(d.cumulative(2.5), 0.5, 1e-16);
    EXPECT_NEAR(d.cumulative(3.0), 1.0, 1e-16);
    // Mass of the first point equal to x.
    EXPECT_EQ(d.density(2.0), 0.3);
    EXPECT_EQ(d.density(2.0000001), 0.0);
    // mean 0.2 + 0.6 + 1.5 = 2.3; E[X^2] = 0.2 + 1.2 + 4.5 = 5.9.
    EXPECT_NEAR(d.mean(), 2.3, 1e-15);
    EXPECT_NEAR(d.stdDev(), std::sqrt(5.9 - 2.3 * 2.3), 1e-15);

    Discrete unordered = points({{3.0, 0.5}, {1.0, 0.5}});
    EXPECT_EQ(unordered.cumulative(2.0), 0.0);  // the walk stops at 3 > 2
}

} // namespace
} // namespace tarvex
