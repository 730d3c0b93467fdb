#pragma once
// Points of Sobol's LP-tau sequence (I. M. Sobol', "On the distribution of
// points in a cube and the approximate evaluation of integrals", USSR Comput.
// Math. Math. Phys. 7, 1967), a base-2 quasi-random sequence of at most 370
// dimensions, in natural order: the points with indices 0 to 2^m - 1 fall one
// in each dyadic interval of length 2^-m of every coordinate.
//
// Consecutive indices cost one XOR per coordinate (Gray-code stepping: the row
// of the index's lowest set bit); any other index, or a wider point than the
// last, is made afresh from the set bits of (n / 2) XOR n. Either way the
// point is the same.
#include <cstdint>
#include <vector>

#include "sampling/LpTauDirections.h"

namespace tarvex {

class LpTauGenerator {
public:
    // Point n of `dimension` coordinates, each an integer multiple of 2^-31
    // in [0, 1), into out[0 .. dimension - 1]. Returns 0, leaving out and the
    // state as they were, if n is negative or dimension is outside 1 to 370.
    // Point 0 is the origin; the samplers start from point 1.
    [[nodiscard]] int point(int32_t n, int32_t dimension, double* out);

    int32_t lastIndex() const { return lastIndex_; }

private:
    int32_t lastIndex_ = -2;
    int32_t lastDimension_ = 0;
    uint32_t point_[kLpTauDimensions] = {};
};

// The sequence's point n, with out resized to `dimension` values; 1, or 0 as
// LpTauGenerator::point. Steps from the point this thread asked for last, so
// walking n = 1, 2, 3, ... costs one XOR per coordinate; separate threads
// keep separate state.
[[nodiscard]] int lpTauPoint(int32_t n, int32_t dimension, std::vector<double>& out);

}  // namespace tarvex
