#include "factors/CompiledExpression.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>

#include "factors/Evaluator.h"
#include "factors/ExpressionCompiler.h"

namespace tarvex {

namespace {

constexpr std::string_view kResultPrefix = "rEsUlTtOtAl = ";

bool isPlainName(const std::string& name) {
    if (name.empty()) return false;
    auto letter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; };
    if (!letter(name[0])) return false;
    return std::all_of(name.begin(), name.end(), [&](char c) { return letter(c) || (c >= '0' && c <= '9'); });
}

// "%g" through the precision overload of to_chars, which prints exactly as
// printf does in the C locale.
int formatGExact(double v, char* buf) {
    const auto r = std::to_chars(buf, buf + 40, v, std::chars_format::general, 6);
    return static_cast<int>(r.ptr - buf);
}

// "%g" of a finite value, from its shortest round-trip digits. Rounding those
// digits to six gives the rounding of the exact binary value, except when
// they stop at a 5 in seventh place: a decimal closer to the value would
// otherwise be shorter or nearer, so the shortest digits lie on the same side
// of every six-digit midpoint as the value. Digits that stop earlier are the
// six-digit rounding itself as long as a double is far more precise than six
// digits, which subnormal values are not. Those cases are printed from the
// exact value.
int formatGFinite(double v, char* buf) {
    if (v == 0.0) {
        if (std::signbit(v)) {
            std::memcpy(buf, "-0", 2);
            return 2;
        }
        buf[0] = '0';
        return 1;
    }
    if (std::fabs(v) < std::numeric_limits<double>::min()) return formatGExact(v, buf);
    char shortest[40];
    const auto r = std::to_chars(shortest, shortest + sizeof shortest, std::fabs(v), std::chars_format::scientific);
    char digits[24];
    int n = 0;
    const char* p = shortest;
    for (; p < r.ptr && *p != 'e'; ++p)
        if (*p != '.') digits[n++] = *p;
    int exponent = 0;
    std::from_chars(p + 1 + (p[1] == '+' ? 1 : 0), r.ptr, exponent);
    if (n > 6) {
        if (n == 7 && digits[6] == '5') return formatGExact(v, buf);
        const bool up = digits[6] >= '5';
        n = 6;
        if (up) {
            int i = 5;
            while (i >= 0 && digits[i] == '9') digits[i--] = '0';
            if (i >= 0) {
                ++digits[i];
            } else {
                digits[0] = '1';
                n = 1;
                ++exponent;
            }
        }
    }
    while (n > 1 && digits[n - 1] == '0') --n;

    int len = 0;
    if (v < 0) buf[len++] = '-';
    if (exponent < -4 || exponent >= 6) {
        buf[len++] = digits[0];
        if (n > 1) {
            buf[len++] = '.';
            for (int i = 1; i < n; ++i) buf[len++] = digits[i];
        }
        buf[len++] = 'e';
        buf[len++] = exponent < 0 ? '-' : '+';
        const int e = exponent < 0 ? -exponent : exponent;
        if (e >= 100) buf[len++] = static_cast<char>('0' + e / 100);
        buf[len++] = static_cast<char>('0' + e / 10 % 10);
        buf[len++] = static_cast<char>('0' + e % 10);
    } else if (exponent >= 0) {
        for (int i = 0; i <= exponent; ++i) buf[len++] = i < n ? digits[i] : '0';
        if (n > exponent + 1) {
            buf[len++] = '.';
            for (int i = exponent + 1; i < n; ++i) buf[len++] = digits[i];
        }
    } else {
        buf[len++] = '0';
        buf[len++] = '.';
        for (int i = 0; i < -exponent - 1; ++i) buf[len++] = '0';
        for (int i = 0; i < n; ++i) buf[len++] = digits[i];
    }
    return len;
}

} // namespace

int printBoundValue(double v, char* buf) {
    if (std::isnan(v)) {
        const char* t = std::signbit(v) ? "-nan" : "nan";
        std::memcpy(buf, t, std::strlen(t));
        return static_cast<int>(std::strlen(t));
    }
    if (std::isinf(v)) {
        const char* t = v < 0 ? "-inf" : "inf";
        std::memcpy(buf, t, std::strlen(t));
        return static_cast<int>(std::strlen(t));
    }
    return formatGFinite(v, buf);
}

std::string formatBoundValue(double value) {
    char buf[256];
    std::snprintf(buf, sizeof buf, "%g", value);
    if (char* comma = std::strchr(buf, ',')) *comma = '.';
    return buf;
}

std::string bindingProgram(const std::vector<std::string>& names, const double* values,
                           std::string_view expression) {
    std::string text;
    for (std::size_t k = names.size(); k-- > 0;) {
        text += names[k];
        text += " = ";
        text += formatBoundValue(values[k]);
        text += ";\n";
    }
    text += kResultPrefix;
    text += expression;
    return text;
}

double readBindingResult() {
    const SymbolRecord* r = Evaluator::instance().findSymbol(kResultName);
    return r ? r->value : 0.0;
}

struct CompiledExpression::Slots {
    double* values;
    uint8_t* present;
    int count;
    double* ref(int slot) {
        if (!present[slot]) {
            if (count >= kMaxSymbols) return nullptr;
            present[slot] = 1;
            ++count;
            values[slot] = 0.0;
        }
        return &values[slot];
    }
};

void CompiledExpression::compile(const std::vector<std::string>& names, std::string_view expression) {
    names_ = names;
    expression_.assign(expression);
    failure_ = ExprFailure{};
    // "name = inf" holds the name and "inf" at once: keep that within the
    // character stack so that binding lines can only fail on a full table.
    compiledForm_ = std::all_of(names.begin(), names.end(), [](const std::string& n) {
        return isPlainName(n) && n.size() + 3 <= static_cast<std::size_t>(kCharacterStackSize);
    });
    if (!compiledForm_) return;

    std::string body(kResultPrefix);
    body += expression;
    compileExpression(body, static_cast<int>(names.size()) + 1, body_);

    // Slots: the body's names keep their indices; binding names and the
    // names a non-finite value is read as are added behind them.
    std::vector<std::string> slotNames = body_.names;
    auto slotOf = [&](const std::string& n) {
        auto it = std::find(slotNames.begin(), slotNames.end(), n);
        if (it != slotNames.end()) return static_cast<int>(it - slotNames.begin());
        slotNames.push_back(n);
        return static_cast<int>(slotNames.size()) - 1;
    };
    bindings_.clear();
    for (const std::string& n : names) bindings_.push_back({slotOf(n), static_cast<int>(n.size())});
    infSlot_ = slotOf("inf");
    nanSlot_ = slotOf("nan");
    resultSlot_ = slotOf(kResultName);
    values_.assign(slotNames.size(), 0.0);
    present_.assign(slotNames.size(), 0);
    stack_.assign(static_cast<std::size_t>(body_.maxStack) + 1, 0.0);
}

int CompiledExpression::evaluate(const double* values, double& result) {
    if (!compiledForm_) {
        Evaluator& ev = Evaluator::instance();
        ev.clearSymbols();
        const int status = ev.evaluate(bindingProgram(names_, values, expression_));
        failure_ = ExprFailure{ev.evalErrorText(), ev.evalErrorLine(), ev.evalErrorColumn()};
        result = readBindingResult();
        return status;
    }

    std::fill(present_.begin(), present_.end(), uint8_t{0});
    Slots slots{values_.data(), present_.data(), 0};
    failure_ = ExprFailure{};
    int status = 0;
    const int n = static_cast<int>(bindings_.size());
    // Binding lines in text order: the last name first, one line each.
    for (int line = 1; line <= n && status == 0; ++line) {
        const int k = n - line;
        char text[48];
        const int length = printBoundValue(values[k], text);
        // Both reductions of "name = value;" happen with ";" in view.
        const int column = bindings_[static_cast<std::size_t>(k)].nameLength + 4 + length;
        const bool negative = text[0] == '-';
        double v = 0.0;
        if (std::isfinite(values[k])) {
            std::size_t pos = negative ? 1 : 0;
            // The "%g" text of a finite value is always a real.
            (void)scanReal(std::string_view(text, static_cast<std::size_t>(length)), pos, v);
        } else {
            // "inf" and "nan" are names to the calculator.
            double* s = slots.ref(std::isnan(values[k]) ? nanSlot_ : infSlot_);
            if (!s) {
                failure_ = ExprFailure{"Symbol Table Full", line, column};
                status = 1;
                break;
            }
            v = *s;
        }
        if (negative) v = -v;
        double* target = slots.ref(bindings_[static_cast<std::size_t>(k)].slot);
        if (!target) {
            failure_ = ExprFailure{"Symbol Table Full", line, column};
            status = 1;
            break;
        }
        *target = v;
    }
    if (status == 0) status = runProgram(body_, slots, stack_.data(), failure_);
    result = present_[static_cast<std::size_t>(resultSlot_)] ? values_[static_cast<std::size_t>(resultSlot_)] : 0.0;
    return status;
}

} // namespace tarvex
