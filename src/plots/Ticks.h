#pragma once
// Tick positions and labels of an axis.
#include <string>
#include <vector>

namespace tarvex {

struct TickSet {
    std::vector<double> values;
    double step = 0.0;  // 1, 2 or 5 times a power of ten; 0 for log ticks
};

class Ticks {
public:
    // A range fit to draw: a non-finite bound is replaced, min and max are put in
    // order, and a range with no width (a constant, or a width lost in the last
    // digits of its bounds) is widened about its value.
    static void widen(double& min, double& max);
    // Ticks inside [min, max] on a 1-2-5 step, about `target` of them (at least two
    // whenever the range is at least one step wide). A value within a thousandth of a
    // step of zero is zero, so that no label reads "-0.00".
    static TickSet linear(double min, double max, int target = 6);
    // Powers of ten inside [min, max] (positive bounds), thinned to about `target`;
    // where the range holds fewer than two, the linear ticks.
    static TickSet logarithmic(double min, double max, int target = 6);
    // The label of a value by a printf format of one double.
    static std::string label(const std::string& format, double value);

    // The format the factor graphics use for their scale labels: "%.1e" when the
    // largest bound reaches 1e4 or the step is below 0.01 (fixed point would need more
    // digits than a label has room for), "%.2f" when the step is below 1, else "%.1f".
    // Every 1-2-5 step from 0.01 on is exact in two decimals, so neighbouring labels
    // always differ.
    static const char* factorFormat(double step, double largestBound);
};

}  // namespace tarvex
