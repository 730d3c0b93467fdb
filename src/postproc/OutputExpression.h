#pragma once
// Variables over model outputs: an output by its name, an output at a time
// ("Y[2.5]") or at its maximum over time ("Y[max]"), and expressions over
// such references ("Y[max] / Z[0] + 1") in the calculator's language.
//
// An expression is computed per run by binding each reference, in the order
// it appears, to a variable "var0", "var1", ... whose value is written by
// "%.15g", then evaluating
//   "var0 = <value>;\n...var<n> = <value>;\n\nrEsUlTtOtAl = <expression>"
// with the references replaced by their variables, and reading rEsUlTtOtAl.
#include <cstdint>
#include <string>
#include <vector>

namespace tarvex {

inline constexpr const char* kExpressionErrorText = "   Expression can't be evaluated.";

struct OutputReference {
    enum Kind { kPlain, kMaximum, kAtTime };
    int32_t output = -1;  // index into the output names
    Kind kind = kPlain;
    double time = 0.0;    // kAtTime only
};

// The reference a whole text names: an output name, "<name>[max]" or
// "<name>[<number>]". False for anything else (an expression).
[[nodiscard]] bool parseReference(const std::string& text, const std::vector<std::string>& outputNames,
                                  OutputReference& reference);

class OutputExpression {
public:
    // Finds the references of `text`. 0 when a bracket has no partner, or
    // one follows no output name, or holds neither "max" nor a number: such
    // a reference could not be read from the results.
    [[nodiscard]] int parse(const std::string& text, const std::vector<std::string>& outputNames);

    const std::vector<OutputReference>& references() const { return references_; }
    // The expression with its references replaced by var0, var1, ...
    const std::string& body() const { return body_; }

    // The value for one run, `values` holding one value per reference. NaN
    // when the calculator fails (a division by zero), and when a value is
    // not finite: "%.15g" would write "nan" or "inf", which the calculator
    // reads as names worth 0.0.
    double evaluate(const double* values) const;

private:
    std::vector<OutputReference> references_;
    std::string body_;
};

// The check of an expression before it joins the selection: every span from
// "[" to its matching "]" removed, each output name the rest holds bound to
// a test value ("%s = %s;\n%s", each name its own value), and the text given
// to the calculator. 1 when it evaluates and its references can be read; 0
// otherwise, for kExpressionErrorText. The test values are distinct and
// far from round numbers, so that "Y / (Z - Y)" or "1 / (Y - 1)" pass.
[[nodiscard]] int checkOutputExpression(const std::string& text, const std::vector<std::string>& outputNames);

}  // namespace tarvex
