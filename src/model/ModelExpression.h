#pragma once
// One equation of the internal model: name = text.
#include <cstdint>
#include <string>
#include <vector>

namespace tarvex {

struct ModelExpression {
    std::string name;
    std::string text;
    // 1: an output of the model; 0: an internal variable.
    int16_t type = 0;
    // Result of the last evaluation.
    double value = 0.0;
    // Indices of the expressions that mention this one.
    std::vector<int32_t> usedBy;
};

} // namespace tarvex
