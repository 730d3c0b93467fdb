#pragma once
// What a figure draws inside one axes: plain values that the builders fill and the
// renderers read. Positions are in the axes' data coordinates unless a field says
// otherwise; sizes and widths are in points (1/72 inch) so that a figure looks the
// same on paper and on screen.
#include <string>
#include <vector>

#include "plots/Colour.h"
#include "plots/LineStyle.h"

namespace tarvex {

struct Point {
    double x = 0.0;
    double y = 0.0;
};

struct Polyline {
    std::vector<Point> points;
    Colour colour;
    LineStyle style = LineStyle::Solid;
    double width = 1.0;
};

enum class MarkerShape { Square, Circle };

// The same mark at many points (a scattergram's cloud is one of these).
struct Markers {
    std::vector<Point> points;
    MarkerShape shape = MarkerShape::Square;
    double size = 3.0;  // side or diameter
    Colour colour;
    bool filled = true;
};

// A filled rectangle between two x and two y values, outlined.
struct Bar {
    double x0 = 0.0, x1 = 0.0, y0 = 0.0, y1 = 0.0;
    Colour fill;
    Colour outline;
};

// A slice of a pie. The pie is round whatever the axes' data ranges: its centre is a
// fraction of the plot area (0,0 bottom left, 1,1 top right) and its radius a fraction
// of the plot area's smaller side. Angles in degrees, counter-clockwise from 3 o'clock.
struct Wedge {
    double centreX = 0.5, centreY = 0.5, radius = 0.4;
    double startAngle = 0.0, sweepAngle = 0.0;
    Colour fill;
    Colour outline;
    std::string label;  // drawn outside the rim at the middle of the slice, if any
};

enum class HAlign { Left, Centre, Right };
enum class VAlign { Top, Middle, Bottom };

struct Text {
    double x = 0.0, y = 0.0;
    std::string text;
    Colour colour;
    HAlign hAlign = HAlign::Left;
    VAlign vAlign = VAlign::Bottom;
    double angle = 0.0;  // degrees, counter-clockwise
};

}  // namespace tarvex
