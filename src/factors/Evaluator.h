#pragma once
// The calculator shared by relations, the internal model and the output
// expressions. There is one instance for the whole process: a sorted table of
// named doubles that persists between calls, and the last diagnostic. A caller
// binds values by writing assignments in front of its text, evaluates, and
// reads the result back by name. Not re-entrant: one assignment prologue,
// evaluate and read of the result at a time, on the program's one thread.
#include <string>
#include <string_view>
#include <vector>

#include "factors/ExpressionProgram.h"

namespace tarvex {

struct SymbolRecord {
    std::string name;
    double value = 0.0;
};

class Evaluator {
public:
    static Evaluator& instance();

    // Parses and computes the whole text (up to its end or first NUL).
    // Returns 0 on success, non-zero on failure; what was assigned before a
    // failure stays in the table.
    [[nodiscard]] int evaluate(std::string_view text);
    // Forgets every symbol.
    void clearSymbols();

    // Sorted by byte order of the names; at most 499 records.
    const std::vector<SymbolRecord>& symbolTable() const { return table_; }
    int symbolCount() const { return static_cast<int>(table_.size()); }
    // Linear search from the start of the table; nullptr when absent.
    const SymbolRecord* findSymbol(std::string_view name) const;

    // Diagnostic of the last evaluate: empty text and 0, 0 after a success.
    // Lines and columns count from 1, a tab moving the column to the next
    // multiple of 8 plus 1. A syntax error is placed at the offending token;
    // a failed computation (division, full table, unknown function, wrong
    // argument count, full argument stack) at the token that completed the
    // failing construct; a name that overflows the character stack just
    // behind its first character that did not fit; too deep a nesting at the
    // "(" or "?" that would open the 38th level, also reported on standard
    // error as "Parser stack overflow".
    const std::string& evalErrorText() const { return error_.text; }
    int evalErrorLine() const { return error_.line; }
    int evalErrorColumn() const { return error_.column; }

    // Used by the replay of a compiled text: address of the named symbol,
    // inserted with 0.0 when missing, nullptr when the table is full.
    double* symbolRef(std::string_view name);

private:
    Evaluator() = default;

    std::vector<SymbolRecord> table_;
    ExprFailure error_;
    ExprProgram program_;         // reused between calls
    std::vector<double> stack_;
};

} // namespace tarvex
