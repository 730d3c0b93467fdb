#include "cli/TextTable.h"

#include <algorithm>
#include <ostream>

namespace tarvex::cli {

TextTable::TextTable(std::vector<std::string> header) { rows_.push_back(std::move(header)); }

void TextTable::addRow(std::vector<std::string> cells) {
    cells.resize(std::max(cells.size(), rows_.front().size()));
    rows_.push_back(std::move(cells));
}

void TextTable::write(std::ostream& out) const {
    std::vector<std::size_t> widths;
    for (const auto& row : rows_) {
        if (widths.size() < row.size()) widths.resize(row.size(), 0);
        for (std::size_t c = 0; c < row.size(); ++c) widths[c] = std::max(widths[c], row[c].size());
    }
    for (const auto& row : rows_) {
        std::string line;
        for (std::size_t c = 0; c < row.size(); ++c) {
            const std::string pad(widths[c] - row[c].size(), ' ');
            if (c == 0) {
                line += row[c] + pad;
            } else {
                line += "  " + pad + row[c];
            }
        }
        while (!line.empty() && line.back() == ' ') line.pop_back();
        out << line << '\n';
    }
}

std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string::npos) return "";
    const std::size_t last = text.find_last_not_of(' ');
    return text.substr(first, last - first + 1);
}

}  // namespace tarvex::cli
