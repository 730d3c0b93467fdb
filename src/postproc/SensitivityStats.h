#pragma once
// The family of sensitivity results: one class per group of sampling
// methods, each computing per factor (or term) and per analysed variable the
// values of its own slots. The base keeps what all share (counts, records,
// the computed flag, the last error) and the record list of the
// post-processor file; each class writes and reads its own header, says how
// many slots a record holds, and may add a trailer after the records.
//
// A statistics block in the file:
//   typeId
//   the class's header lines (writeHeader)
//   "indexes = no"                                when there are no records
//   "indexes = yes" and, per record, LF, the name line, the class's group
//   lines (Sobol), kind, separator, every slot value followed by the
//   separator; one LF after the last record, then the class's trailer.
#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "postproc/IndexRecord.h"
#include "postproc/ResultTable.h"

namespace tarvex {

class OutputTable;
class PrepConfiguration;

inline constexpr const char* kIndexesYesText = "indexes = yes";
inline constexpr const char* kIndexesNoText = "indexes = no";
// Between a record's numbers.
inline constexpr const char* kSlotSeparator = "\t \t";
// compute() when variableCount does not fit the output table: "%d" the
// table's columns, then variableCount.
inline constexpr const char* kVariablesOutsideTableFormat =
    "The output table holds %d variables; %d are to be analysed.";

class SensitivityStats {
public:
    virtual ~SensitivityStats() = default;

    // Computes every record from the design, its sample store and the table
    // of analysed variables; callers set variableCount first. 1, or 0 with
    // errorText set and computed left 0. The configuration is not const
    // because reading its sample store moves the store's window.
    [[nodiscard]] virtual int compute(PrepConfiguration& configuration, OutputTable& outputs) = 0;
    // Drops the records and the class's results; counts and typeId stay.
    virtual void clear();
    // A deep copy of the same class.
    virtual std::unique_ptr<SensitivityStats> clone() const = 0;

    // The block, typeId line included.
    void write(std::ostream& out) const;
    // The block after its typeId line (the caller read typeId to create the
    // class). A failure is the stream's fail state; a record list that does
    // not start with "indexes = yes" leaves an empty, uncomputed object.
    void read(std::istream& in);

    // Values of slot `slot` for variable `variable`, one per record, into a
    // caller-owned array of records.size() doubles. 1, or 0 when nothing is
    // computed or the variable or slot is out of range.
    [[nodiscard]] int slotValues(int32_t slot, int32_t variable, double* values) const;

    // The text of the result panel's "Save table" for what `request` shows:
    // the class's first lines, then its sheets.
    virtual void writeTable(std::ostream& out, const ResultTableRequest& request) const = 0;

    int32_t variableCount = 0;
    int32_t factorCount = 0;
    std::vector<IndexRecord> records;
    int32_t computed = 0;
    int32_t typeId = -1;
    std::string errorText = "No errors";

protected:
    explicit SensitivityStats(int32_t id) : typeId(id) {}
    SensitivityStats(const SensitivityStats&) = default;
    SensitivityStats& operator=(const SensitivityStats&) = default;

    // Whether variableCount lies between 0 and the table's column count; if
    // not, errorText says so and compute must fail.
    [[nodiscard]] bool variablesFit(const OutputTable& outputs);

    // Header lines after typeId; by default factorCount and variableCount.
    virtual void writeHeader(std::ostream& out) const;
    virtual void readHeader(std::istream& in);
    // How many records the file holds: factorCount unless the class counts
    // its records otherwise.
    virtual int32_t recordsInFile() const { return factorCount; }
    // Slots of one record for one variable.
    virtual int32_t slotCount(const IndexRecord& record) const = 0;
    // What follows a record's kind.
    virtual const char* kindSeparator() const { return kSlotSeparator; }
    // Sobol terms list their factors between the name and the kind.
    virtual bool recordsHaveGroups() const { return false; }
    // What follows the record list's last LF; nothing by default.
    virtual void writeTrailer(std::ostream& out) const;
    virtual void readTrailer(std::istream& in);

    // One sheet of slot `slot` (see ResultTable.h): a header row of the
    // shown variables, then a row per shown record. `marked(record,
    // variable)`, when given, marks a value cell.
    using CellMark = bool (*)(const SensitivityStats& stats, int32_t record, int32_t variable);
    void writeSheet(std::ostream& out, const ResultTableRequest& request, int32_t slot,
                    CellMark marked = nullptr) const;
    // A sheet of several slots side by side: per shown variable one column
    // per slot. The first row names each variable over its first column,
    // the second heads the columns by `headings` (one per slot), then a row
    // per shown record.
    void writeSheet(std::ostream& out, const ResultTableRequest& request, const std::vector<int32_t>& slots,
                    const std::vector<std::string>& headings) const;

private:
    [[nodiscard]] bool readRecord(std::istream& in, IndexRecord& record) const;
    void writeSheetRows(std::ostream& out, const ResultTableRequest& request, const std::vector<int32_t>& slots,
                        CellMark marked) const;
};

}  // namespace tarvex
