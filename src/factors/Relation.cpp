#include "factors/Relation.h"

#include <algorithm>
#include <istream>
#include <ostream>

#include "common/TextLines.h"

#include "factors/Evaluator.h"
#include "factors/OneLine.h"

namespace tarvex {

Relation::Relation() {
    setTypeName("Relation");
    setDefaultName("nonameRelat");
}

Relation::Relation(const Relation& other)
    : Factor(other), expression_(other.expression_), factorNames_(other.factorNames_) {
    setTypeName("Relation");
}

// A dry run with every symbol at 0.0: the names the run meets are the names
// the expression uses. A division by a name therefore fails here, and the
// factor keeps its former expression.
int Relation::setExpression(const std::string& text) {
    if (!fitsOneLine(text, kMaxExpressionLength)) {
        errorText_ = kRelationTooLongText;
        return 0;
    }
    const std::string copy = text;
    Evaluator& ev = Evaluator::instance();
    ev.clearSymbols();
    if (ev.evaluate(copy) != 0) return 0;
    expression_ = copy;
    factorNames_.clear();
    for (const SymbolRecord& s : ev.symbolTable()) factorNames_.push_back(s.name);
    return 1;
}

void Relation::bindUsedFactors(int count, const std::vector<std::string>& names, std::vector<std::string>& bound,
                               std::vector<int>& columns) const {
    bound.clear();
    columns.clear();
    const auto end = names.begin() + std::clamp<std::ptrdiff_t>(count, 0, static_cast<std::ptrdiff_t>(names.size()));
    for (const std::string& used : factorNames_) {
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
    // A failed evaluation still gives what the result name holds.
    (void)ev.evaluate(bindingProgram(bound, row.data(), expression_));
    return readBindingResult();
}

void Relation::prepareRows(int count, const std::vector<std::string>& names) {
    rowNames_.assign(names.begin(),
                     names.begin() + std::clamp<std::ptrdiff_t>(count, 0, static_cast<std::ptrdiff_t>(names.size())));
    rowsPrepared_ = false;
}

double Relation::evaluateRow(const double* values) {
    if (!rowsPrepared_ || compiledExpression_ != expression_ || compiledFactors_ != factorNames_) {
        std::vector<std::string> bound;
        bindUsedFactors(static_cast<int>(rowNames_.size()), rowNames_, bound, columns_);
        compiled_.compile(bound, expression_);
        compiledExpression_ = expression_;
        compiledFactors_ = factorNames_;
        gathered_.assign(columns_.size(), 0.0);
        rowsPrepared_ = true;
    }
    for (std::size_t i = 0; i < columns_.size(); ++i) gathered_[i] = values[columns_[i]];
    double result = 0.0;
    (void)compiled_.evaluate(gathered_.data(), result);  // a failure is kept in rowFailure()
    return result;
}

int Relation::usesFactor(const std::string& factorName) const {
    return std::find(factorNames_.begin(), factorNames_.end(), factorName) != factorNames_.end() ? 1 : 0;
}

// Replaces every plain occurrence of oldName in the expression, with no test
// of word boundaries: renaming "a" also turns "ab" into "<new>b".
int Relation::renameFactor(const std::string& oldName, const std::string& newName) {
    auto it = std::find(factorNames_.begin(), factorNames_.end(), oldName);
    if (it == factorNames_.end()) return 0;
    *it = newName;
    // A renamed text that its dry run refuses leaves the former one, as any refused text does.
    (void)setExpression(renamedExpression(oldName, newName));
    return 1;
}

std::string Relation::renamedExpression(const std::string& oldName, const std::string& newName) const {
    std::string renamed;
    std::size_t from = 0;
    if (!oldName.empty()) {
        for (std::size_t at = expression_.find(oldName); at != std::string::npos;
             at = expression_.find(oldName, from)) {
            renamed.append(expression_, from, at - from);
            renamed += newName;
            from = at + oldName.size();
        }
    }
    renamed.append(expression_, from, std::string::npos);
    return renamed;
}

void Relation::writeData(std::ostream& out) const {
    out << '\n' << expression_ << "\n\n";
}

// The expression is read by a line read into 255 bytes and handed to
// setExpression; an expression that its dry run refuses leaves the factor
// with its former (empty) expression, as on the panel, and the file reads on.
int Relation::readData(std::istream& in) {
    skipLine(in);
    std::string text;
    if (!readLineInBuffer(in, text, 255)) return 0;
    // A refused text leaves the relation as it was, as on any refusal.
    (void)setExpression(text);
    return 1;
}

} // namespace tarvex
