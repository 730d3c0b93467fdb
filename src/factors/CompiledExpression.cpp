#include "factors/CompiledExpression.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>

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

// "%g" in the C locale, without the cost of printf: the precision overload of
// to_chars prints exactly as printf does.
int formatG(double v, char* buf) {
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
    const auto r = std::to_chars(buf, buf + 40, v, std::chars_format::general, 6);
    return static_cast<int>(r.ptr - buf);
}

} // namespace

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
        const int length = formatG(values[k], text);
        // Both reductions of "name = value;" happen with ";" in view.
        const int column = bindings_[static_cast<std::size_t>(k)].nameLength + 4 + length;
        const bool negative = text[0] == '-';
        double v = 0.0;
        if (std::isfinite(values[k])) {
            std::size_t pos = negative ? 1 : 0;
            scanReal(std::string_view(text, static_cast<std::size_t>(length)), pos, v);
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
