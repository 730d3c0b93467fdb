#include "model/ModelProgram.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "factors/ExpressionCompiler.h"
#include "model/BoundValue.h"

namespace tarvex {

namespace {

constexpr std::string_view kResultPrefix = "rEsUlTtOtAl = ";

// A name the calculator reads as one name token, short enough that a binding
// line can never overflow its character stack.
bool isPlainName(const std::string& name) {
    if (name.empty() || name.size() + 3 > static_cast<std::size_t>(kCharacterStackSize)) return false;
    auto letter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; };
    if (!letter(name[0])) return false;
    return std::all_of(name.begin(), name.end(), [&](char c) { return letter(c) || (c >= '0' && c <= '9'); });
}

// Symbols of a replay whose table size was settled when compiling.
struct FixedSymbols {
    double* values;
    double* ref(int slot) { return values + slot; }
};

} // namespace

ModelProgram::ModelProgram(const std::vector<ModelVariable>& variables, const std::vector<ModelExpression>& expressions)
    : variableCount_(variables.size()) {
    std::vector<std::string> names;
    for (const ModelVariable& v : variables) names.push_back(v.name);
    for (const ModelExpression& e : expressions) names.push_back(e.name);
    plainNames_ = std::all_of(names.begin(), names.end(), isPlainName);

    const std::size_t total = names.size();
    needed_.assign(total, 0);
    raw_.assign(total, 0.0);
    rounded_.assign(total, 0.0);
    equations_.resize(expressions.size());
    std::size_t maxSlots = 0;
    int maxStack = 0;
    for (std::size_t i = 0; i < expressions.size(); ++i) {
        Equation& eq = equations_[i];
        const std::size_t bindings = variableCount_ + i;
        eq.names.assign(names.begin(), names.begin() + static_cast<std::ptrdiff_t>(bindings));
        eq.text = expressions[i].text;
        if (!plainNames_) continue;

        compileExpression(std::string(kResultPrefix) + eq.text, static_cast<int>(bindings) + 1, eq.body);
        // The binding nearest the equation is the one with the lowest index.
        std::unordered_map<std::string_view, int32_t> binder;
        for (std::size_t k = bindings; k-- > 0;) binder[names[k]] = static_cast<int32_t>(k);
        std::unordered_set<std::string_view> distinct;
        for (std::size_t k = 0; k < bindings; ++k) distinct.insert(names[k]);
        eq.source.assign(eq.body.names.size(), -1);
        for (std::size_t s = 0; s < eq.body.names.size(); ++s) {
            const std::string& n = eq.body.names[s];
            distinct.insert(n);
            auto it = binder.find(n);
            if (it != binder.end()) {
                eq.source[s] = it->second;
                needed_[static_cast<std::size_t>(it->second)] = 1;
            }
            if (n == kResultName) eq.resultSlot = static_cast<int32_t>(s);
        }
        eq.overflows = distinct.size() > static_cast<std::size_t>(kMaxSymbols);
        eq.useRegisters = eq.code.translate(eq.body, eq.resultSlot);
        if (eq.useRegisters) {
            eq.registers.assign(eq.code.registerCount(), 0.0);
            eq.code.prepare(eq.registers.data());
            for (int32_t name : eq.code.inputNames()) eq.inputSource.push_back(eq.source[static_cast<std::size_t>(name)]);
        }
        maxSlots = std::max(maxSlots, eq.body.names.size());
        maxStack = std::max(maxStack, eq.body.maxStack);
    }
    slots_.assign(maxSlots + 1, 0.0);
    stack_.assign(static_cast<std::size_t>(maxStack) + 1, 0.0);
}

int ModelProgram::runExact(Equation& eq, double& result) {
    if (!eq.exact) {
        eq.exact = std::make_unique<CompiledExpression>();
        eq.exact->compile(eq.names, eq.text);
    }
    return eq.exact->evaluate(raw_.data(), result);
}

int ModelProgram::runCompiled(Equation& eq, double& result) {
    if (eq.overflows) return 1;
    if (eq.useRegisters) {
        double* r = eq.registers.data();
        const std::vector<int32_t>& inputs = eq.code.inputRegisters();
        for (std::size_t k = 0; k < inputs.size(); ++k) {
            const int32_t from = eq.inputSource[k];
            r[inputs[k]] = from < 0 ? 0.0 : rounded_[static_cast<std::size_t>(from)];
        }
        return eq.code.run(r, result);
    }
    // A body with a failure found while parsing: replayed as it is, which
    // fails where the text would.
    double* slots = slots_.data();
    for (std::size_t s = 0; s < eq.source.size(); ++s) {
        const int32_t from = eq.source[s];
        slots[s] = from < 0 ? 0.0 : rounded_[static_cast<std::size_t>(from)];
    }
    FixedSymbols symbols{slots};
    ExprFailure failure;
    if (runProgram(eq.body, symbols, stack_.data(), failure) != 0) return 1;
    result = slots[eq.resultSlot];
    return 0;
}

int ModelProgram::run(const double* values, std::vector<ModelExpression>& expressions) {
    bool nonFinite = false;
    for (std::size_t j = 0; j < variableCount_; ++j) {
        const double v = values[j];
        raw_[j] = v;
        if (!std::isfinite(v)) nonFinite = true;
        else if (needed_[j]) rounded_[j] = boundValue(v);
    }
    for (std::size_t i = 0; i < equations_.size(); ++i) {
        Equation& eq = equations_[i];
        double result = 0.0;
        const int status = !plainNames_ || nonFinite ? runExact(eq, result) : runCompiled(eq, result);
        if (status != 0) return 0;
        expressions[i].value = result;
        const std::size_t k = variableCount_ + i;
        raw_[k] = result;
        if (!std::isfinite(result)) nonFinite = true;
        else if (needed_[k]) rounded_[k] = boundValue(result);
    }
    return 1;
}

} // namespace tarvex
