#pragma once
// An opaque colour of a figure, 8 bits a channel. Figures go to paper as they
// are: there is no transparency.
#include <cstdint>

namespace tarvex {

struct Colour {
    uint8_t red = 0;
    uint8_t green = 0;
    uint8_t blue = 0;

    friend bool operator==(const Colour&, const Colour&) = default;
};

}  // namespace tarvex
