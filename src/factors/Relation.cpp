#include "factors/Relation.h"

#include <algorithm>
#include <istream>
#include <ostream>

#include "factors/LineRead.h"

namespace tarvex {

Relation::Relation() {
    typeName = "Relation";
    name = "nonameRelat";
}

Relation::Relation(const Relation& other)
    : Factor(other), expression(other.expression), factorNames(other.factorNames) {
    typeName = "Relation";
}

// Until the expression evaluator is linked in, the text is kept as given and
// no names are extracted from it.
int Relation::setExpression(const std::string& text) {
    expression = text;
    factorNames.clear();
    return 1;
}

// Without the evaluator there is nothing to compute; 0.0 is what a failed
// evaluation yields as well.
double Relation::evaluate(int, const std::vector<std::string>&, const double*) {
    return 0.0;
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
    if (!readLine(in, text, 255)) return 0;
    setExpression(text);
    return 1;
}

} // namespace tarvex
