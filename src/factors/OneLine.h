#pragma once
// Whether a text can be stored as one line of the program's text files.
#include <cstddef>
#include <string>

namespace tarvex {

// True when `text` holds at most `maxLength` bytes and no line end ('\n',
// '\r') or NUL: written as one line, it is read back unchanged by a line read
// that keeps `maxLength` characters.
bool fitsOneLine(const std::string& text, std::size_t maxLength);

} // namespace tarvex
