#pragma once
// The text a result panel's "Save table" writes, shared by every statistics
// class and by the batch tool. A table is a sheet of cells: every cell is
// written by "%20s" and a TAB (a marked cell, such as a regression measure
// that is not significant, by "%20s*" and a TAB), and a row ends by LF.
//
// The sheet of a class has one row per shown record and one column per
// shown variable: the first row holds an empty corner cell and the
// variables' names, each following row the record's name and its values.
// A record that is not uncertain shows what it is ("Constant", "Related
// factor", "Correlated factor") in place of its values.
#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

namespace tarvex {

// What a panel (or the batch tool) shows of a statistics object.
struct ResultTableRequest {
    // Analysed variables shown, by their column in the output table, with
    // the names the sheet heads them by; the two lists have one size.
    std::vector<int32_t> variables;
    std::vector<std::string> variableNames;
    // Records shown, by position; empty shows every record.
    std::vector<int32_t> records;
    // Regression measures only: the measure shown (0 PEAR ... 6 Smirnov)
    // and the variable whose coefficients of determination head the table.
    int32_t measure = 0;
    int32_t currentVariable = 0;
};

// A value as a table cell shows it: "%.4f" when its magnitude lies between
// 0.001 and 10000.0, else "%7.3g". A NaN shows "nan" whatever its sign.
std::string formatIndexValue(double value);

// The text a record of this kind shows in place of its values, or null for
// an uncertain factor (kind 3).
const char* kindCellText(int32_t kind);

// One cell: the text by "%20s", an asterisk when marked, then TAB.
void writeTableCell(std::ostream& out, const std::string& text, bool marked = false);

// The records a request shows: its list, or every record when it is empty;
// positions outside 0..recordCount-1 are dropped.
std::vector<int32_t> shownRecords(const ResultTableRequest& request, int32_t recordCount);

}  // namespace tarvex
