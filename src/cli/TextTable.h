#pragma once
// A table for the terminal: columns padded to their widest cell, the first
// one (names) flush left, the others flush right, two blanks between.
#include <iosfwd>
#include <string>
#include <vector>

namespace tarvex::cli {

class TextTable {
public:
    explicit TextTable(std::vector<std::string> header);
    // A row shorter than the header is filled with empty cells.
    void addRow(std::vector<std::string> cells);
    void write(std::ostream& out) const;

private:
    std::vector<std::vector<std::string>> rows_;
};

// The text without the blanks a printf width put around it.
std::string trimmed(const std::string& text);

}  // namespace tarvex::cli
