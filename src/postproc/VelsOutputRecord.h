#pragma once
// One model output as the post-processor lists it: its name and the weight
// the user gave it (shown and saved; no calculation reads it yet).
#include <cstddef>
#include <cstdint>
#include <string>

namespace tarvex {

struct VelsOutputRecord {
    // The longest name the record keeps.
    static constexpr std::size_t kNameMax = 4095;

    std::string name;
    float weight = 1.0f;
    bool operator==(const VelsOutputRecord&) const = default;
};

}  // namespace tarvex
