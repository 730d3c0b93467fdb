#include "model/BoundValue.h"

#include <array>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "factors/CompiledExpression.h"
#include "factors/ExpressionCompiler.h"

namespace tarvex {

namespace {

constexpr int kMaxExponent = 330;

// 10^k as the nearest double, for scaling a value to six digits.
const std::array<double, 2 * kMaxExponent + 1>& scales() {
    static const auto table = [] {
        std::array<double, 2 * kMaxExponent + 1> t{};
        for (int k = -kMaxExponent; k <= kMaxExponent; ++k)
            t[static_cast<std::size_t>(k + kMaxExponent)] = static_cast<double>(powl(10.0L, k));
        return t;
    }();
    return table;
}

// pow(10.0, e) exactly as the calculator computes it when it reads "e<e>".
const std::array<double, 2 * kMaxExponent + 1>& powers() {
    static const auto table = [] {
        std::array<double, 2 * kMaxExponent + 1> t{};
        for (int e = -kMaxExponent; e <= kMaxExponent; ++e)
            t[static_cast<std::size_t>(e + kMaxExponent)] = std::pow(10.0, static_cast<double>(e));
        return t;
    }();
    return table;
}

double scale(int k) { return scales()[static_cast<std::size_t>(k + kMaxExponent)]; }

// a * 10^k within three units in the last place; in two steps where 10^k
// alone would overflow.
double scaled(double a, int k) { return k > 300 ? (a * 1e150) * scale(k - 150) : a * scale(k); }

// Builds a fraction from its digits as the calculator does: from the last
// digit to the first, f = (d + f) * 0.1.
double fractionOf(const int* digits, int count) {
    double f = 0.0;
    for (int i = count; i-- > 0;) f = (digits[i] + f) * 0.1;
    return f;
}

// The three decimal digits of 0 to 999.
const std::array<std::array<uint8_t, 3>, 1000>& digitTable() {
    static const auto table = [] {
        std::array<std::array<uint8_t, 3>, 1000> t{};
        for (int v = 0; v < 1000; ++v)
            t[static_cast<std::size_t>(v)] = {static_cast<uint8_t>(v / 100), static_cast<uint8_t>(v / 10 % 10),
                                              static_cast<uint8_t>(v % 10)};
        return t;
    }();
    return table;
}

} // namespace

double boundValueByText(double value) {
    char text[48];
    const int length = printBoundValue(value, text);
    // "-" before a real is the unary minus of the calculator.
    const bool negative = text[0] == '-';
    std::size_t pos = negative ? 1 : 0;
    double v = 0.0;
    // The "%g" text of a finite value is always a real.
    (void)scanReal(std::string_view(text, static_cast<std::size_t>(length)), pos, v);
    return negative ? -v : v;
}

double boundValue(double value) {
    if (value == 0.0) return value;  // "0" or "-0"
    const double a = std::fabs(value);
    if (!(a >= DBL_MIN) || !(a <= DBL_MAX)) return boundValueByText(value);

    // Six significant digits: n = a * 10^(5 - x) rounded, with x the decimal
    // exponent. The product is off by at most a few units in its last place,
    // below 1e-9 at this size; only a fraction that close to one half needs
    // the exact printing (exact ties among them). x starts from the binary
    // exponent times log10(2), which is the true exponent or one below it.
    uint64_t bits = 0;
    std::memcpy(&bits, &a, sizeof bits);
    const int binary = static_cast<int>(bits >> 52) - 1023;  // a = 1.f * 2^binary
    int x = (binary * 78913) >> 18;                         // floor(binary * log10(2))
    double s = scaled(a, 5 - x);
    while (s >= 1e6) s = scaled(a, 5 - ++x);
    // s may lie a hair below 1e5 when the value is a hair above a power of
    // ten: its rounding then gives 100000, as it should.
    while (s < 99999.5) s = scaled(a, 5 - --x);
    const auto whole = static_cast<long>(s);
    const double rest = s - static_cast<double>(whole);
    if (std::fabs(rest - 0.5) < 1e-8) return boundValueByText(value);
    long n = whole + (rest > 0.5 ? 1 : 0);
    if (n == 1000000) {
        n = 100000;
        ++x;
    }
    if (x < -kMaxExponent || x > kMaxExponent) return boundValueByText(value);

    int digits[6];
    const uint8_t* high = digitTable()[n / 1000].data();
    const uint8_t* low = digitTable()[n % 1000].data();
    for (int i = 0; i < 3; ++i) {
        digits[i] = high[i];
        digits[3 + i] = low[i];
    }
    int count = 6;  // "%g" drops trailing zeros
    while (count > 1 && digits[count - 1] == 0) --count;

    double m = 0.0;
    if (x < -4 || x >= 6) {
        // d.ddddde+XX
        m = digits[0] + fractionOf(digits + 1, count - 1);
        m = m * powers()[static_cast<std::size_t>(x + kMaxExponent)];
    } else if (x >= 0) {
        // ddd.ddd: the whole part is an integer below 10^6, exact in a double.
        double w = 0.0;
        for (int i = 0; i <= x; ++i) w = w * 10.0 + digits[i];
        m = w + (count > x + 1 ? fractionOf(digits + x + 1, count - x - 1) : 0.0);
    } else {
        // 0.000ddd: leading zeros of the fraction, then the digits.
        int all[10];
        const int zeros = -x - 1;
        for (int i = 0; i < zeros; ++i) all[i] = 0;
        for (int i = 0; i < count; ++i) all[zeros + i] = digits[i];
        m = 0.0 + fractionOf(all, zeros + count);
    }
    return value < 0 ? -m : m;
}

} // namespace tarvex
