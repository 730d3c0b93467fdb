#include "postproc/SensitivityStats.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <istream>
#include <ostream>

#include "common/TextLines.h"
#include "postproc/OutputTable.h"
#include "postproc/StatsText.h"
#include "sampling/NumberText.h"

namespace tarvex {

void SensitivityStats::clear() {
    records.clear();
    computed = 0;
}

int SensitivityStats::slotValues(int32_t slot, int32_t variable, double* values) const {
    if (!computed || variable < 0 || variable >= variableCount || slot < 0) return 0;
    for (std::size_t r = 0; r < records.size(); ++r) {
        const int32_t slots = slotCount(records[r]);
        const std::size_t at = static_cast<std::size_t>(variable) * static_cast<std::size_t>(slots) +
                               static_cast<std::size_t>(slot);
        if (slot >= slots || at >= records[r].values.size()) return 0;
        values[r] = records[r].values[at];
    }
    return 1;
}

bool SensitivityStats::variablesFit(const OutputTable& outputs) {
    if (variableCount >= 0 && variableCount <= outputs.columnCount()) return true;
    char text[160];
    std::snprintf(text, sizeof text, kVariablesOutsideTableFormat, outputs.columnCount(), variableCount);
    errorText = text;
    return false;
}

void SensitivityStats::writeSheet(std::ostream& out, const ResultTableRequest& request, int32_t slot,
                                  CellMark marked) const {
    writeTableCell(out, "");
    for (const std::string& name : request.variableNames) writeTableCell(out, name);
    out << '\n';
    writeSheetRows(out, request, {slot}, marked);
}

void SensitivityStats::writeSheet(std::ostream& out, const ResultTableRequest& request,
                                  const std::vector<int32_t>& slots, const std::vector<std::string>& headings) const {
    writeTableCell(out, "");
    for (const std::string& name : request.variableNames)
        for (std::size_t k = 0; k < slots.size(); ++k) writeTableCell(out, k == 0 ? name : "");
    out << '\n';
    writeTableCell(out, "");
    for (std::size_t v = 0; v < request.variableNames.size(); ++v)
        for (std::size_t k = 0; k < slots.size(); ++k) writeTableCell(out, k < headings.size() ? headings[k] : "");
    out << '\n';
    writeSheetRows(out, request, slots, nullptr);
}

void SensitivityStats::writeSheetRows(std::ostream& out, const ResultTableRequest& request,
                                      const std::vector<int32_t>& slots, CellMark marked) const {
    for (const int32_t r : shownRecords(request, static_cast<int32_t>(records.size()))) {
        const IndexRecord& record = records[static_cast<std::size_t>(r)];
        writeTableCell(out, record.name);
        const int32_t slotsPerVariable = slotCount(record);
        for (const int32_t v : request.variables) {
            for (const int32_t slot : slots) {
                if (const char* text = kindCellText(record.kind)) {
                    writeTableCell(out, text);
                    continue;
                }
                const std::size_t at = static_cast<std::size_t>(v) * static_cast<std::size_t>(slotsPerVariable) +
                                       static_cast<std::size_t>(slot);
                if (v < 0 || slot < 0 || slot >= slotsPerVariable || at >= record.values.size()) {
                    writeTableCell(out, "");
                    continue;
                }
                writeTableCell(out, formatIndexValue(record.values[at]), marked && marked(*this, r, v));
            }
        }
        out << '\n';
    }
}

void SensitivityStats::writeHeader(std::ostream& out) const {
    out << factorCount << '\n' << variableCount << '\n';
}

void SensitivityStats::readHeader(std::istream& in) {
    in >> factorCount >> variableCount;
}

void SensitivityStats::writeTrailer(std::ostream&) const {}

void SensitivityStats::readTrailer(std::istream&) {}

void SensitivityStats::write(std::ostream& out) const {
    SixDigits format(out);
    out << typeId << '\n';
    writeHeader(out);
    // Records the reader would refuse (no variable, a record without a name,
    // fewer records than the header announces) are not written: a file
    // that cannot be read back would take the whole project with it, while
    // the statistics can be computed again.
    const bool readable = !records.empty() && variableCount >= 1 &&
                          static_cast<int64_t>(records.size()) == int64_t{recordsInFile()} &&
                          std::none_of(records.begin(), records.end(), [](const IndexRecord& r) {
                              return fileLine(r.name, kVelsTextMax).empty();
                          });
    if (!readable) {
        out << kIndexesNoText << '\n';
        return;
    }
    out << kIndexesYesText;
    for (const IndexRecord& record : records) {
        out << '\n' << fileLine(record.name, kVelsTextMax) << '\n';
        if (recordsHaveGroups()) {
            out << record.groupCount() << '\n';
            for (const std::string& group : record.groupNames) out << fileLine(group, kVelsTextMax) << '\n';
        }
        out << record.kind << kindSeparator();
        // Exactly the values the reader will expect; a slot never filled is
        // no number.
        const std::size_t count = static_cast<std::size_t>(variableCount) * static_cast<std::size_t>(slotCount(record));
        for (std::size_t k = 0; k < count; ++k) {
            writeValue(out, k < record.values.size() ? record.values[k] : std::nan(""));
            out << kSlotSeparator;
        }
    }
    out << '\n';
    writeTrailer(out);
}

bool SensitivityStats::readRecord(std::istream& in, IndexRecord& record) const {
    if (!readLineUpTo(in, record.name, kVelsTextMax)) return false;
    if (record.name.empty() || variableCount < 1) {
        in.setstate(std::ios::failbit);
        return false;
    }
    if (recordsHaveGroups()) {
        int32_t groups = 0;
        if (!(in >> groups)) return false;
        // A group name is at least its line end.
        if (groups < 0 || !countFitsInput(in, groups, 1)) {
            in.setstate(std::ios::failbit);
            return false;
        }
        skipLine(in);
        std::string group;
        for (int32_t g = 0; g < groups; ++g) {
            if (!readLineUpTo(in, group, kVelsTextMax)) return false;
            record.groupNames.push_back(group);
        }
    }
    if (!(in >> record.kind)) return false;
    const int64_t count = int64_t{variableCount} * slotCount(record);
    // A value is at least a digit and a separator.
    if (!countFitsInput(in, count, 2)) {
        in.setstate(std::ios::failbit);
        return false;
    }
    double v = 0.0;
    for (int64_t k = 0; k < count; ++k) {
        if (!readNumber(in, v)) return false;
        record.values.push_back(v);
    }
    // The separators and the line end behind the last value.
    skipLine(in);
    return true;
}

void SensitivityStats::read(std::istream& in) {
    clear();
    readHeader(in);
    if (!in) return;
    std::string line;
    if (!passLine(in) || !readLineUpTo(in, line, kVelsTextMax)) return;
    // Anything but the exact text means that no records were saved.
    if (line != kIndexesYesText) return;

    const int32_t count = recordsInFile();
    // A record is at least a name line and a kind.
    if (count < 0 || !countFitsInput(in, count, 3)) {
        in.setstate(std::ios::failbit);
        return;
    }
    for (int32_t r = 0; r < count; ++r) {
        IndexRecord record;
        if (!readRecord(in, record)) {
            // What was read is not a result: the object must not show half of one.
            clear();
            return;
        }
        records.push_back(std::move(record));
    }
    readTrailer(in);
    if (!in) {
        clear();
        return;
    }
    computed = 1;
}

}  // namespace tarvex
