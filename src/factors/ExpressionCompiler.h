#pragma once
// Parser of the calculator language. It reads a text once and records, in
// order, every reduction that evaluating the text performs (see
// ExpressionProgram.h); a failure found while reading (a syntax error, an
// unknown function, a full stack) ends the program with a Fail instruction at
// the place where evaluation would stop.
#include <string_view>

#include "factors/ExpressionProgram.h"

namespace tarvex {

// Limits a user can reach with long or deeply nested texts.
inline constexpr int kCharacterStackSize = 1000;  // characters of the names read at once
inline constexpr int kArgumentStackSize = 200;    // arguments of the calls being read
inline constexpr int kMaxNesting = 37;            // open parentheses and "?" awaiting ":"

// Reads a real at text[pos], digit by digit in double arithmetic: the whole
// part as v * 10 + d, the fraction from its last digit as (d + f) * 0.1, a
// 32-bit exponent applied by pow(10.0, e). Returns 0 and moves pos behind the
// real; 1 for a lone "." and 2 for an "e" without digits, pos then at the
// character where a digit was wanted.
[[nodiscard]] int scanReal(std::string_view text, std::size_t& pos, double& value);

// Compiles `text` (up to its end or its first NUL) into `program`, which is
// cleared first. Positions count lines from `firstLine` and columns from 1.
void compileExpression(std::string_view text, int firstLine, ExprProgram& program);

} // namespace tarvex
