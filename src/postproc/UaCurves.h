#pragma once
// What the uncertainty panel shows of one variable: the density, cumulative
// and complementary curves on the linear or the logarithmic scale, the
// statistics column, the sheet of points, and the probability of an interval.
// The curves are single precision, as the charts take them.
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "postproc/UaStats.h"

namespace tarvex {

struct CurvePoint {
    float x = 0.0f;
    float y = 0.0f;
};
using Curve = std::array<CurvePoint, kHistogramBins>;

struct UaCurves {
    Curve density;     // x the left edge, y the count
    Curve cumulative;  // y the running sum of count / N
    Curve complement;  // y = 1 - cumulative
};

// The curves of variable `index` from its linear table (scale 0) or its
// logarithmic table (scale 1, x then in natural logarithms). 0 when the
// variable or the scale does not exist.
[[nodiscard]] int buildUaCurves(const UaStats& stats, int32_t index, int scale, UaCurves& curves);

// The probability the panel shows: intervalProbability, never above 1.0.
double shownIntervalProbability(const UaStats& stats, double a, double b, int32_t index, int scale);

// A value of the statistics column or the sheet of points: "%7.3g" when its
// magnitude is below 0.001 or above 10000.0, "%7f" otherwise.
std::string formatUaValue(double value);

// The statistics column, in its row order: mean, variance, std, skewness,
// kurtosis, tchebyBound, tTestBound, each by formatUaValue.
std::vector<std::string> uaStatisticsColumn(const UaStats& stats, int32_t index);

// The sheet of points: a title row, then one row per bin: x, the count as an
// integer, and the density, cumulative and complementary values.
std::vector<std::vector<std::string>> uaPointsSheet(const UaCurves& curves);

}  // namespace tarvex
