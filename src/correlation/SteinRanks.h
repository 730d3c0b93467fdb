#pragma once
// Rank tables taken from an imported (Stein) sample: the rows are cut in
// replicate blocks, and within each block every row of a column gets the place
// of its value in that block's ascending order. A sampler that reorders its own
// columns by these ranks copies the rank structure, and so the correlation, of
// the imported sample.
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace tarvex {

class SteinRanks {
public:
    // Fills `values` with the `columns` numbers of imported row `row`; 0 on failure.
    using RowReader = std::function<int(int32_t row, double* values)>;

    // Ranks of the first `sampleCount` imported rows, in blocks of
    // `replicateLength` rows (`replicates` blocks are expected; a shorter last
    // block is ranked within itself). Fails, with errorText set, when the
    // imported sample holds fewer rows than asked for or cannot be read.
    SteinRanks(const RowReader& readRow, int32_t availableRows, int32_t columns, int32_t sampleCount,
               int32_t replicateLength, int32_t replicates);

    int isValid() const { return failed_ ? 0 : 1; }
    // Why the table failed; "No errors" otherwise.
    const std::string& errorText() const { return errorText_; }
    // Place of `row` within its block, from 0 to the block's length - 1;
    // 0 when the table failed or the place is outside it.
    int32_t rankOf(int32_t column, int32_t row) const;

    int32_t columnCount() const { return columns_; }
    int32_t rowCount() const { return rows_; }

private:
    int failed_ = 0;
    std::string errorText_ = "No errors";
    int32_t columns_ = 0;
    int32_t rows_ = 0;
    std::vector<int32_t> ranks_;  // column after column
};

}  // namespace tarvex
