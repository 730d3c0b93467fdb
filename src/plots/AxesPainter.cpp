#include "plots/AxesPainter.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "plots/LineStyle.h"
#include "plots/Ticks.h"

namespace tarvex {

namespace {

constexpr double kPad = 4.0;        // between the cell's edge and anything in it
constexpr double kTickLength = 3.0;
constexpr double kTickGap = 2.0;    // between a tick and its label
constexpr double kFrameWidth = 0.8;

struct Label {
    double value;
    double pixel;
    std::string text;
};

TickSet ticksOf(const AxisSpec& a) {
    if (!a.ticks.empty()) {
        TickSet s;
        for (double v : a.ticks)
            if (v >= std::min(a.min, a.max) && v <= std::max(a.min, a.max)) s.values.push_back(v);
        return s;
    }
    return a.scale == Scale::Log ? Ticks::logarithmic(a.min, a.max) : Ticks::linear(a.min, a.max);
}

// Keeps every k-th label, k the smallest that lets them stand apart along the axis.
template <class Size>
std::vector<Label> thinned(const std::vector<Label>& labels, const Size& sizeOf, double gap) {
    for (size_t every = 1; every <= labels.size(); ++every) {
        std::vector<Label> kept;
        for (size_t i = 0; i < labels.size(); i += every) kept.push_back(labels[i]);
        bool apart = true;
        for (size_t i = 1; i < kept.size() && apart; ++i)
            apart = std::fabs(kept[i].pixel - kept[i - 1].pixel) >=
                    (sizeOf(kept[i]) + sizeOf(kept[i - 1])) / 2 + gap;
        if (apart) return kept;
    }
    return labels.empty() ? labels : std::vector<Label>{labels.front()};
}

// Clips the segment a-b to the rectangle; false when nothing of it is inside.
bool clipSegment(Point& a, Point& b, double x0, double y0, double x1, double y1) {
    double t0 = 0.0, t1 = 1.0;
    const double dx = b.x - a.x, dy = b.y - a.y;
    const double p[4] = {-dx, dx, -dy, dy};
    const double q[4] = {a.x - x0, x1 - a.x, a.y - y0, y1 - a.y};
    for (int i = 0; i < 4; ++i) {
        if (p[i] == 0.0) {
            if (q[i] < 0.0) return false;
            continue;
        }
        const double r = q[i] / p[i];
        if (p[i] < 0.0) t0 = std::max(t0, r);
        else t1 = std::min(t1, r);
        if (t0 > t1) return false;
    }
    const Point start{a.x + t0 * dx, a.y + t0 * dy};
    b = Point{a.x + t1 * dx, a.y + t1 * dy};
    a = start;
    return true;
}

}  // namespace

void AxesPainter::setFont(bool bold, double size) {
    cairo_select_font_face(cr_, "DejaVu Sans", CAIRO_FONT_SLANT_NORMAL,
                           bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(cr_, size);
}

void AxesPainter::setColour(const Colour& c) { cairo_set_source_rgb(cr_, c.red / 255.0, c.green / 255.0, c.blue / 255.0); }

double AxesPainter::lineHeight() const { return font_ * 1.2; }

double AxesPainter::textWidth(const std::string& s, bool bold) {
    setFont(bold, font_);
    cairo_text_extents_t e;
    cairo_text_extents(cr_, s.c_str(), &e);
    return e.x_advance;
}

void AxesPainter::text(const std::string& s, double x, double y, HAlign h, VAlign v, double angle, double maxWidth,
                       bool bold) {
    if (s.empty()) return;
    double size = font_;
    setFont(bold, size);
    cairo_text_extents_t e;
    cairo_text_extents(cr_, s.c_str(), &e);
    if (maxWidth > 0.0 && e.x_advance > maxWidth) {
        size = std::max(font_ * 0.5, font_ * maxWidth / e.x_advance);
        setFont(bold, size);
        cairo_text_extents(cr_, s.c_str(), &e);
    }
    cairo_font_extents_t f;
    cairo_font_extents(cr_, &f);
    const double w = e.x_advance;
    const double dx = h == HAlign::Left ? 0.0 : h == HAlign::Centre ? -w / 2 : -w;
    // The baseline sits so that the line's ascent and descent fit the alignment.
    const double dy = v == VAlign::Top ? f.ascent : v == VAlign::Middle ? (f.ascent - f.descent) / 2 : -f.descent;
    cairo_save(cr_);
    cairo_translate(cr_, x, y);
    cairo_rotate(cr_, -angle * std::numbers::pi / 180.0);
    cairo_move_to(cr_, dx, dy);
    cairo_show_text(cr_, s.c_str());
    cairo_restore(cr_);
}

AxesTransform AxesPainter::paint(const Axes& axes, double cellLeft, double cellTop, double cellWidth,
                                 double cellHeight) {
    const double lh = lineHeight();
    const bool showTicks = axes.message.empty();
    auto labelsOf = [&](const AxisSpec& a) {
        std::vector<Label> out;
        if (!a.visible || !showTicks) return out;
        for (double v : ticksOf(a).values) out.push_back({v, 0.0, Ticks::label(a.tickFormat, v)});
        return out;
    };
    std::vector<Label> xl = labelsOf(axes.x);
    std::vector<Label> yl = labelsOf(axes.y);
    double yLabelWidth = 0.0;
    for (const Label& l : yl) yLabelWidth = std::max(yLabelWidth, textWidth(l.text));
    const double firstX = xl.empty() ? 0.0 : textWidth(xl.front().text) / 2;
    const double lastX = xl.empty() ? 0.0 : textWidth(xl.back().text) / 2;

    double left = kPad + (axes.y.title.empty() ? 0.0 : lh + kPad) + (yl.empty() ? 0.0 : yLabelWidth + kTickGap + kTickLength);
    left = std::max(left, kPad + firstX);
    const double right = std::max(kPad + lastX, kPad * 2);
    const double top = kPad + (axes.title.empty() ? 0.0 : lh + kPad) + (yl.empty() ? 0.0 : lh / 2);
    const double bottom = kPad + (axes.x.title.empty() ? 0.0 : lh + kPad) + (xl.empty() ? 0.0 : lh + kTickGap + kTickLength);
    const double plotLeft = cellLeft + left;
    const double plotTop = cellTop + top;
    const double plotWidth = std::max(cellWidth - left - right, 10.0);
    const double plotHeight = std::max(cellHeight - top - bottom, 10.0);
    const AxesTransform t(plotLeft, plotTop, plotWidth, plotHeight, axes.x, axes.y);

    setColour(axes.background);
    cairo_rectangle(cr_, plotLeft, plotTop, plotWidth, plotHeight);
    cairo_fill(cr_);

    if (axes.message.empty()) {
        drawPrimitives(axes, t);
    } else {
        setColour(Colour{0, 0, 0});
        text(axes.message, plotLeft + plotWidth / 2, plotTop + plotHeight / 2, HAlign::Centre, VAlign::Middle, 0.0,
             plotWidth - 2 * kPad);
    }

    // Frame, ticks and labels over the data, in black.
    setColour(Colour{0, 0, 0});
    cairo_set_dash(cr_, nullptr, 0, 0.0);
    cairo_set_line_width(cr_, kFrameWidth);
    cairo_rectangle(cr_, plotLeft, plotTop, plotWidth, plotHeight);
    cairo_stroke(cr_);
    for (Label& l : xl) l.pixel = t.toPixelX(l.value);
    for (Label& l : yl) l.pixel = t.toPixelY(l.value);
    xl = thinned(xl, [this](const Label& l) { return textWidth(l.text); }, font_ * 0.8);
    yl = thinned(yl, [lh](const Label&) { return lh; }, lh * 0.2);
    const double bottomEdge = plotTop + plotHeight;
    for (const Label& l : xl) {
        cairo_move_to(cr_, l.pixel, bottomEdge);
        cairo_line_to(cr_, l.pixel, bottomEdge + kTickLength);
    }
    for (const Label& l : yl) {
        cairo_move_to(cr_, plotLeft, l.pixel);
        cairo_line_to(cr_, plotLeft - kTickLength, l.pixel);
    }
    cairo_stroke(cr_);
    for (const Label& l : xl) text(l.text, l.pixel, bottomEdge + kTickLength + kTickGap, HAlign::Centre, VAlign::Top);
    for (const Label& l : yl) text(l.text, plotLeft - kTickLength - kTickGap, l.pixel, HAlign::Right, VAlign::Middle);

    text(axes.title, plotLeft + plotWidth / 2, cellTop + kPad, HAlign::Centre, VAlign::Top, 0.0, cellWidth - 2 * kPad,
         true);
    text(axes.x.title, plotLeft + plotWidth / 2, cellTop + cellHeight - kPad, HAlign::Centre, VAlign::Bottom, 0.0,
         cellWidth - 2 * kPad);
    text(axes.y.title, cellLeft + kPad, plotTop + plotHeight / 2, HAlign::Centre, VAlign::Top, 90.0,
         cellHeight - 2 * kPad);
    drawLegend(axes, t);
    return t;
}

void AxesPainter::drawPrimitives(const Axes& axes, const AxesTransform& t) {
    const double x0 = t.left(), y0 = t.top(), x1 = t.left() + t.width(), y1 = t.top() + t.height();
    cairo_save(cr_);
    cairo_rectangle(cr_, x0, y0, t.width(), t.height());
    cairo_clip(cr_);
    cairo_set_line_join(cr_, CAIRO_LINE_JOIN_ROUND);

    for (const Bar& b : axes.bars) {
        // Clamped in doubles first: a bar far outside must not reach cairo's fixed point.
        const double bx0 = std::clamp(std::min(t.toPixelX(b.x0), t.toPixelX(b.x1)), x0 - 1, x1 + 1);
        const double bx1 = std::clamp(std::max(t.toPixelX(b.x0), t.toPixelX(b.x1)), x0 - 1, x1 + 1);
        const double by0 = std::clamp(std::min(t.toPixelY(b.y0), t.toPixelY(b.y1)), y0 - 1, y1 + 1);
        const double by1 = std::clamp(std::max(t.toPixelY(b.y0), t.toPixelY(b.y1)), y0 - 1, y1 + 1);
        cairo_rectangle(cr_, bx0, by0, bx1 - bx0, by1 - by0);
        setColour(b.fill);
        cairo_fill_preserve(cr_);
        setColour(b.outline);
        cairo_set_line_width(cr_, 0.5);
        cairo_stroke(cr_);
    }

    const double side = std::min(t.width(), t.height());
    for (const Wedge& w : axes.wedges) {
        const double cx = x0 + w.centreX * t.width();
        const double cy = y1 - w.centreY * t.height();
        const double r = std::clamp(w.radius, 0.0, 1.0) * side;
        const double a0 = -w.startAngle * std::numbers::pi / 180.0;
        const double a1 = -(w.startAngle + std::clamp(w.sweepAngle, -360.0, 360.0)) * std::numbers::pi / 180.0;
        cairo_move_to(cr_, cx, cy);
        if (a1 < a0) cairo_arc_negative(cr_, cx, cy, r, a0, a1);
        else cairo_arc(cr_, cx, cy, r, a0, a1);
        cairo_close_path(cr_);
        setColour(w.fill);
        cairo_fill_preserve(cr_);
        setColour(w.outline);
        cairo_set_line_width(cr_, 0.5);
        cairo_stroke(cr_);
    }
    for (const Polyline& line : axes.lines) drawLine(line, t);
    for (const Markers& m : axes.markers) drawMarkers(m, t);
    cairo_restore(cr_);

    // Wedge labels and texts are not clipped to the plot area; they are kept inside it
    // instead, so that none is cut off.
    for (const Wedge& w : axes.wedges) {
        if (w.label.empty()) continue;
        const double mid = (w.startAngle + w.sweepAngle / 2) * std::numbers::pi / 180.0;
        const double r = std::clamp(w.radius, 0.0, 1.0) * side + kPad;
        const double lx = x0 + w.centreX * t.width() + r * std::cos(mid);
        const double ly = y1 - w.centreY * t.height() - r * std::sin(mid);
        setColour(w.outline);
        text(w.label, lx, ly, std::cos(mid) >= 0 ? HAlign::Left : HAlign::Right, VAlign::Middle);
    }
    for (const Text& s : axes.texts) {
        const double w = textWidth(s.text);
        double px = t.toPixelX(s.x), py = t.toPixelY(s.y);
        if (s.angle == 0.0) {
            const double shift = s.hAlign == HAlign::Left ? 0.0 : s.hAlign == HAlign::Centre ? w / 2 : w;
            px = std::clamp(px - shift, x0 + 1, std::max(x0 + 1, x1 - 1 - w)) + shift;
            py = std::clamp(py, y0 + lineHeight(), y1 - 1);
        } else {
            px = std::clamp(px, x0, x1);
            py = std::clamp(py, y0, y1);
        }
        setColour(s.colour);
        text(s.text, px, py, s.hAlign, s.vAlign, s.angle);
    }
}

void AxesPainter::drawLine(const Polyline& line, const AxesTransform& t) {
    // Segments are clipped in doubles against a rectangle a little larger than the
    // plot area, so that a point far off the scale (a density's pole) never reaches
    // cairo's fixed-point coordinates, and the visible part keeps its true slope.
    const double m = 2.0 * line.width + 2.0;
    const double x0 = t.left() - m, y0 = t.top() - m, x1 = t.left() + t.width() + m, y1 = t.top() + t.height() + m;
    cairo_new_path(cr_);
    Point last{NAN, NAN};
    for (size_t i = 1; i < line.points.size(); ++i) {
        Point a = t.toPixel(line.points[i - 1]);
        Point b = t.toPixel(line.points[i]);
        if (!clipSegment(a, b, x0, y0, x1, y1)) continue;
        if (!(a.x == last.x && a.y == last.y)) cairo_move_to(cr_, a.x, a.y);
        cairo_line_to(cr_, b.x, b.y);
        last = b;
    }
    const std::vector<double> pattern = dashPattern(line.style);
    std::vector<double> dashes;
    for (double d : pattern) dashes.push_back(d * std::max(line.width, 0.5));
    cairo_set_dash(cr_, dashes.data(), static_cast<int>(dashes.size()), 0.0);
    cairo_set_line_width(cr_, line.width);
    setColour(line.colour);
    cairo_stroke(cr_);
    cairo_set_dash(cr_, nullptr, 0, 0.0);
}

void AxesPainter::drawMarkers(const Markers& m, const AxesTransform& t) {
    const double s = m.size, half = s / 2;
    const double x0 = t.left() - s, y0 = t.top() - s, x1 = t.left() + t.width() + s, y1 = t.top() + t.height() + s;
    // One path for the whole cloud: a single fill is much faster than one per mark.
    cairo_new_path(cr_);
    for (const Point& p : m.points) {
        const Point px = t.toPixel(p);
        if (!(px.x >= x0 && px.x <= x1 && px.y >= y0 && px.y <= y1)) continue;
        if (m.shape == MarkerShape::Square) {
            cairo_rectangle(cr_, px.x - half, px.y - half, s, s);
        } else {
            cairo_new_sub_path(cr_);
            cairo_arc(cr_, px.x, px.y, half, 0.0, 2 * std::numbers::pi);
        }
    }
    setColour(m.colour);
    if (m.filled) {
        cairo_fill(cr_);
    } else {
        cairo_set_line_width(cr_, 0.5);
        cairo_stroke(cr_);
    }
}

void AxesPainter::drawLegend(const Axes& axes, const AxesTransform& t) {
    if (axes.legend.empty()) return;
    const double lh = lineHeight();
    const double sample = 18.0;
    double width = 0.0;
    for (const LegendEntry& e : axes.legend) width = std::max(width, textWidth(e.label));
    width = std::min(width + sample + 3 * kPad, t.width());
    const double height = lh * static_cast<double>(axes.legend.size()) + kPad;
    const double left = t.left() + t.width() - width - kPad;
    const double top = t.top() + kPad;
    setColour(Colour{255, 255, 255});
    cairo_rectangle(cr_, left, top, width, height);
    cairo_fill_preserve(cr_);
    setColour(Colour{0, 0, 0});
    cairo_set_line_width(cr_, 0.5);
    cairo_stroke(cr_);
    double y = top + kPad / 2 + lh / 2;
    for (const LegendEntry& e : axes.legend) {
        setColour(e.colour);
        if (e.box) {
            cairo_rectangle(cr_, left + kPad + sample / 2 - 3, y - 3, 6, 6);
            cairo_fill(cr_);
        } else {
            const std::vector<double> pattern = dashPattern(e.style);
            cairo_set_dash(cr_, pattern.data(), static_cast<int>(pattern.size()), 0.0);
            cairo_set_line_width(cr_, 1.0);
            cairo_move_to(cr_, left + kPad, y);
            cairo_line_to(cr_, left + kPad + sample, y);
            cairo_stroke(cr_);
            cairo_set_dash(cr_, nullptr, 0, 0.0);
        }
        setColour(Colour{0, 0, 0});
        text(e.label, left + 2 * kPad + sample, y, HAlign::Left, VAlign::Middle, 0.0, width - sample - 3 * kPad);
        y += lh;
    }
}

}  // namespace tarvex
