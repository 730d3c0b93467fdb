#pragma once
// Evaluating one expression for many rows without reading its text again.
//
// Relations and internal models hand values to the calculator as text: each
// binding "name = value;\n" is put in front of "rEsUlTtOtAl = <expression>",
// the last name of the list first, the value printed by "%g", and the result
// is read back from the symbol "rEsUlTtOtAl" (0.0 when absent). A
// CompiledExpression gives, row for row, the same result, the same success or
// failure and the same diagnostic with its line and column, bit for bit: each
// value enters as its "%g" text would be read, an infinite or NaN value
// enters as the names "inf" or "nan" would, and the expression itself is
// replayed from its compiled form against a private symbol table.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "factors/ExpressionProgram.h"

namespace tarvex {

// Name that receives the value of the expression.
inline constexpr const char* kResultName = "rEsUlTtOtAl";

// A value as the calculator receives it: "%g", with a decimal comma of the
// current locale turned into a point.
std::string formatBoundValue(double value);

// The same text in the C locale, written to `out` (at least 32 bytes) without
// printf; returns its length. Not NUL-terminated.
int printBoundValue(double value, char* out);

// The text evaluated for one row: "%s = %s;\n%s" applied for names[0],
// names[1], ... in turn to "rEsUlTtOtAl = <expression>", so that the last
// name is bound first. values[i] belongs to names[i].
std::string bindingProgram(const std::vector<std::string>& names, const double* values,
                           std::string_view expression);

// Reads the result of an evaluated binding program from the shared evaluator:
// the value of "rEsUlTtOtAl", or 0.0 when the evaluation never made it.
double readBindingResult();

class CompiledExpression {
public:
    // Prepares evaluations of bindingProgram(names, values, expression).
    void compile(const std::vector<std::string>& names, std::string_view expression);

    // One row: values[i] belongs to names[i] of compile. Returns 0 on success,
    // non-zero on failure (then failure() says why and where); `result` is set
    // in both cases, as the text form would leave it.
    [[nodiscard]] int evaluate(const double* values, double& result);

    const ExprFailure& failure() const { return failure_; }
    // False when a binding name is not a plain name (letters, digits and "_",
    // not starting with a digit): such rows are evaluated through the text
    // form and the shared evaluator instead, which gives the same answers.
    bool usesCompiledForm() const { return compiledForm_; }

private:
    struct Binding {
        int slot;
        int nameLength;
    };
    struct Slots;

    std::vector<std::string> names_;
    std::string expression_;
    bool compiledForm_ = false;
    ExprProgram body_;
    std::vector<Binding> bindings_;  // in the order of names_
    int infSlot_ = 0;
    int nanSlot_ = 0;
    int resultSlot_ = 0;
    std::vector<double> values_;     // one per slot
    std::vector<uint8_t> present_;
    std::vector<double> stack_;
    ExprFailure failure_;
};

} // namespace tarvex
