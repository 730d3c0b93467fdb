#pragma once
// The seven line styles of the multi-variable plots, in their order of use.
#include <string>
#include <vector>

namespace tarvex {

enum class LineStyle { Solid, Dash, DashDot, DashDoubleDot, Alternate, DoubleDot, LongDash };

inline constexpr int kLineStyleCount = 7;

// "solid", "dash", "dashdot", "dashdoubledot", "alternate", "doubledot", "longdash".
const char* lineStyleName(LineStyle style);
// The style of a name above; 0 for any other name, `out` unchanged.
[[nodiscard]] int lineStyleByName(const std::string& name, LineStyle& out);
// The style for the k-th curve of a plot: the list in order, then again from the top.
LineStyle lineStyleForCurve(int k);
// On and off lengths in line widths; empty for a solid line.
std::vector<double> dashPattern(LineStyle style);

}  // namespace tarvex
