#include "postproc/ResultTable.h"

#include <cmath>
#include <cstdio>
#include <ostream>

namespace tarvex {

std::string formatIndexValue(double value) {
    // A 0 / 0 comes out with its sign bit set on common hardware; a NaN's
    // sign means nothing, and the cell shows what the file holds, "nan".
    if (std::isnan(value)) value = std::fabs(value);
    const double magnitude = std::fabs(value);
    const char* format = magnitude >= 0.001 && magnitude <= 10000.0 ? "%.4f" : "%7.3g";
    char text[64];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

const char* kindCellText(int32_t kind) {
    switch (kind) {
    case 0:
        return "Constant";
    case 1:
        return "Related factor";
    case 2:
        return "Correlated factor";
    default:
        return nullptr;
    }
}

void writeTableCell(std::ostream& out, const std::string& text, bool marked) {
    char cell[32];
    // Longer texts are written whole: "%20s" pads and never cuts.
    if (text.size() < 20) {
        std::snprintf(cell, sizeof cell, "%20s", text.c_str());
        out << cell;
    } else {
        out << text;
    }
    if (marked) out << '*';
    out << '\t';
}

std::vector<int32_t> shownRecords(const ResultTableRequest& request, int32_t recordCount) {
    std::vector<int32_t> shown;
    if (request.records.empty()) {
        for (int32_t r = 0; r < recordCount; ++r) shown.push_back(r);
        return shown;
    }
    for (const int32_t r : request.records)
        if (r >= 0 && r < recordCount) shown.push_back(r);
    return shown;
}

}  // namespace tarvex
