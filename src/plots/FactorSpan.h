#pragma once
// The stretch of values a factor's graphics show: the factor's truncated span.
#include <string>

namespace tarvex {

class Factor;

class FactorSpan {
public:
    // Finds [low, high]:
    // - a truncated law: the values at which its `cumulative` passes the left and the
    //   right truncation, found by bisection (a truncation of 0 gives the lower end);
    // - Beta and Triangular: their bounds; Uniform, LogUniform: the first interval's
    //   left end to the last one's right end; Discrete: its smallest and largest point;
    //   Constant: its value at both ends;
    // - any other law: its 0.001 and 0.999 quantiles.
    // 0 when the span can't be found (no cumulative, no points, a non-finite end).
    [[nodiscard]] static int find(const Factor& factor, double& low, double& high);
};

}  // namespace tarvex
