#pragma once
// Keeps NaN and infinity out of what is drawn. Run by the renderer on its own copy of
// every figure, and open to builders that want to know what will be shown.
#include "plots/Figure.h"

namespace tarvex {

inline constexpr const char* kNoDataText = "No data";

class FigureGuard {
public:
    // In every axes: a polyline is split at its non-finite points (a gap, not a
    // line to nowhere) and pieces of fewer than two points go; markers, bars, texts
    // and wedges with a non-finite value go; on a log axis, so do points at or below
    // zero. Axis ranges that are not finite or have no width are widened (Ticks::widen);
    // a log axis whose range is not positive turns linear. An axes left with nothing
    // to draw gets the message "No data" unless it has one. Returns the number of
    // values dropped.
    static long apply(Figure& figure);
    static long apply(Axes& axes);
};

}  // namespace tarvex
