#pragma once
// A factor whose value in each sample row is computed from other factors of the
// same row by an expression of the calculator language.
#include <string>
#include <vector>

#include "factors/CompiledExpression.h"
#include "factors/Factor.h"

namespace tarvex {

inline constexpr const char* kRelationTooLongText = "The relation must be one line of at most 254 characters.";

class Relation : public Factor {
public:
    // The longest expression a factor file gives back: its reader keeps lines
    // of this many characters.
    static constexpr std::size_t kMaxExpressionLength = 254;

    Relation();
    Relation(const Relation& other);

    int getType() const override { return kRelation; }
    std::unique_ptr<Factor> clone() const override { return std::make_unique<Relation>(*this); }

    // Accepts the text when a dry run of it succeeds; returns 0 and keeps the
    // former expression otherwise. A text that is not one line of at most
    // kMaxExpressionLength characters is refused with kRelationTooLongText.
    [[nodiscard]] int setExpression(const std::string& text);
    // Value for one sample row: names are all factor names of the list, values
    // the row in the same order, count the number of names. Each used factor
    // is bound by "%g" text in front of the expression and the text is
    // evaluated; a failed evaluation gives what the result name holds, 0.0
    // when it was never assigned. A used name missing from `names` stays
    // unbound and so reads as 0.0.
    double evaluate(int count, const std::vector<std::string>& names, const double* values);

    // The same values for many rows without reading the text again: after
    // prepareRows(count, names), evaluateRow(row) equals evaluate(count,
    // names, row) bit for bit, failures included. Changing the expression
    // later is noticed; without prepareRows no factor is bound.
    void prepareRows(int count, const std::vector<std::string>& names);
    double evaluateRow(const double* values);
    // Diagnostic of the last evaluateRow: empty after a success.
    const ExprFailure& rowFailure() const { return compiled_.failure(); }
    // 1 if the expression uses the name (exact comparison), else 0.
    int usesFactor(const std::string& factorName) const;
    // Renames a used factor inside the expression; 0 if oldName is not used.
    int renameFactor(const std::string& oldName, const std::string& newName);
    // The text renameFactor hands to setExpression: every plain occurrence of
    // oldName replaced by newName.
    std::string renamedExpression(const std::string& oldName, const std::string& newName) const;

    const std::string& expression() const { return expression_; }
    // Names the expression uses, in the sorted order of the evaluator's symbol
    // table, without repeats.
    const std::vector<std::string>& factorNames() const { return factorNames_; }

protected:
    // Nothing on the data line; the expression follows on a line of its own,
    // then a blank line.
    void writeData(std::ostream& out) const override;
    [[nodiscard]] int readData(std::istream& in) override;

private:
    // Set together by setExpression (renameFactor excepted, see there).
    std::string expression_;
    std::vector<std::string> factorNames_;

    void bindUsedFactors(int count, const std::vector<std::string>& names, std::vector<std::string>& bound,
                         std::vector<int>& columns) const;

    std::vector<std::string> rowNames_;       // the list given to prepareRows
    std::string compiledExpression_;          // what compiled_ was built from
    std::vector<std::string> compiledFactors_;
    bool rowsPrepared_ = false;
    CompiledExpression compiled_;
    std::vector<int> columns_;                // row column of each bound name
    std::vector<double> gathered_;
};

} // namespace tarvex
