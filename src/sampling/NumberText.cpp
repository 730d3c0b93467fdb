#include "sampling/NumberText.h"

#include <charconv>
#include <istream>

namespace tarvex {

bool readNumber(std::istream& in, double& value) {
    std::string token;
    if (!(in >> token)) return false;
    const char* first = token.data();
    const char* last = first + token.size();
    // from_chars refuses a leading '+', which stream extraction takes.
    if (first != last && *first == '+' && last - first > 1 && first[1] != '-') ++first;
    double parsed = 0.0;
    const auto result = std::from_chars(first, last, parsed, std::chars_format::general);
    if (result.ec != std::errc() || result.ptr != last) {
        in.setstate(std::ios::failbit);
        return false;
    }
    value = parsed;
    return true;
}

void appendNumber(std::string& text, double value, int digits) {
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, digits);
    text.append(buffer, result.ptr);
}

}  // namespace tarvex
