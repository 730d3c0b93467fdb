#pragma once
// Draws one axes into a cell of a cairo context whose unit is the point: margins
// from measured text, frame, ticks and labels, titles, the primitives clipped to the
// plot area, the legend. The axes must have passed FigureGuard.
#include <cairo.h>

#include <string>

#include "plots/AxesTransform.h"
#include "plots/Axes.h"

namespace tarvex {

class AxesPainter {
public:
    AxesPainter(cairo_t* cr, double fontPoints) : cr_(cr), font_(fontPoints) {}

    // Paints `axes` in the cell and returns the transform of its plot area, in points.
    AxesTransform paint(const Axes& axes, double cellLeft, double cellTop, double cellWidth, double cellHeight);

    // A line of text at (x, y) aligned as asked, shrunk until it is no wider than
    // `maxWidth` (when positive); `angle` in degrees, counter-clockwise.
    void text(const std::string& s, double x, double y, HAlign h, VAlign v, double angle = 0.0,
              double maxWidth = 0.0, bool bold = false);
    double textWidth(const std::string& s, bool bold = false);
    double lineHeight() const;

private:
    void setFont(bool bold, double size);
    void setColour(const Colour& c);
    void drawPrimitives(const Axes& axes, const AxesTransform& t);
    void drawLine(const Polyline& line, const AxesTransform& t);
    void drawMarkers(const Markers& m, const AxesTransform& t);
    void drawLegend(const Axes& axes, const AxesTransform& t);

    cairo_t* cr_;
    double font_;
};

}  // namespace tarvex
