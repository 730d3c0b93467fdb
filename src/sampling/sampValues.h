#pragma once
// The sample store: a table of doubles (rows are runs, columns are factors or
// output variables) of any size, kept in a working file behind a small memory
// window.
#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

namespace tarvex {

// File layout. The table is cut into blocks of `blockRows` rows; each block
// occupies one fixed-size slot of blockRows * columns doubles, stored column
// after column. A row pass reads or writes whole slots; a column pass reads or
// writes, per block, one contiguous run of blockRows values. Only one window
// is live at a time: in row mode one whole block (held row after row, so that
// `rowPointer` can hand out a row), in column mode a run of consecutive blocks
// of one column. The file is the single copy of everything outside the live
// window, so switching modes only needs a flush.
//
// A store starts with a short first block that doubles as rows arrive, up to
// the full `blockRows()`: a sample of a few rows then costs a few rows of
// memory and file, not a whole window. Once a second block is needed, the
// layout no longer changes.
//
// Memory: the row window and its transposition buffer hold about
// cacheLimit + columns doubles each, the column window about cacheLimit, so
// the store stays within a few megabytes whatever its number of rows.
class sampValues {
public:
    static constexpr int32_t defaultCacheLimit = 262144;

    sampValues();
    // A store whose window aims at `cacheLimit` doubles instead of the usual
    // 262144; small windows exercise many blocks with little data.
    explicit sampValues(int32_t cacheLimit);
    sampValues(const sampValues& other);
    sampValues& operator=(const sampValues& other);
    // A move hands over the working file; the moved-from store is empty and
    // makes itself a new file when it needs one.
    sampValues(sampValues&& other) noexcept;
    sampValues& operator=(sampValues&& other) noexcept;
    ~sampValues();

    [[nodiscard]] int allocate(int32_t columns);
    int clear();
    // Appends one row of `columnCount()` values; returns the new row count, 0 on failure.
    [[nodiscard]] int32_t addRow(const double* values);

    [[nodiscard]] int setValue(int32_t row, int32_t column, double x);
    [[nodiscard]] int getValue(int32_t row, int32_t column, double* x);
    [[nodiscard]] int setRow(int32_t row, const double* values);
    [[nodiscard]] int getRow(int32_t row, double* values);
    // The row inside the window, valid until the next call on this store.
    double* rowPointer(int32_t row);

    [[nodiscard]] int setColumnValue(int32_t row, int32_t column, double x);
    [[nodiscard]] int getColumnValue(int32_t row, int32_t column, double* x);

    [[nodiscard]] int setOrder(int32_t order);
    [[nodiscard]] int setColumnMode(int32_t mode);
    [[nodiscard]] int assign(const sampValues& other);

    int32_t rowCount() const { return rows_; }
    int32_t columnCount() const { return columns_; }
    // Rows per block once the sample outgrows its first block.
    int32_t blockRows() const { return fullBlockRows_; }
    int32_t cacheLimit() const { return cacheLimit_; }
    int32_t order() const { return order_; }
    int32_t columnMode() const { return columnMode_; }
    const std::string& errorText() const { return errorText_; }
    const std::string& workingFileName() const { return fileName_; }

    // Text form: rows, columns, order, then the values at ten significant
    // digits, one line per row (order 0) or per column (order 1), each value
    // followed by a tab. Leaves the stream's precision at 10.
    void write(std::ostream& out) const;
    // Replaces the content with a text form. Bad counts, missing values or
    // garbage set the stream's failure and leave the store empty.
    void read(std::istream& in);

private:
    [[nodiscard]] bool openFile() const;
    [[nodiscard]] bool readBytes(void* data, int64_t bytes, int64_t offset) const;
    [[nodiscard]] bool writeBytes(const void* data, int64_t bytes, int64_t offset) const;
    int64_t slotOffset(int32_t block) const;
    int32_t blockCount() const;
    int32_t validRows(int32_t block) const;
    [[nodiscard]] bool reserve(std::vector<double>& buffer, size_t size) const;

    [[nodiscard]] bool flush() const;
    [[nodiscard]] bool flushRowWindow() const;
    [[nodiscard]] bool flushColumnWindow() const;
    [[nodiscard]] bool loadRowWindow(int32_t block);
    [[nodiscard]] bool loadColumnWindow(int32_t column, int32_t segment);
    [[nodiscard]] bool toRowMode();
    [[nodiscard]] bool toColumnMode();
    [[nodiscard]] bool rowWindowFor(int32_t row);
    [[nodiscard]] bool columnWindowFor(int32_t row, int32_t column);
    [[nodiscard]] bool readColumnRun(int32_t column, int32_t block, double* out) const;
    [[nodiscard]] bool copyFrom(const sampValues& other);
    [[nodiscard]] bool growFirstBlock(int32_t rows);
    void fail(const char* text) const;
    void resetCounts();
    void removeFile();
    void takeFrom(sampValues& other) noexcept;

    int32_t cacheLimit_ = defaultCacheLimit;
    int32_t rows_ = 0;
    int32_t columns_ = 0;
    int32_t blockRows_ = 0;      // rows per block as the file is laid out now
    int32_t fullBlockRows_ = 0;  // what blockRows_ grows to
    int32_t segmentBlocks_ = 1;  // blocks per column window
    int32_t order_ = 0;
    int32_t columnMode_ = 0;

    // Working file and windows: flushing is allowed from const operations
    // (copy, text form), since it changes nothing that a caller can see.
    mutable std::string fileName_;
    mutable int fd_ = -1;
    mutable std::string errorText_ = "No errors";
    mutable std::vector<double> rowWindow_;   // blockRows x columns, row after row
    mutable std::vector<double> scratch_;     // one slot, column after column
    mutable std::vector<double> columnWindow_;
    mutable bool dirty_ = false;
    int32_t windowBlock_ = -1;  // block held in row mode, -1 for none
    int32_t firstRow_ = 0, endRow_ = 0;  // rows covered by the live window
    int32_t cachedColumn_ = -1;
    int32_t cachedSegment_ = -1;
};

std::ostream& operator<<(std::ostream& out, const sampValues& store);
std::istream& operator>>(std::istream& in, sampValues& store);

}  // namespace tarvex
