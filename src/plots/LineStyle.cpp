#include "plots/LineStyle.h"

namespace tarvex {

namespace {
constexpr const char* kNames[kLineStyleCount] = {"solid",     "dash",      "dashdot", "dashdoubledot",
                                                 "alternate", "doubledot", "longdash"};
}

const char* lineStyleName(LineStyle style) {
    const int i = static_cast<int>(style);
    return i >= 0 && i < kLineStyleCount ? kNames[i] : "solid";
}

int lineStyleByName(const std::string& name, LineStyle& out) {
    for (int i = 0; i < kLineStyleCount; ++i)
        if (name == kNames[i]) {
            out = static_cast<LineStyle>(i);
            return 1;
        }
    return 0;
}

LineStyle lineStyleForCurve(int k) {
    if (k < 0) k = 0;
    return static_cast<LineStyle>(k % kLineStyleCount);
}

std::vector<double> dashPattern(LineStyle style) {
    // Lengths in line widths, long enough to tell apart on paper at a 1 pt line.
    switch (style) {
        case LineStyle::Solid: return {};
        case LineStyle::Dash: return {5, 3};
        case LineStyle::DashDot: return {5, 2.5, 1, 2.5};
        case LineStyle::DashDoubleDot: return {5, 2.5, 1, 2.5, 1, 2.5};
        case LineStyle::Alternate: return {1.5, 1.5};
        case LineStyle::DoubleDot: return {1, 2, 1, 5};
        case LineStyle::LongDash: return {10, 4};
    }
    return {};
}

}  // namespace tarvex
