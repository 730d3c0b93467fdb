#include "sampling/LpTauGenerator.h"

#include <bit>
#include <cstddef>

namespace tarvex {

namespace {
// Exactly 2^-31: the points are then the dyadic fractions the integers stand for.
constexpr double kScale = 0x1p-31;
}  // namespace

int LpTauGenerator::point(int32_t n, int32_t dimension, double* out) {
    if (n < 0 || dimension < 1 || dimension > kLpTauDimensions) return 0;
    if (n - 1 == lastIndex_ && dimension <= lastDimension_) {
        const uint32_t* row = DIRECTION[std::countr_zero(uint32_t(n))];
        for (int32_t j = 0; j < dimension; ++j) {
            point_[j] ^= row[j];
            out[j] = double(point_[j]) * kScale;
        }
    } else {
        for (int32_t j = 0; j < dimension; ++j) point_[j] = 0;
        for (uint32_t g = uint32_t(n / 2) ^ uint32_t(n); g != 0; g &= g - 1) {
            const uint32_t* row = DIRECTION[std::countr_zero(g)];
            for (int32_t j = 0; j < dimension; ++j) point_[j] ^= row[j];
        }
        for (int32_t j = 0; j < dimension; ++j) out[j] = double(point_[j]) * kScale;
    }
    lastIndex_ = n;
    lastDimension_ = dimension;
    return 1;
}

int lpTauPoint(int32_t n, int32_t dimension, std::vector<double>& out) {
    static thread_local LpTauGenerator generator;
    if (n < 0 || dimension < 1 || dimension > kLpTauDimensions) return 0;
    out.resize(std::size_t(dimension));
    return generator.point(n, dimension, out.data());
}

}  // namespace tarvex
