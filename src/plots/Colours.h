#pragma once
// The named colours of the plots, with the values of the X11 colour database
// (rgb.txt), which is what the program's colour names have always meant: "Green"
// is 0,255,0 and "gray" 190,190,190 there, unlike the web's names of the same
// spelling. Names match as X11 matches them: case and blanks do not count
// ("Midnight blue" is "MidnightBlue").
#include <string>

#include "plots/Colour.h"

namespace tarvex {

class Colours {
public:
    // The colour of a name of the table; 0 for an unknown name, `out` unchanged.
    [[nodiscard]] static int byName(const std::string& name, Colour& out);
    // The same, with black for an unknown name.
    static Colour named(const std::string& name);
    // A colour given as 16-bit channels, scaled to the nearest 8-bit value.
    static Colour from16Bit(unsigned red, unsigned green, unsigned blue);

    // Pie colours by position; past the end of a list, black.
    static Colour fastPie(int position);
    static Colour otherPie(int position);
    static int pieListSize();

    static Colour black() { return {0, 0, 0}; }
    static Colour white() { return {255, 255, 255}; }
};

}  // namespace tarvex
