#include "factors/OneLine.h"

namespace tarvex {

bool fitsOneLine(const std::string& text, std::size_t maxLength) {
    return text.size() <= maxLength && text.find_first_of(std::string("\n\r\0", 3)) == std::string::npos;
}

} // namespace tarvex
