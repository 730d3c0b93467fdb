#pragma once
// A factor whose value in each sample row is computed from other factors of the
// same row by an expression of the calculator language.
#include <string>
#include <vector>

#include "factors/Factor.h"

namespace tarvex {

class Relation : public Factor {
public:
    Relation();
    Relation(const Relation& other);

    int getType() const override { return kRelation; }
    std::unique_ptr<Factor> clone() const override { return std::make_unique<Relation>(*this); }

protected:
    // Nothing on the data line; the expression follows on a line of its own,
    // then a blank line.
    void writeData(std::ostream& out) const override;
    int readData(std::istream& in) override;

public:

    // Accepts the text when a dry run of it succeeds; returns 0 and keeps the
    // former expression otherwise.
    int setExpression(const std::string& text);
    // Value for one sample row: names are all factor names of the list, values
    // the row in the same order, count the number of names.
    double evaluate(int count, const std::vector<std::string>& names, const double* values);
    // 1 if the expression uses the name (exact comparison), else 0.
    int usesFactor(const std::string& factorName) const;
    // Renames a used factor inside the expression; 0 if oldName is not used.
    int renameFactor(const std::string& oldName, const std::string& newName);

    std::string expression;
    // Names the expression uses, in the sorted order of the evaluator's symbol
    // table, without repeats.
    std::vector<std::string> factorNames;
};

} // namespace tarvex
