#include "plots/FigureGuard.h"

#include <cmath>

#include "plots/Ticks.h"

namespace tarvex {

namespace {

bool fine(double v, bool logScale) { return std::isfinite(v) && (!logScale || v > 0.0); }

void guardRange(AxisSpec& a) {
    if (a.scale == Scale::Log && !(a.min > 0.0 && a.max > 0.0 && std::isfinite(a.min) && std::isfinite(a.max)))
        a.scale = Scale::Linear;
    Ticks::widen(a.min, a.max);
    if (a.scale == Scale::Log && std::log10(a.max) - std::log10(a.min) < 1e-12) {
        a.min /= 1.5;
        a.max *= 1.5;
    }
    std::vector<double> kept;
    for (double t : a.ticks)
        if (std::isfinite(t)) kept.push_back(t);
    a.ticks.swap(kept);
}

}  // namespace

long FigureGuard::apply(Axes& axes) {
    guardRange(axes.x);
    guardRange(axes.y);
    const bool lx = axes.x.scale == Scale::Log;
    const bool ly = axes.y.scale == Scale::Log;
    auto pointFine = [&](const Point& p) { return fine(p.x, lx) && fine(p.y, ly); };
    long dropped = 0;

    std::vector<Polyline> lines;
    for (Polyline& line : axes.lines) {
        Polyline piece = line;
        piece.points.clear();
        if (!std::isfinite(piece.width) || piece.width < 0.0) piece.width = 1.0;
        auto flush = [&] {
            if (piece.points.size() >= 2) lines.push_back(piece);
            else dropped += static_cast<long>(piece.points.size());
            piece.points.clear();
        };
        for (const Point& p : line.points) {
            if (pointFine(p)) {
                piece.points.push_back(p);
            } else {
                ++dropped;
                flush();
            }
        }
        flush();
    }
    axes.lines.swap(lines);

    for (Markers& m : axes.markers) {
        std::vector<Point> kept;
        kept.reserve(m.points.size());
        for (const Point& p : m.points)
            if (pointFine(p)) kept.push_back(p);
        dropped += static_cast<long>(m.points.size() - kept.size());
        m.points.swap(kept);
        if (!std::isfinite(m.size) || m.size < 0.0) m.size = 3.0;
    }
    std::erase_if(axes.markers, [](const Markers& m) { return m.points.empty(); });

    dropped += static_cast<long>(std::erase_if(axes.bars, [&](const Bar& b) {
        return !fine(b.x0, lx) || !fine(b.x1, lx) || !fine(b.y0, ly) || !fine(b.y1, ly);
    }));
    dropped += static_cast<long>(std::erase_if(axes.wedges, [](const Wedge& w) {
        return !std::isfinite(w.centreX) || !std::isfinite(w.centreY) || !std::isfinite(w.radius) ||
               !std::isfinite(w.startAngle) || !std::isfinite(w.sweepAngle);
    }));
    dropped += static_cast<long>(std::erase_if(axes.texts, [&](const Text& t) {
        return !pointFine(Point{t.x, t.y}) || !std::isfinite(t.angle);
    }));

    if (axes.empty() && axes.message.empty()) axes.message = kNoDataText;
    return dropped;
}

long FigureGuard::apply(Figure& figure) {
    if (!std::isfinite(figure.aspect) || figure.aspect < 0.1 || figure.aspect > 10.0) figure.aspect = 0.75;
    if (figure.columns < 1) figure.columns = 1;
    long dropped = 0;
    for (Axes& a : figure.axes) dropped += apply(a);
    return dropped;
}

}  // namespace tarvex
