#pragma once
// The value a number takes in an equation of the internal model: the
// calculator reads the number's "%g" text (six significant digits), digit by
// digit as it reads any real. boundValue() gets the same double without
// printing and parsing where it can decide the six-digit rounding on its own;
// boundValueByText() is the reference that prints and parses.
namespace tarvex {

// Defined for finite values.
double boundValue(double value);
double boundValueByText(double value);

} // namespace tarvex
