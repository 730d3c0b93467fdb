#pragma once
// The graphics of one factor, as the definition panels and inspectors show them:
// its density (or, for a discrete factor, the mass of each point) and its cumulative
// distribution over the factor's truncated span.
#include <string>

#include "plots/Figure.h"

namespace tarvex {

class Factor;

inline constexpr const char* kUnderflowWarning = "Warning. Can't display function graph: undeflow error";

class FactorGraph {
public:
    // Fill `figure` with one axes. Discrete factors (and constants, one point of
    // mass 1) are drawn as stems and a staircase, Uniform and LogUniform as steps
    // with their jumps, the other laws as curves on a fine grid. A density with a
    // pole (Beta with a shape below 1) clips the y axis at a height that keeps the
    // rest of the curve readable; the curve leaves the top of the plot.
    // Returns 1; or 0 with errorText the underflow warning when the factor has no
    // span or no drawable value, the figure then showing that warning.
    [[nodiscard]] int density(const Factor& factor, Figure& figure);
    [[nodiscard]] int cumulative(const Factor& factor, Figure& figure);

    const std::string& errorText() const { return errorText_; }

    // Grid points of a continuous curve.
    static constexpr int kGridPoints = 401;

private:
    int refuse(Figure& figure);
    std::string errorText_ = "No errors";
};

}  // namespace tarvex
