#pragma once
// Whole-line reads of the factor files and their relatives.
#include <cstddef>
#include <istream>
#include <string>

namespace tarvex {

// Reads one line as a read into a buffer of `bufferBytes` bytes would: at most
// bufferBytes - 1 characters are kept, and a longer line fails (the stream is
// left in its fail state, so every later read fails too). A read at the end of
// the stream that finds nothing fails as well. Trailing carriage returns are
// dropped, so that files written with CRLF line ends read the same.
// Returns true on success.
[[nodiscard]] bool readLine(std::istream& in, std::string& line, std::size_t bufferBytes);

// Drops the carriage returns at the end of a line.
void dropCarriageReturns(std::string& line);

// Reads away the rest of the current line, newline included. Reaching the end
// of the stream is not a failure here.
void skipLine(std::istream& in);

} // namespace tarvex
