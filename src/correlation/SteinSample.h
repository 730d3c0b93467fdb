#pragma once
// An imported Stein sample: columns are factors, rows are observations.
//
// Held in memory rather than in a disk-backed sample store: the sample comes
// from a text file that is read whole anyway, it travels inside every factor
// file and copy of the list, and the store lives in a layer above this one.
// A sampler that wants the store's form copies the values over.
#include <cstdint>
#include <iosfwd>
#include <vector>

namespace tarvex {

inline constexpr const char* kSteinEmptyText =
    "The Stein correlation sample is empty.\nNo correlation can be calculated.";

class SteinSample {
public:
    int32_t rowCount() const { return rows_; }
    int32_t columnCount() const { return columns_; }
    // Nothing to correlate with: no rows.
    bool empty() const { return rows_ == 0; }

    double value(int32_t row, int32_t column) const {
        return values_[static_cast<std::size_t>(row) * static_cast<std::size_t>(columns_) +
                       static_cast<std::size_t>(column)];
    }
    std::vector<double> column(int32_t column) const;
    // Replaces the content; `values` holds rows * columns numbers, row after
    // row. A sample without columns keeps no rows.
    void assign(int32_t rows, int32_t columns, std::vector<double> values);
    void clear();

    // The block of the factor file after the sample's file name: the columns,
    // the rows and a flag (1 when rows follow), one per line; then each row,
    // every number followed by a tab, ended by a newline. Numbers in the
    // stream's own format.
    void write(std::ostream& out) const;
    // Reads that block. Negative counts or missing numbers set the stream's
    // fail state and leave the sample as it was. With the flag at 0 the
    // sample is empty, keeping the column count; so it is without columns.
    [[nodiscard]] int read(std::istream& in);

private:
    int32_t rows_ = 0;
    int32_t columns_ = 0;
    std::vector<double> values_;
};

} // namespace tarvex
