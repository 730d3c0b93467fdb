#include <gtest/gtest.h>

#include <cmath>

#include "plots/Ticks.h"

using namespace tarvex;

namespace {

// Every step must be 1, 2 or 5 times a power of ten, and the ticks must be evenly
// spaced inside the range.
void expectWellFormed(const TickSet& t, double min, double max) {
    ASSERT_GE(t.values.size(), 3u) << min << " .. " << max;
    EXPECT_LE(t.values.size(), 12u);
    const double mantissa = t.step / std::pow(10.0, std::floor(std::log10(t.step)));
    EXPECT_TRUE(std::fabs(mantissa - 1) < 1e-9 || std::fabs(mantissa - 2) < 1e-9 || std::fabs(mantissa - 5) < 1e-9)
        << t.step;
    for (size_t i = 0; i < t.values.size(); ++i) {
        EXPECT_TRUE(std::isfinite(t.values[i]));
        EXPECT_GE(t.values[i], min);
        EXPECT_LE(t.values[i], max);
        if (i > 0) {
            EXPECT_NEAR(t.values[i] - t.values[i - 1], t.step, t.step * 1e-6);
        }
    }
}

}  // namespace

TEST(Ticks, OneTwoFiveStepsAtAwkwardRanges) {
    const std::vector<std::pair<TickSet, std::vector<double>>> known = {
        {Ticks::linear(0.0, 1.0), {0.0, 0.2, 0.4, 0.6, 0.8, 1.0}},
        {Ticks::linear(-7.3, -2.1), {-7, -6, -5, -4, -3}},
        {Ticks::linear(1e-12, 3e-12), {1e-12, 1.5e-12, 2e-12, 2.5e-12, 3e-12}},
    };
    for (const auto& [got, want] : known) {
        ASSERT_EQ(got.values.size(), want.size());
        for (size_t i = 0; i < want.size(); ++i) EXPECT_NEAR(got.values[i], want[i], std::fabs(want[i]) * 1e-12 + 1e-300);
    }

    const double ranges[][2] = {{1e-12, 3e-12}, {-1e308, 1e308}, {0, 1e300}, {-2.5e-7, -2.4e-7}, {123456, 123457}};
    for (const auto& r : ranges) expectWellFormed(Ticks::linear(r[0], r[1]), r[0], r[1]);
    EXPECT_EQ(Ticks::linear(-1e308, 1e308).step, 5e307);

    // The tick at zero is zero, so that a label never reads "-0.00".
    const TickSet around = Ticks::linear(-0.05, 0.45);
    EXPECT_EQ(Ticks::label("%.2f", around.values[0]), "0.00");

    EXPECT_EQ(Ticks::logarithmic(1.0, 1000.0).values, (std::vector<double>{1, 10, 100, 1000}));
}

TEST(Ticks, WidenGivesEveryRangeAWidth) {
    double lo = 5, hi = 5;
    Ticks::widen(lo, hi);
    EXPECT_DOUBLE_EQ(lo, 4.5);
    EXPECT_DOUBLE_EQ(hi, 5.5);
    lo = hi = 0;
    Ticks::widen(lo, hi);
    EXPECT_EQ(lo, -1.0);
    EXPECT_EQ(hi, 1.0);
    lo = NAN, hi = -3;  // one bound lost: the other is a constant
    Ticks::widen(lo, hi);
    EXPECT_DOUBLE_EQ(lo, -3.3);
    EXPECT_DOUBLE_EQ(hi, -2.7);
    lo = 1.0, hi = 1.0 + 1e-15;  // a width lost in the last digits
    Ticks::widen(lo, hi);
    EXPECT_NEAR(hi - lo, 0.2, 1e-12);
    lo = 2, hi = 1;
    Ticks::widen(lo, hi);
    EXPECT_EQ(lo, 1.0);
    EXPECT_EQ(hi, 2.0);
    lo = -INFINITY, hi = INFINITY;
    Ticks::widen(lo, hi);
    EXPECT_EQ(lo, 0.0);
    EXPECT_EQ(hi, 1.0);
}

TEST(Ticks, FactorFormatRuleAtItsBoundaries) {
    EXPECT_STREQ(Ticks::factorFormat(0.01, 1.0), "%.2f");
    EXPECT_STREQ(Ticks::factorFormat(0.005, 1.0), "%.1e");
    EXPECT_STREQ(Ticks::factorFormat(0.5, 1.0), "%.2f");
    EXPECT_STREQ(Ticks::factorFormat(1.0, 1.0), "%.1f");
    EXPECT_STREQ(Ticks::factorFormat(1.0, 9999.0), "%.1f");
    EXPECT_STREQ(Ticks::factorFormat(1.0, 10000.0), "%.1e");
    EXPECT_STREQ(Ticks::factorFormat(1000.0, -20000.0), "%.1e");
    EXPECT_EQ(Ticks::label("%.1e", 0.00025), "2.5e-04");
    EXPECT_EQ(Ticks::label("%.1f", 12.0), "12.0");
}
