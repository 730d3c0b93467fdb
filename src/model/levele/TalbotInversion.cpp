#include "model/levele/TalbotInversion.h"

#include <cmath>
#include <numbers>

namespace tarvex::levele {

TalbotInversion::TalbotInversion(int nodes)
    : nodes_(nodes < 2 ? 2 : nodes),
      realWeight_(std::exp(0.4 * nodes_)),
      shape_(static_cast<std::size_t>(nodes_)),
      weight_(static_cast<std::size_t>(nodes_)) {
    const double rTau = 0.4 * nodes_;
    for (int k = 1; k < nodes_; ++k) {
        const double theta = k * std::numbers::pi / nodes_;
        const double cot = std::cos(theta) / std::sin(theta);
        const std::complex<double> shape(theta * cot, theta);
        const double sigma = theta + (theta * cot - 1.0) * cot;
        shape_[static_cast<std::size_t>(k)] = shape;
        weight_[static_cast<std::size_t>(k)] = std::exp(rTau * shape) * std::complex<double>(1.0, sigma);
    }
}

}  // namespace tarvex::levele
