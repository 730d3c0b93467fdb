// Uncertainty analysis: moments against a second computation, histograms,
// bounds, the Student and Kolmogorov tables, interval probabilities, curves,
// value formatting and the saved table.
#include <gtest/gtest.h>

#include <boost/math/distributions/normal.hpp>
#include <boost/math/distributions/students_t.hpp>
#include <cmath>
#include <sstream>

#include "PostprocFixtures.h"
#include "postproc/StudentTable.h"
#include "postproc/UaCurves.h"
#include "postproc/UaSettings.h"
#include "postproc/UaStats.h"
#include "postproc/UaTableFile.h"

namespace tarvex {
namespace {

UaStats statsOf(const std::vector<std::vector<double>>& columns) {
    OutputTable table = test::tableOf(columns);
    UaStats stats;
    stats.compute(std::vector<std::string>(columns.size(), "v"), table);
    return stats;
}

TEST(UaStats, MomentsAgreeWithRawMomentFormulas) {
    // A skewed column: the moments come out again from the raw sums in long
    // double, a different route from the two passes over deviations.
    std::vector<double> x;
    for (int k = 1; k <= 2000; ++k) x.push_back(std::exp(std::sin(k * 0.7)) * 3.0 + k * 1e-3);
    const UaStats s = statsOf({x});
    long double s1 = 0, s2 = 0, s3 = 0, s4 = 0;
    for (double v : x) {
        s1 += v;
        s2 += (long double)v * v;
        s3 += (long double)v * v * v;
        s4 += (long double)v * v * v * v;
    }
    const long double n = x.size(), m = s1 / n;
    const long double m2 = s2 / n - m * m;
    const long double m3 = s3 / n - 3 * m * s2 / n + 2 * m * m * m;
    const long double m4 = s4 / n - 4 * m * s3 / n + 6 * m * m * s2 / n - 3 * m * m * m * m;
    const double sd = std::sqrt((double)m2);
    EXPECT_NEAR(s.mean(0), (double)m, 1e-12 * std::fabs((double)m));
    EXPECT_NEAR(s.std(0), sd, 1e-9 * sd);
    // Skewness and kurtosis divide by N - 1 while std divides by N.
    EXPECT_NEAR(s.skewness(0), (double)(n * m3 / ((n - 1) * m2 * std::sqrt(m2))), 1e-8);
    EXPECT_NEAR(s.kurtosis(0), (double)(n * m4 / ((n - 1) * m2 * m2)) - 3.0, 1e-8);
    EXPECT_EQ(s.minimum(0), *std::min_element(x.begin(), x.end()));
    EXPECT_EQ(s.maximum(0), *std::max_element(x.begin(), x.end()));

    // 1, 2, 3, 4 by hand: mean 2.5, variance 1.25, fourth-power sum 10.25.
    const UaStats small = statsOf({{1.0, 2.0, 3.0, 4.0}});
    EXPECT_DOUBLE_EQ(small.mean(0), 2.5);
    EXPECT_DOUBLE_EQ(small.std(0), std::sqrt(1.25));
    EXPECT_NEAR(small.skewness(0), 0.0, 1e-15);
    EXPECT_DOUBLE_EQ(small.kurtosis(0), 10.25 / (3.0 * 1.25 * 1.25) - 3.0);
    // Getters outside the variables give the sentinel.
    for (double v : {small.mean(1), small.std(-1), small.minimum(1), small.maximum(1), small.skewness(1),
                     small.kurtosis(1), small.tchebyBound(1), small.tTestBound(-1)})
        EXPECT_EQ(v, 1e308);
    EXPECT_EQ(small.linearHistogram(1), nullptr);
    EXPECT_EQ(small.name(1), nullptr);
}

TEST(UaStats, HistogramEdgesAndSpecialColumns) {
    // 0, 0.1, ..., 10: edges every 0.1, one run per bin, the maximum in bin 100.
    std::vector<double> grid, shifted, constant(5, 2.0), withNan = {1.0, std::nan(""), 3.0};
    for (int k = 0; k <= 100; ++k) grid.push_back(k * 0.1);
    for (double g : grid) shifted.push_back(g + 1.0);
    const UaStats s = statsOf({grid});
    const Histogram& linear = *s.linearHistogram(0);
    EXPECT_DOUBLE_EQ(linear[37].edge, 3.7);
    EXPECT_EQ(linear[100].count, 1.0);
    EXPECT_EQ(s.countedRuns(0), 101);
    // A minimum of exactly 0.0 has no logarithmic table.
    for (const HistogramBin& bin : *s.logHistogram(0)) EXPECT_EQ(bin, HistogramBin{});

    const UaStats logs = statsOf({shifted});
    const Histogram& log = *logs.logHistogram(0);
    EXPECT_DOUBLE_EQ(log[0].edge, 0.0);
    EXPECT_DOUBLE_EQ(log[100].edge, std::log(11.0));
    // Bins of equal width in log(x): 1 .. e^(0.01 log 11) holds x = 1.0 only.
    EXPECT_EQ(log[0].count, 1.0);
    EXPECT_EQ(log[100].count, 1.0);

    // A constant column: every run in the last bin, all edges at the value.
    const UaStats c = statsOf({constant});
    EXPECT_EQ((*c.linearHistogram(0))[100].count, 5.0);
    EXPECT_EQ((*c.linearHistogram(0))[0].edge, 2.0);
    EXPECT_EQ((*c.logHistogram(0))[100].count, 5.0);
    EXPECT_EQ(c.std(0), 0.0);
    EXPECT_EQ(c.tchebyBound(0), 0.0);

    // A run without a value sits in no bin; the bounds count what is there.
    const UaStats gaps = statsOf({withNan});
    EXPECT_EQ(gaps.countedRuns(0), 2);
    EXPECT_EQ(gaps.minimum(0), 1.0);
    EXPECT_EQ(gaps.maximum(0), 3.0);

    // One run: std 0, skewness and kurtosis 0 / 0, bounds 0.
    const UaStats one = statsOf({{4.0}});
    EXPECT_EQ(one.std(0), 0.0);
    EXPECT_TRUE(std::isnan(one.skewness(0)));
    EXPECT_TRUE(std::isnan(one.kurtosis(0)));
    EXPECT_EQ(one.tchebyBound(0), 0.0);
    EXPECT_EQ(one.tTestBound(0), 0.0);
}

TEST(UaStats, BoundsAtTheirLevels) {
    std::vector<double> x(300), y(35);
    for (int k = 0; k < 300; ++k) x[k] = k % 7;
    for (int k = 0; k < 35; ++k) y[k] = k % 5;
    const UaStats big = statsOf({x});
    UaStats s = statsOf({y, y});
    // sqrt(1 / (1 - 0.75)) = 2.
    EXPECT_DOUBLE_EQ(big.tchebyBound(0), 2.0 * big.std(0) / std::sqrt(300.0));
    // N = 300 at 0.75 reads the infinity row, 0.674; N = 35 the mean of the
    // rows for 30 and 40.
    EXPECT_DOUBLE_EQ(big.tTestBound(0), 0.674 * big.std(0) / std::sqrt(300.0));
    EXPECT_DOUBLE_EQ(s.tTestBound(1), (0.683 + 0.681) / 2 * s.std(1) / std::sqrt(35.0));
    s.setTchebyConfidence(0.95);
    EXPECT_DOUBLE_EQ(s.tchebyBound(1), std::sqrt(20.0) * s.std(1) / std::sqrt(35.0));
    s.setTchebyConfidence(0.5);
    EXPECT_EQ(s.tTestBound(1), -1.0);
    // The Kolmogorov level has no part in the bounds.
    s.setTchebyConfidence(0.9);
    const double before = s.tTestBound(1);
    s.setKolmogorovConfidence(0.99);
    EXPECT_EQ(s.tTestBound(1), before);
}

TEST(StudentTable, WindowsRowsAndPublishedQuantiles) {
    // Every stored value against the t distribution, to the table's printed
    // precision. Three entries are the classical printed table's own: 12.941
    // (df 3) and 6.859 (df 5) at 0.9995, and 2.189 at df 12 and 0.975, where
    // the exact values are 12.924, 6.869 and 2.179.
    const double levels[] = {0.75, 0.9, 0.95, 0.975, 0.99, 0.995, 0.9995};
    auto near = [](double table, double exact) { return std::fabs(table - exact) <= std::max(1.5e-3, 6e-4 * exact); };
    for (int df = 1; df <= 30; ++df) {
        for (int c = 0; c < 7; ++c) {
            const double exact = boost::math::quantile(boost::math::students_t(df), levels[c]);
            const double value = studentQuantile(df, levels[c]);
            if (df == 3 && c == 6)
                EXPECT_EQ(value, 12.941);
            else if (df == 5 && c == 6)
                EXPECT_EQ(value, 6.859);
            else if (df == 12 && c == 3)
                EXPECT_EQ(value, 2.189);
            else
                EXPECT_TRUE(near(value, exact)) << df << " " << levels[c] << ": " << value << " vs " << exact;
        }
    }
    for (double level : levels) {
        auto t = [level](int df) { return boost::math::quantile(boost::math::students_t(df), level); };
        const double z = boost::math::quantile(boost::math::normal(), level);
        // Row boundaries: 30 is its own row, 31 and 40 the mean of 30 and 40,
        // 41 and 60 of 40 and 60, 61 and 120 of 60 and 120, above that infinity.
        EXPECT_TRUE(near(studentQuantile(30, level), t(30)));
        for (int df : {31, 40}) EXPECT_TRUE(near(studentQuantile(df, level), (t(30) + t(40)) / 2)) << df;
        for (int df : {41, 60}) EXPECT_TRUE(near(studentQuantile(df, level), (t(40) + t(60)) / 2)) << df;
        for (int df : {61, 120}) EXPECT_TRUE(near(studentQuantile(df, level), (t(60) + t(120)) / 2)) << df;
        EXPECT_TRUE(near(studentQuantile(121, level), z));
    }
    EXPECT_EQ(studentQuantile(0, 0.95), -1.0);
    EXPECT_EQ(studentQuantile(-3, 0.95), -1.0);
    EXPECT_EQ(studentQuantile(10, 0.5), -1.0);
    // Each window excludes both limits.
    const double limits[][2] = {{0.74, 0.76}, {0.89, 0.91}, {0.94, 0.96}, {0.97, 0.98},
                                {0.989, 0.991}, {0.9949, 0.9951}, {0.9994, 0.9996}};
    for (int k = 0; k < 7; ++k) {
        EXPECT_EQ(studentQuantile(1, limits[k][0]), -1.0);
        EXPECT_EQ(studentQuantile(1, limits[k][1]), -1.0);
        EXPECT_EQ(studentQuantile(1, std::nextafter(limits[k][0], 1.0)), studentQuantile(1, levels[k]));
        EXPECT_EQ(studentQuantile(1, std::nextafter(limits[k][1], 0.0)), studentQuantile(1, levels[k]));
    }
    EXPECT_EQ(studentQuantile(1, 0.9995), 636.619);

    // Kolmogorov: constants over sqrt(n), limits excluded.
    EXPECT_DOUBLE_EQ(kolmogorovHalfWidth(100, 0.8), 0.107);
    EXPECT_DOUBLE_EQ(kolmogorovHalfWidth(25, 0.9), 1.22 / 5);
    EXPECT_DOUBLE_EQ(kolmogorovHalfWidth(4, 0.95), 0.68);
    EXPECT_DOUBLE_EQ(kolmogorovHalfWidth(1, 0.98), 1.52);
    EXPECT_DOUBLE_EQ(kolmogorovHalfWidth(1, 0.99), 1.63);
    for (double c : {0.795, 0.805, 0.895, 0.905, 0.945, 0.955, 0.975, 0.985, 0.995, 0.5})
        EXPECT_EQ(kolmogorovHalfWidth(100, c), -1.0) << c;
}

TEST(UaStats, IntervalProbabilities) {
    // 10000 runs spread evenly: every bin holds 100 runs, give or take one.
    std::vector<double> uniform, positive;
    for (int k = 0; k < 10000; ++k) uniform.push_back((k + 0.5) / 10000.0);
    for (double u : uniform) positive.push_back(std::exp(3.0 * u));
    const UaStats s = statsOf({uniform, positive, std::vector<double>(10000, 2.0)});

    // Intervals around all runs, on both scales, and around a constant.
    EXPECT_DOUBLE_EQ(s.intervalProbability(-1.0, 2.0, 0, 0), 1.0);
    EXPECT_DOUBLE_EQ(s.intervalProbability(s.minimum(0), 2.0, 0, 0), 1.0);
    EXPECT_DOUBLE_EQ(s.intervalProbability(-1.0, 5.0, 1, 1), 1.0);
    EXPECT_DOUBLE_EQ(s.intervalProbability(1.0, 3.0, 2, 0), 1.0);
    // Up to the maximum itself the last bin, which holds the maximum alone,
    // stays out: 9999 of 10000.
    EXPECT_DOUBLE_EQ(s.intervalProbability(-1.0, s.maximum(0), 0, 0), 0.9999);
    // Empty and outside intervals, unknown variable or scale.
    EXPECT_EQ(s.intervalProbability(0.6, 0.4, 0, 0), 0.0);
    EXPECT_EQ(s.intervalProbability(0.5, 0.5, 0, 0), 0.0);
    EXPECT_EQ(s.intervalProbability(1.5, 2.0, 0, 0), 0.0);
    EXPECT_EQ(s.intervalProbability(-2.0, -1.0, 0, 0), 0.0);
    EXPECT_EQ(s.intervalProbability(0.0, 1.0, 3, 0), 0.0);
    EXPECT_EQ(s.intervalProbability(0.0, 1.0, 0, 2), 0.0);
    // Ends on bin edges: the length of the interval.
    EXPECT_NEAR(s.intervalProbability(-1.0, 0.5, 0, 0), 0.5, 0.0002);
    // A lower end inside a bin takes its share of that bin.
    EXPECT_NEAR(s.intervalProbability(0.255, 0.5, 0, 0), 0.245, 0.0002);
    // An upper end inside a bin takes its share on top of the whole bin,
    // which the sum already holds: (0.25, 0.505] gives 0.26 + 0.005. This is
    // how the program has always computed it, and why the panel caps at 1.0.
    EXPECT_NEAR(s.intervalProbability(0.25, 0.505, 0, 0), 0.265, 0.0002);
    EXPECT_GT(s.intervalProbability(-1.0, 0.999, 0, 0), 1.0);
    EXPECT_EQ(shownIntervalProbability(s, -1.0, 0.999, 0, 0), 1.0);
    // Inside one bin: its share of that bin, a tenth of 100 runs.
    EXPECT_NEAR(s.intervalProbability(0.3355, 0.3365, 0, 0), 0.001, 0.00002);
    // The logarithmic scale reads the linear edges to decide whether the
    // upper end is inside a bin: an end exactly on a logarithmic edge still
    // adds a whole bin, 0.81 where the linear scale gives 0.80.
    const double edge80 = (*s.logHistogram(1))[80].edge;
    EXPECT_NEAR(s.intervalProbability(-1.0, edge80, 1, 1), 0.81, 0.0003);
    EXPECT_NEAR(s.intervalProbability(-1.0, (*s.linearHistogram(0))[80].edge, 0, 0), 0.80, 0.0003);
    // An interval opening exactly on an edge and ending inside the bin above
    // counts that whole bin and a share of the bin below it; at the minimum
    // there is no bin below to read: the first bin alone.
    EXPECT_DOUBLE_EQ(s.intervalProbability(s.minimum(0), s.minimum(0) + 0.001, 0, 0), 0.01);
}

TEST(UaCurves, CurvesSheetFormattingAndSavedTable) {
    std::vector<double> x;
    for (int k = 0; k < 200; ++k) x.push_back(1.0 + k % 10);
    const UaStats s = statsOf({x});
    UaCurves curves;
    ASSERT_EQ(buildUaCurves(s, 0, 0, curves), 1);
    EXPECT_FLOAT_EQ(curves.cumulative[100].y, 1.0f);
    EXPECT_FLOAT_EQ(curves.cumulative[0].y, 0.1f);
    EXPECT_FLOAT_EQ(curves.complement[0].y, 0.9f);
    EXPECT_FLOAT_EQ(curves.density[0].y, 20.0f);
    EXPECT_FLOAT_EQ(curves.density[50].x, 5.5f);
    ASSERT_EQ(buildUaCurves(s, 0, 1, curves), 1);
    EXPECT_FLOAT_EQ(curves.density[100].x, static_cast<float>(std::log(10.0)));
    EXPECT_EQ(buildUaCurves(s, 1, 0, curves), 0);

    // "%7.3g" below 0.001 and above 10000 in magnitude, "%7f" between.
    EXPECT_EQ(formatUaValue(0.0005), " 0.0005");
    EXPECT_EQ(formatUaValue(0.001), "0.001000");
    EXPECT_EQ(formatUaValue(10000.0), "10000.000000");
    EXPECT_EQ(formatUaValue(-12345.0), "-1.23e+04");
    const std::vector<std::string> column = uaStatisticsColumn(s, 0);
    ASSERT_EQ(column.size(), 7u);
    EXPECT_EQ(column[0], "5.500000");  // mean of 1..10
    EXPECT_EQ(column[1], "8.250000");  // their variance by N

    const std::vector<std::vector<std::string>> sheet = {{"a", "b"}, {"1.000000", "20"}};
    std::ostringstream out;
    writeUaTable(out, s, 0, sheet);
    EXPECT_EQ(out.str(),
              "Uncertainty analysis for var v\n\n"
              "      mean:     5.5\n"
              "       std:    2.87\n"
              "square std:    8.25\n"
              "     Tcheb:   0.406\n"
              "     TTest:   0.137\n\n"
              "                   a\t                   b\t\n"
              "            1.000000\t                  20\t\n");
    test::ScratchDir dir;
    EXPECT_EQ(saveUaTable(dir.file("table.txt"), s, 0, uaPointsSheet(curves)), 1);
    EXPECT_EQ(test::readFile(dir.file("table.txt")).substr(0, 31), "Uncertainty analysis for var v\n");
    EXPECT_EQ(saveUaTable(dir.file("missing/table.txt"), s, 0, sheet), 0);
}

TEST(UaSettings, ChoicesMarkThePresentLevel) {
    for (int k = 0; k < 7; ++k) EXPECT_EQ(tchebyLevelChoice(kTchebyLevels[k]), k);
    for (int k = 0; k < 4; ++k) EXPECT_EQ(kolmogorovLevelChoice(kKolmogorovLevels[k]), k);
    // The level read back from a float still marks its entry.
    EXPECT_EQ(tchebyLevelChoice(static_cast<float>(0.9995)), 6);
    EXPECT_EQ(tchebyLevelChoice(0.976), -1);
    EXPECT_EQ(tchebyLevelChoice(0.5), -1);
    EXPECT_EQ(kolmogorovLevelChoice(0.75), -1);
    EXPECT_EQ(kolmogorovLevelChoice(0.981), -1);
    // No logarithmic scale once a variable goes below zero; zero itself is allowed.
    EXPECT_TRUE(logScaleAvailable(statsOf({{0.0, 1.0}, {2.0, 3.0}})));
    EXPECT_FALSE(logScaleAvailable(statsOf({{0.0, 1.0}, {-2.0, 3.0}})));
}

}  // namespace
}  // namespace tarvex
