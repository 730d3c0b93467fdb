#include "model/levele/LevelEFactors.h"

#include <cmath>

namespace tarvex::levele {

int factorIndex(std::string_view name) {
    for (int i = 0; i < kFactorCount; ++i)
        if (kFactorRanges[static_cast<std::size_t>(i)].name == name) return i;
    return -1;
}

std::string_view valueProblem(int factor, double value) {
    if (!std::isfinite(value)) return "is not finite";
    // A containment that fails at once is a real case; every other factor
    // divides or scales the transport, and 0 would make it meaningless.
    if (factor == kContainmentTime) return value < 0.0 ? "is negative" : "";
    return value > 0.0 ? "" : "is not above 0";
}

bool insidePublishedRange(int factor, double value) {
    const FactorRange& range = kFactorRanges[static_cast<std::size_t>(factor)];
    return value >= range.low && value <= range.high;
}

}  // namespace tarvex::levele
