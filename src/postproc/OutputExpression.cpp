#include "postproc/OutputExpression.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

#include "factors/CompiledExpression.h"
#include "factors/Evaluator.h"
#include "postproc/VariableSelection.h"

namespace tarvex {

namespace {

bool isNameStart(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }
bool isNameChar(char c) { return isNameStart(c) || (c >= '0' && c <= '9'); }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

int32_t outputIndex(const std::vector<std::string>& outputNames, std::string_view name) {
    const auto it = std::find(outputNames.begin(), outputNames.end(), name);
    return it == outputNames.end() ? -1 : static_cast<int32_t>(it - outputNames.begin());
}

// What stands between the brackets of a reference: "max" or a time.
bool parseBracket(const std::string& content, OutputReference& reference) {
    if (content == "max") {
        reference.kind = OutputReference::kMaximum;
        return true;
    }
    double time = 0.0;
    if (!parseFieldNumber(content, time)) return false;
    reference.kind = OutputReference::kAtTime;
    reference.time = time;
    return true;
}

// Position of the "]" that closes the "[" at `open`, or npos.
std::size_t matchingBracket(const std::string& text, std::size_t open) {
    int depth = 0;
    for (std::size_t k = open; k < text.size(); ++k) {
        if (text[k] == '[') ++depth;
        if (text[k] == ']' && --depth == 0) return k;
    }
    return std::string::npos;
}

// A number of the calculator's language, from `pos`: digits, a point, digits,
// an exponent. Its letters must not pass for a name.
std::size_t skipNumber(const std::string& text, std::size_t pos) {
    while (pos < text.size() && (isDigit(text[pos]) || text[pos] == '.')) ++pos;
    if (pos < text.size() && (text[pos] == 'e' || text[pos] == 'E')) {
        std::size_t p = pos + 1;
        if (p < text.size() && (text[p] == '+' || text[p] == '-')) ++p;
        if (p < text.size() && isDigit(text[p])) {
            while (p < text.size() && isDigit(text[p])) ++p;
            pos = p;
        }
    }
    return pos;
}

void appendValue(std::string& text, double value) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.15g", value);
    text += buffer;
}

}  // namespace

bool parseReference(const std::string& text, const std::vector<std::string>& outputNames, OutputReference& reference) {
    OutputReference found;
    found.output = outputIndex(outputNames, text);
    if (found.output >= 0) {
        reference = found;
        return true;
    }
    const std::size_t open = text.find('[');
    if (open == std::string::npos || text.back() != ']' || matchingBracket(text, open) != text.size() - 1) return false;
    found.output = outputIndex(outputNames, std::string_view(text).substr(0, open));
    if (found.output < 0 || !parseBracket(text.substr(open + 1, text.size() - open - 2), found)) return false;
    reference = found;
    return true;
}

int OutputExpression::parse(const std::string& text, const std::vector<std::string>& outputNames) {
    references_.clear();
    body_.clear();
    std::size_t pos = 0;
    while (pos < text.size()) {
        const char c = text[pos];
        if (isDigit(c) || (c == '.' && pos + 1 < text.size() && isDigit(text[pos + 1]))) {
            const std::size_t end = skipNumber(text, pos);
            body_.append(text, pos, end - pos);
            pos = end;
            continue;
        }
        if (c == '[' || c == ']') return 0;  // a bracket after no name, or one without partner
        if (!isNameStart(c)) {
            body_ += c;
            ++pos;
            continue;
        }
        std::size_t end = pos;
        while (end < text.size() && isNameChar(text[end])) ++end;
        const std::string name = text.substr(pos, end - pos);
        OutputReference reference;
        reference.output = outputIndex(outputNames, name);
        if (end < text.size() && text[end] == '[') {
            const std::size_t close = matchingBracket(text, end);
            if (close == std::string::npos || reference.output < 0 ||
                !parseBracket(text.substr(end + 1, close - end - 1), reference))
                return 0;
            end = close + 1;
        } else {
            // A name in call position is a function, whatever the outputs are called.
            std::size_t next = end;
            while (next < text.size() && (text[next] == ' ' || text[next] == '\t')) ++next;
            if (next < text.size() && text[next] == '(') reference.output = -1;
        }
        if (reference.output < 0) {
            body_ += name;
        } else {
            body_ += "var" + std::to_string(references_.size());
            references_.push_back(reference);
        }
        pos = end;
    }
    return 1;
}

double OutputExpression::evaluate(const double* values) const {
    std::string text;
    for (std::size_t k = 0; k < references_.size(); ++k) {
        if (!std::isfinite(values[k])) return std::numeric_limits<double>::quiet_NaN();
        text += "var" + std::to_string(k) + " = ";
        appendValue(text, values[k]);
        text += ";\n";
    }
    text += "\n";
    text += kResultName;
    text += " = ";
    text += body_;
    Evaluator& evaluator = Evaluator::instance();
    evaluator.clearSymbols();
    if (evaluator.evaluate(text) != 0) return std::numeric_limits<double>::quiet_NaN();
    return readBindingResult();
}

int checkOutputExpression(const std::string& text, const std::vector<std::string>& outputNames) {
    OutputExpression expression;
    if (!expression.parse(text, outputNames)) return 0;

    std::string stripped;
    for (std::size_t k = 0; k < text.size(); ++k) {
        if (text[k] == '[') {
            k = matchingBracket(text, k);  // parse() found every partner
            continue;
        }
        stripped += text[k];
    }
    std::string program = stripped;
    // Fractional parts of multiples of the golden ratio: all different, in
    // (0, 1), and unlike any constant a user types.
    const double golden = 0.6180339887498949;
    for (std::size_t k = 0; k < outputNames.size(); ++k) {
        if (outputNames[k].empty() || stripped.find(outputNames[k]) == std::string::npos) continue;
        const double value = std::fmod(golden * static_cast<double>(k + 1), 1.0);
        std::string binding = outputNames[k] + " = ";
        appendValue(binding, value);
        program = binding + ";\n" + program;
    }
    Evaluator& evaluator = Evaluator::instance();
    evaluator.clearSymbols();
    return evaluator.evaluate(program) == 0 ? 1 : 0;
}

}  // namespace tarvex
