#include "sampling/NumberText.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <istream>
#include <limits>
#include <locale.h>

namespace tarvex {

namespace {

// from_chars refuses numbers beyond the range of double. Below it, the
// nearest value (a subnormal or zero) is what the writer meant. Above it, only
// the largest double itself comes back: written at ten digits it reads as
// 1.797693135e308, just beyond the range. Anything larger is refused.
bool outOfRange(const char* first, double& value) {
    static const locale_t cLocale = newlocale(LC_ALL_MASK, "C", locale_t(nullptr));
    if (cLocale == locale_t(nullptr)) return false;
    const long double wide = strtold_l(first, nullptr, cLocale);
    const long double top = 1.797693135e308L;
    if (std::isnan(wide)) return false;
    if (std::fabs(wide) <= std::numeric_limits<double>::max()) {
        value = static_cast<double>(wide);
        return true;
    }
    if (std::fabs(wide) <= top) {
        value = std::copysign(std::numeric_limits<double>::max(), static_cast<double>(wide));
        return true;
    }
    return false;
}

}  // namespace

bool readNumber(std::istream& in, double& value) {
    std::string token;
    if (!(in >> token)) return false;
    const char* first = token.data();
    const char* last = first + token.size();
    // from_chars refuses a leading '+', which stream extraction takes.
    if (first != last && *first == '+' && last - first > 1 && first[1] != '-') ++first;
    double parsed = 0.0;
    const auto result = std::from_chars(first, last, parsed, std::chars_format::general);
    if (result.ec == std::errc::result_out_of_range && result.ptr == last && outOfRange(first, parsed)) {
        value = parsed;
        return true;
    }
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
