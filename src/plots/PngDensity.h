#pragma once
// Cairo writes PNG files without a resolution; a figure for print carries its own, so
// that a word processor places it at its true size.
#include <string>

namespace tarvex {

// The PNG file `png` with a pHYs chunk of `dotsPerInch` after its header (any pHYs
// it had is kept: cairo writes none). Returns `png` unchanged if it is not a PNG.
std::string withPixelDensity(const std::string& png, double dotsPerInch);

}  // namespace tarvex
