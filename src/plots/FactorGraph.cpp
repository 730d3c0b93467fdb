#include "plots/FactorGraph.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "factors/Constant.h"
#include "factors/Discrete.h"
#include "factors/Uniform.h"
#include "plots/Colours.h"
#include "plots/FactorSpan.h"
#include "plots/FigureGuard.h"
#include "plots/Ticks.h"

namespace tarvex {

namespace {

// A point of a discrete (or constant) factor.
struct Mass {
    double x, weight;
};

Colour curveColour() { return Colours::named("Blue"); }

Axes baseAxes(const Factor& factor, const char* yTitle) {
    Axes a;
    a.title = factor.name() + " (" + factor.typeName() + ")";
    a.x.title = "Value";
    a.y.title = yTitle;
    return a;
}

// Sets the range and the label format of an axis (Ticks::factorFormat).
void setRange(AxisSpec& axis, double min, double max) {
    Ticks::widen(min, max);
    axis.min = min;
    axis.max = max;
    axis.tickFormat = Ticks::factorFormat(Ticks::linear(min, max).step, std::max(std::fabs(min), std::fabs(max)));
}

// The x range of stems and steps: the span with a margin, so that the outer points
// do not sit on the frame.
void setPointRange(AxisSpec& axis, double low, double high) {
    double lo = low, hi = high;
    Ticks::widen(lo, hi);
    const double margin = (hi / 2 - lo / 2) * 0.1;
    setRange(axis, lo - margin, hi + margin);
}

bool pointMasses(const Factor& factor, std::vector<Mass>& out) {
    if (auto* c = dynamic_cast<const Constant*>(&factor)) {
        out.push_back({c->value, 1.0});
        return true;
    }
    if (auto* d = dynamic_cast<const Discrete*>(&factor)) {
        for (int i = 0; i < d->count(); ++i) out.push_back({d->intervalAt(i)->left, d->intervalAt(i)->weight});
        std::sort(out.begin(), out.end(), [](const Mass& a, const Mass& b) { return a.x < b.x; });
        return true;
    }
    return false;
}

// The y axis of a density: up to the largest value, but where a pole (or a spike far
// above the bulk of the curve) would flatten everything else, up to five times the
// 90th percentile of the values; the points above leave the plot at its top.
double densityTop(std::vector<Point>& points) {
    std::vector<double> finite;
    for (const Point& p : points)
        if (std::isfinite(p.y) && p.y > 0.0) finite.push_back(p.y);
    if (finite.empty()) return 0.0;
    std::sort(finite.begin(), finite.end());
    const double largest = finite.back();
    const double p90 = finite[static_cast<size_t>(0.9 * static_cast<double>(finite.size() - 1))];
    const double top = std::min(largest, 5.0 * p90);
    for (Point& p : points)
        if (std::isnan(p.y)) p.y = 0.0;
        else if (p.y > top) p.y = 3.0 * top;  // finite, and past the top edge
    return top;
}

}  // namespace

int FactorGraph::refuse(Figure& figure) {
    errorText_ = kUnderflowWarning;
    if (figure.axes.empty()) figure.axes.emplace_back();
    Axes& a = figure.axes.front();
    a.bars.clear();
    a.wedges.clear();
    a.lines.clear();
    a.markers.clear();
    a.texts.clear();
    a.message = kUnderflowWarning;
    return 0;
}

int FactorGraph::density(const Factor& factor, Figure& figure) {
    figure = Figure{};
    double low = 0.0, high = 0.0;
    std::vector<Mass> masses;
    const bool discrete = pointMasses(factor, masses);
    Axes a = baseAxes(factor, discrete ? "Probability" : "Probability density");
    figure.axes.push_back(a);
    if (!FactorSpan::find(factor, low, high)) return refuse(figure);
    Axes& axes = figure.axes.front();

    if (discrete) {
        double top = 0.0;
        Markers heads;
        heads.shape = MarkerShape::Circle;
        heads.size = 4.0;
        heads.colour = curveColour();
        for (const Mass& m : masses) {
            Polyline stem;
            stem.colour = curveColour();
            stem.width = 1.5;
            stem.points = {{m.x, 0.0}, {m.x, m.weight}};
            axes.lines.push_back(stem);
            heads.points.push_back({m.x, m.weight});
            if (std::isfinite(m.weight)) top = std::max(top, m.weight);
        }
        axes.markers.push_back(heads);
        if (!(top > 0.0)) return refuse(figure);
        setPointRange(axes.x, low, high);
        setRange(axes.y, 0.0, top * 1.1);
        FigureGuard::apply(figure);
        errorText_ = "No errors";
        return 1;
    }

    auto* dist = dynamic_cast<const Distribution*>(&factor);
    if (!dist) return refuse(figure);
    Polyline curve;
    curve.colour = curveColour();
    curve.width = 1.2;
    if (auto* u = dynamic_cast<const Uniform*>(&factor)) {
        // Steps: each interval drawn from its own inside, so that a jump between
        // touching intervals is shown as it is; zero across the gaps.
        const int inside = factor.getType() == kUniform ? 1 : 64;
        for (int i = 0; i < u->count(); ++i) {
            const Interval& iv = *u->intervalAt(i);
            const double width = iv.right - iv.left;
            curve.points.push_back({iv.left, 0.0});
            for (int k = 0; k <= inside; ++k) {
                const double t = std::clamp(static_cast<double>(k) / inside, 1e-9, 1.0 - 1e-9);
                const double x = iv.left + t * width;
                curve.points.push_back({k == 0 ? iv.left : k == inside ? iv.right : x, dist->density(x)});
            }
            curve.points.push_back({iv.right, 0.0});
        }
        setPointRange(axes.x, low, high);
    } else {
        for (int k = 0; k < kGridPoints; ++k) {
            const double x = k + 1 == kGridPoints ? high : low + (high - low) * k / (kGridPoints - 1);
            curve.points.push_back({x, dist->density(x)});
        }
        setRange(axes.x, low, high);
    }
    const double top = densityTop(curve.points);
    if (!(top > 0.0) || !std::isfinite(top)) return refuse(figure);
    axes.lines.push_back(curve);
    setRange(axes.y, 0.0, top * 1.05);
    FigureGuard::apply(figure);
    errorText_ = "No errors";
    return 1;
}

int FactorGraph::cumulative(const Factor& factor, Figure& figure) {
    figure = Figure{};
    double low = 0.0, high = 0.0;
    std::vector<Mass> masses;
    const bool discrete = pointMasses(factor, masses);
    figure.axes.push_back(baseAxes(factor, "Cumulative probability"));
    if (!FactorSpan::find(factor, low, high)) return refuse(figure);
    Axes& axes = figure.axes.front();
    Polyline curve;
    curve.colour = curveColour();
    curve.width = 1.2;
    double total = 1.0;

    if (discrete) {
        setPointRange(axes.x, low, high);
        double sum = 0.0;
        curve.points.push_back({axes.x.min, 0.0});
        for (const Mass& m : masses) {
            curve.points.push_back({m.x, sum});
            if (std::isfinite(m.weight)) sum += m.weight;
            curve.points.push_back({m.x, sum});
        }
        curve.points.push_back({axes.x.max, sum});
        total = sum;
    } else {
        auto* dist = dynamic_cast<const Distribution*>(&factor);
        if (!dist) return refuse(figure);
        std::vector<double> xs;
        if (auto* u = dynamic_cast<const Uniform*>(&factor)) {
            setPointRange(axes.x, low, high);
            const int inside = factor.getType() == kUniform ? 1 : 64;
            xs.push_back(axes.x.min);
            for (int i = 0; i < u->count(); ++i) {
                const Interval& iv = *u->intervalAt(i);
                for (int k = 0; k <= inside; ++k) xs.push_back(iv.left + (iv.right - iv.left) * k / inside);
            }
            xs.push_back(axes.x.max);
        } else {
            setRange(axes.x, low, high);
            for (int k = 0; k < kGridPoints; ++k)
                xs.push_back(k + 1 == kGridPoints ? high : low + (high - low) * k / (kGridPoints - 1));
        }
        bool any = false;
        for (double x : xs) {
            const double c = dist->cumulative(x);
            // A refused argument (-1) is a gap in the curve, not a value.
            const bool fine = std::isfinite(c) && c >= 0.0;
            any = any || fine;
            curve.points.push_back({x, fine ? std::min(c, 1.0) : NAN});
        }
        if (!any) return refuse(figure);
    }
    axes.lines.push_back(curve);
    setRange(axes.y, 0.0, std::max(1.0, total) * 1.05);
    FigureGuard::apply(figure);
    errorText_ = "No errors";
    return 1;
}

}  // namespace tarvex
