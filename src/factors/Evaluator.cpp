#include "factors/Evaluator.h"

#include <algorithm>

#include "factors/ExpressionCompiler.h"

namespace tarvex {

namespace {

// Resolves the program's names against the shared table at each use, so that
// insertions happen in the order the text makes them.
struct SharedSymbols {
    Evaluator& evaluator;
    const ExprProgram& program;
    double* ref(int index) { return evaluator.symbolRef(program.names[static_cast<std::size_t>(index)]); }
};

} // namespace

Evaluator& Evaluator::instance() {
    static Evaluator evaluator;
    return evaluator;
}

void Evaluator::clearSymbols() { table_.clear(); }

const SymbolRecord* Evaluator::findSymbol(std::string_view name) const {
    for (const SymbolRecord& r : table_)
        if (r.name == name) return &r;
    return nullptr;
}

double* Evaluator::symbolRef(std::string_view name) {
    auto it = std::lower_bound(table_.begin(), table_.end(), name,
                               [](const SymbolRecord& r, std::string_view n) { return std::string_view(r.name) < n; });
    if (it != table_.end() && it->name == name) return &it->value;
    if (static_cast<int>(table_.size()) >= kMaxSymbols) return nullptr;
    it = table_.insert(it, SymbolRecord{std::string(name), 0.0});
    return &it->value;
}

int Evaluator::evaluate(std::string_view text) {
    error_ = ExprFailure{};
    compileExpression(text, 1, program_);
    if (stack_.size() < static_cast<std::size_t>(program_.maxStack) + 1) stack_.resize(static_cast<std::size_t>(program_.maxStack) + 1);
    SharedSymbols symbols{*this, program_};
    return runProgram(program_, symbols, stack_.data(), error_);
}

} // namespace tarvex
