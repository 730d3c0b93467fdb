#pragma once
// Stored critical values of the confidence bounds of the uncertainty analysis
// and the significance tests of the sensitivity measures.
#include <cstdint>

namespace tarvex {

// One-sided critical value of Student's t for `degreesOfFreedom` at the
// level `confidence`, from a stored table of 34 rows (df 1 to 30, 40, 60,
// 120, infinity) by 7 levels (0.75, 0.9, 0.95, 0.975, 0.99, 0.995, 0.9995).
// The level is matched by an open window around each stored level; df 31 to
// 40, 41 to 60 and 61 to 120 take the mean of the two rows around them, above
// 120 the infinity row. -1.0 for a level outside every window or df below 1.
// The table keeps 2.189 for df 12 at 0.975 (the exact value is 2.179): bounds
// and tests already published with it must come out the same.
double studentQuantile(int32_t degreesOfFreedom, double confidence);

// Half-width of the Kolmogorov-Smirnov confidence band around an empirical
// distribution of n runs: the asymptotic constant of the level (0.8, 0.9,
// 0.95, 0.98, 0.99, each by an open window) over sqrt(n); -1.0 for any
// other level.
double kolmogorovHalfWidth(int32_t n, double confidence);

}  // namespace tarvex
