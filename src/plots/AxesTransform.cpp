#include "plots/AxesTransform.h"

#include <cmath>

namespace tarvex {

namespace {
double toScale(double v, bool log) { return log ? std::log10(v) : v; }
double fromScale(double v, bool log) { return log ? std::pow(10.0, v) : v; }
}  // namespace

AxesTransform::AxesTransform(double left, double top, double width, double height, const AxisSpec& x,
                             const AxisSpec& y)
    : left_(left), top_(top), width_(width > 0.0 ? width : 1.0), height_(height > 0.0 ? height : 1.0),
      logX_(x.scale == Scale::Log), logY_(y.scale == Scale::Log) {
    x0_ = toScale(x.min, logX_);
    x1_ = toScale(x.max, logX_);
    y0_ = toScale(y.min, logY_);
    y1_ = toScale(y.max, logY_);
    if (!(x1_ != x0_)) x1_ = x0_ + 1.0;
    if (!(y1_ != y0_)) y1_ = y0_ + 1.0;
}

double AxesTransform::toPixelX(double x) const {
    // Halves throughout, so that ranges near the largest double stay finite.
    return left_ + (toScale(x, logX_) / 2 - x0_ / 2) / (x1_ / 2 - x0_ / 2) * width_;
}

double AxesTransform::toPixelY(double y) const {
    return top_ + height_ - (toScale(y, logY_) / 2 - y0_ / 2) / (y1_ / 2 - y0_ / 2) * height_;
}

double AxesTransform::toDataX(double px) const {
    const double t = (px - left_) / width_;
    return fromScale(std::lerp(x0_, x1_, t), logX_);
}

double AxesTransform::toDataY(double py) const {
    const double t = (top_ + height_ - py) / height_;
    return fromScale(std::lerp(y0_, y1_, t), logY_);
}

bool AxesTransform::contains(double px, double py) const {
    return px >= left_ && px <= left_ + width_ && py >= top_ && py <= top_ + height_;
}

}  // namespace tarvex
