#pragma once
// An input of the internal model; position j takes column j of a sample row.
#include <cstdint>
#include <string>
#include <vector>

namespace tarvex {

struct ModelVariable {
    std::string name;
    // Indices of the expressions that mention this variable.
    std::vector<int32_t> usedBy;
};

} // namespace tarvex
