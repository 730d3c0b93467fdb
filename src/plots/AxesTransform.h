#pragma once
// The map from an axes' data coordinates to the pixels (or points) of the surface it
// was drawn on, and back: what a renderer used, so that the screen can turn a mouse
// position into data with the very transform that drew the axes.
#include "plots/Axes.h"

namespace tarvex {

class AxesTransform {
public:
    AxesTransform() = default;
    // The plot area's rectangle on the surface (y grows downwards) and the ranges
    // and scales of the axes. Log scales need positive ranges (FigureGuard sees to it).
    AxesTransform(double left, double top, double width, double height, const AxisSpec& x, const AxisSpec& y);

    double toPixelX(double x) const;
    double toPixelY(double y) const;
    Point toPixel(Point p) const { return {toPixelX(p.x), toPixelY(p.y)}; }
    double toDataX(double px) const;
    double toDataY(double py) const;
    Point toData(Point px) const { return {toDataX(px.x), toDataY(px.y)}; }
    // Whether a surface position lies inside the plot area (edges included).
    bool contains(double px, double py) const;

    double left() const { return left_; }
    double top() const { return top_; }
    double width() const { return width_; }
    double height() const { return height_; }

private:
    double left_ = 0.0, top_ = 0.0, width_ = 1.0, height_ = 1.0;
    double x0_ = 0.0, x1_ = 1.0, y0_ = 0.0, y1_ = 1.0;  // in scale units (log10 on a log axis)
    bool logX_ = false, logY_ = false;
};

}  // namespace tarvex
