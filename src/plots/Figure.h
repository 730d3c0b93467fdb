#pragma once
// A figure: one or more axes laid out in a grid, row by row, under an optional title.
// Builders fill it; renderers read it and never change it.
#include <string>
#include <vector>

#include "plots/Axes.h"

namespace tarvex {

struct Figure {
    std::vector<Axes> axes;
    int columns = 1;
    // Height over width of the whole figure; a file is 160 mm wide.
    double aspect = 0.75;
    std::string title;

    int rows() const {
        const int c = columns < 1 ? 1 : columns;
        return (static_cast<int>(axes.size()) + c - 1) / c;
    }
};

}  // namespace tarvex
