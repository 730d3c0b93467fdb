#include "factors/Relation.h"

#include <algorithm>
#include <istream>
#include <ostream>

#include "common/TextLines.h"

#include "factors/Evaluator.h"

namespace tarvex {

Relation::Relation() {
    typeName = "Relation";
    name = "nonameRelat";
}

Relation::Relation(const Relation& other)
    : Factor(other), expression(other.expression), factorNames(other.factorNames) {
    typeName = "Relation";
}

// A dry run with every symbol at 0.0: the names the run meets are the names
// the expression uses. A division by a name therefore fails here, and the
// factor keeps its former expression.
int Relation::setExpression(const std::string& text) {
    const std::string copy = text;
    Evaluator& ev = Evaluator::instance();
    ev.clearSymbols();
    if (ev.evaluate(copy) != 0) return 0;
    expression = copy;
    factorNames.clear();
    for (const SymbolRecord& s : ev.symbolTable()) factorNames.push_back(s.name);
    return 1;
}

void Relation::bindUsedFactors(int count, const std::vector<std::string>& names, std::vector<std::string>& bound,
                               std::vector<int>& columns) const {
    bound.clear();
    columns.clear();
    const auto end = names.begin() + std::clamp<std::ptrdiff_t>(count, 0, static_cast<std::ptrdiff_t>(names.size()));
    for (const std::string& used : factorNames) {
        const auto it = std::find(names.begin(), end, used);
        if (it == end) continue;
        bound.push_back(used);
        columns.push_back(static_cast<int>(it - names.begin()));
    }
}

double Relation::evaluate(int count, const std::vector<std::string>& names, const double* values) {
    std::vector<std::string> bound;
    std::vector<int> columns;
    bindUsedFactors(count, names, bound, columns);
    std::vector<double> row;
    row.reserve(columns.size());
    for (int c : columns) row.push_back(values[c]);

    Evaluator& ev = Evaluator::instance();
    ev.clearSymbols();
    ev.evaluate(bindingProgram(bound, row.data(), expression));
    return readBindingResult();
}

void Relation::prepareRows(int count, const std::vector<std::string>& names) {
    rowNames_.assign(names.begin(),
                     names.begin() + std::clamp<std::ptrdiff_t>(count, 0, static_cast<std::ptrdiff_t>(names.size())));
    rowsPrepared_ = false;
}

double Relation::evaluateRow(const double* values) {
    if (!rowsPrepared_ || compiledExpression_ != expression || compiledFactors_ != factorNames) {
        std::vector<std::string> bound;
        bindUsedFactors(static_cast<int>(rowNames_.size()), rowNames_, bound, columns_);
        compiled_.compile(bound, expression);
        compiledExpression_ = expression;
        compiledFactors_ = factorNames;
        gathered_.assign(columns_.size(), 0.0);
        rowsPrepared_ = true;
    }
    for (std::size_t i = 0; i < columns_.size(); ++i) gathered_[i] = values[columns_[i]];
    double result = 0.0;
    compiled_.evaluate(gathered_.data(), result);
    return result;
}

int Relation::usesFactor(const std::string& factorName) const {
    return std::find(factorNames.begin(), factorNames.end(), factorName) != factorNames.end() ? 1 : 0;
}

// Replaces every plain occurrence of oldName in the expression, with no test
// of word boundaries: renaming "a" also turns "ab" into "<new>b".
int Relation::renameFactor(const std::string& oldName, const std::string& newName) {
    auto it = std::find(factorNames.begin(), factorNames.end(), oldName);
    if (it == factorNames.end()) return 0;
    *it = newName;

    std::string renamed;
    std::size_t from = 0;
    if (!oldName.empty()) {
        for (std::size_t at = expression.find(oldName); at != std::string::npos;
             at = expression.find(oldName, from)) {
            renamed.append(expression, from, at - from);
            renamed += newName;
            from = at + oldName.size();
        }
    }
    renamed.append(expression, from, std::string::npos);
    setExpression(renamed);
    return 1;
}

void Relation::writeData(std::ostream& out) const {
    out << '\n' << expression << "\n\n";
}

// The expression is read by a line read into 255 bytes and handed to
// setExpression; an expression that its dry run refuses leaves the factor
// with its former (empty) expression, as on the panel, and the file reads on.
int Relation::readData(std::istream& in) {
    skipLine(in);
    std::string text;
    if (!readLineInBuffer(in, text, 255)) return 0;
    setExpression(text);
    return 1;
}

} // namespace tarvex
