#pragma once
// Whole-line reads for the small environment files (start-up file, config.dat,
// launch request), whose lines are at most 1023 characters long.
#include <cstddef>
#include <istream>
#include <string>

namespace tarvex {

// The longest line the environment files may hold.
inline constexpr std::size_t kEnvironmentLineMax = 1023;

// Reads one line into `line` and returns true on success.
//
// It behaves as a whole-line read into a buffer of kEnvironmentLineMax + 1 bytes:
// a read at the end of the stream that finds nothing fails, and a line longer than
// kEnvironmentLineMax characters fails too and leaves the stream in its fail state,
// so that every later read fails as well. `line` then holds the first
// kEnvironmentLineMax characters. Unlike a fixed buffer, nothing overflows and the
// stream is never left in the middle of a line.
//
// One trailing carriage return is dropped, so that a file written with CRLF line
// ends names the same directories and paths as one written with LF.
//
// Its own namespace: the model's readers have a line read of the same name and
// arguments that counts a buffer, not characters, and both end up in one program.
namespace environment {
bool readBoundedLine(std::istream& in, std::string& line, std::size_t maxChars = kEnvironmentLineMax);
}  // namespace environment
using environment::readBoundedLine;

}  // namespace tarvex
