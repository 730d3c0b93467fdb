#include "correlation/SteinRanks.h"

#include <algorithm>
#include <cstddef>

#include "correlation/Ranking.h"

namespace tarvex {

SteinRanks::SteinRanks(const RowReader& readRow, int32_t availableRows, int32_t columns, int32_t sampleCount,
                       int32_t replicateLength, int32_t replicates)
    : columns_(columns > 0 ? columns : 0), rows_(sampleCount > 0 ? sampleCount : 0) {
    (void)replicates;  // the blocks follow from the row count and their length
    if (rows_ > availableRows) {
        failed_ = 1;
        errorText_ = "The Stein correlation sample is smaller than the sample to generate.\nNo correlation can be calculated.";
        rows_ = 0;
        return;
    }
    if (replicateLength < 1) replicateLength = rows_ > 0 ? rows_ : 1;
    const size_t rows = size_t(rows_);
    ranks_.assign(size_t(columns_) * rows, 0);
    std::vector<double> block(size_t(replicateLength) * size_t(columns_)), row(static_cast<size_t>(columns_)), column;
    std::vector<int32_t> blockRanks;
    for (int32_t first = 0; first < rows_; first += replicateLength) {
        const int32_t length = std::min(replicateLength, rows_ - first);
        for (int32_t r = 0; r < length; ++r) {
            if (!readRow(first + r, row.data())) {
                failed_ = 1;
                errorText_ = "The Stein correlation sample cannot be read.\nNo correlation can be calculated.";
                ranks_.clear();
                rows_ = 0;
                return;
            }
            std::copy(row.begin(), row.end(), block.begin() + size_t(r) * size_t(columns_));
        }
        column.resize(size_t(length));
        blockRanks.resize(size_t(length));
        for (int32_t c = 0; c < columns_; ++c) {
            for (int32_t r = 0; r < length; ++r) column[size_t(r)] = block[size_t(r) * size_t(columns_) + size_t(c)];
            rankPositions(column.data(), length, blockRanks.data());
            std::copy(blockRanks.begin(), blockRanks.end(), ranks_.begin() + std::ptrdiff_t(size_t(c) * rows + size_t(first)));
        }
    }
}

int32_t SteinRanks::rankOf(int32_t column, int32_t row) const {
    if (failed_ || column < 0 || column >= columns_ || row < 0 || row >= rows_) return 0;
    return ranks_[size_t(column) * size_t(rows_) + size_t(row)];
}

}  // namespace tarvex
