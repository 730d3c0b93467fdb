#pragma once
// One plot area of a figure: two axes with their ranges, scales, titles and tick
// labels, the primitives drawn in it, and its legend.
#include <string>
#include <vector>

#include "plots/Primitives.h"

namespace tarvex {

enum class Scale { Linear, Log };

struct AxisSpec {
    double min = 0.0;
    double max = 1.0;
    Scale scale = Scale::Linear;
    std::string title;
    std::string tickFormat = "%g";  // a printf format of one double
    bool visible = true;            // ticks and labels; the frame is always drawn
    std::vector<double> ticks;      // empty: chosen from the range
};

struct LegendEntry {
    std::string label;
    Colour colour;
    LineStyle style = LineStyle::Solid;
    bool box = false;  // a filled square (bars, pies) rather than a line sample
};

struct Axes {
    AxisSpec x;
    AxisSpec y;
    std::string title;
    Colour background{255, 255, 255};
    std::vector<Bar> bars;
    std::vector<Wedge> wedges;
    std::vector<Polyline> lines;
    std::vector<Markers> markers;
    std::vector<Text> texts;
    std::vector<LegendEntry> legend;
    // When set, the plot area shows this message instead of the primitives.
    std::string message;

    bool empty() const {
        return bars.empty() && wedges.empty() && lines.empty() && markers.empty() && texts.empty();
    }
};

}  // namespace tarvex
