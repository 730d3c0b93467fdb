#include "sampling/sampValues.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <new>
#include <stdexcept>
#include <unistd.h>

#include "common/WorkingFile.h"

namespace tarvex {

namespace {

constexpr int32_t kMaxCacheLimit = 1 << 28;
// Rows of a new store's first block; it doubles up to the full block.
constexpr int32_t kFirstBlockRows = 16;

// dst (cols x rows) = transpose of src (rows x cols), both row after row.
// Tiled so that both sides stay in cache for wide and for narrow tables.
void transpose(const double* src, double* dst, int64_t rows, int64_t cols) {
    constexpr int64_t tile = 32;
    for (int64_t r0 = 0; r0 < rows; r0 += tile) {
        const int64_t r1 = std::min(rows, r0 + tile);
        for (int64_t c0 = 0; c0 < cols; c0 += tile) {
            const int64_t c1 = std::min(cols, c0 + tile);
            for (int64_t r = r0; r < r1; ++r)
                for (int64_t c = c0; c < c1; ++c) dst[c * rows + r] = src[r * cols + c];
        }
    }
}

void release(std::vector<double>& buffer) { std::vector<double>().swap(buffer); }

}  // namespace

sampValues::sampValues() : sampValues(defaultCacheLimit) {}

sampValues::sampValues(int32_t cacheLimit) : cacheLimit_(std::clamp(cacheLimit, 1, kMaxCacheLimit)) {
    // Without a file now, the store tries again when it first needs one.
    (void)openFile();
}

sampValues::sampValues(const sampValues& other) : cacheLimit_(other.cacheLimit_), order_(other.order_) {
    (void)openFile();  // copyFrom tries again and reports
    if (!copyFrom(other)) {
        const std::string reason = errorText_;
        clear();
        errorText_ = reason;
    }
}

sampValues& sampValues::operator=(const sampValues& other) {
    // As with the copy constructor, a failed copy leaves the store empty with errorText saying why.
    (void)assign(other);
    return *this;
}

sampValues::sampValues(sampValues&& other) noexcept { takeFrom(other); }

sampValues& sampValues::operator=(sampValues&& other) noexcept {
    if (&other != this) {
        removeFile();
        takeFrom(other);
    }
    return *this;
}

sampValues::~sampValues() { removeFile(); }

void sampValues::removeFile() {
    if (fd_ >= 0) ::close(fd_);
    if (!fileName_.empty()) ::unlink(fileName_.c_str());
    fd_ = -1;
    fileName_.clear();
}

void sampValues::takeFrom(sampValues& other) noexcept {
    cacheLimit_ = other.cacheLimit_;
    rows_ = other.rows_;
    columns_ = other.columns_;
    blockRows_ = other.blockRows_;
    fullBlockRows_ = other.fullBlockRows_;
    segmentBlocks_ = other.segmentBlocks_;
    order_ = other.order_;
    columnMode_ = other.columnMode_;
    fileName_ = std::move(other.fileName_);
    fd_ = other.fd_;
    errorText_ = std::move(other.errorText_);
    rowWindow_ = std::move(other.rowWindow_);
    scratch_ = std::move(other.scratch_);
    columnWindow_ = std::move(other.columnWindow_);
    dirty_ = other.dirty_;
    windowBlock_ = other.windowBlock_;
    firstRow_ = other.firstRow_;
    endRow_ = other.endRow_;
    cachedColumn_ = other.cachedColumn_;
    cachedSegment_ = other.cachedSegment_;

    other.fd_ = -1;
    other.fileName_.clear();
    other.rowWindow_.clear();
    other.scratch_.clear();
    other.columnWindow_.clear();
    other.resetCounts();
    other.order_ = 0;
    other.errorText_ = "No errors";
}

// ---------------------------------------------------------------- file access

bool sampValues::openFile() const {
    if (fd_ >= 0) return true;
    std::string name;
    const int fd = createWorkingFile(&name);
    if (fd < 0) {
        errorText_ = "Cannot create a working file in " + workingDirectory() + ": " + std::strerror(errno);
        return false;
    }
    fd_ = fd;
    fileName_ = name;
    return true;
}

bool sampValues::readBytes(void* data, int64_t bytes, int64_t offset) const {
    if (!openFile()) return false;
    auto* p = static_cast<char*>(data);
    while (bytes > 0) {
        const ssize_t n = ::pread(fd_, p, static_cast<size_t>(bytes), offset);
        if (n < 0) {
            if (errno == EINTR) continue;
            errorText_ = "Cannot read the working file " + fileName_ + ": " + std::strerror(errno);
            return false;
        }
        if (n == 0) {
            // Past the end of the file: parts of a slot never written hold zeros.
            std::memset(p, 0, static_cast<size_t>(bytes));
            return true;
        }
        p += n;
        bytes -= n;
        offset += n;
    }
    return true;
}

bool sampValues::writeBytes(const void* data, int64_t bytes, int64_t offset) const {
    if (!openFile()) return false;
    const auto* p = static_cast<const char*>(data);
    while (bytes > 0) {
        const ssize_t n = ::pwrite(fd_, p, static_cast<size_t>(bytes), offset);
        if (n < 0) {
            if (errno == EINTR) continue;
            errorText_ = "Cannot write the working file " + fileName_ + ": " + std::strerror(errno);
            return false;
        }
        p += n;
        bytes -= n;
        offset += n;
    }
    return true;
}

int64_t sampValues::slotOffset(int32_t block) const {
    return int64_t{block} * blockRows_ * columns_ * int64_t{sizeof(double)};
}

int32_t sampValues::blockCount() const {
    if (blockRows_ == 0) return 0;
    return static_cast<int32_t>((int64_t{rows_} + blockRows_ - 1) / blockRows_);
}

int32_t sampValues::validRows(int32_t block) const {
    return static_cast<int32_t>(std::min<int64_t>(blockRows_, int64_t{rows_} - int64_t{block} * blockRows_));
}

bool sampValues::reserve(std::vector<double>& buffer, size_t size) const {
    if (buffer.size() == size) return true;
    try {
        buffer.assign(size, 0.0);
    } catch (const std::bad_alloc&) {
        release(buffer);
        errorText_ = "Not enough memory for the sample window";
        return false;
    } catch (const std::length_error&) {
        release(buffer);
        errorText_ = "Not enough memory for the sample window";
        return false;
    }
    return true;
}

void sampValues::fail(const char* text) const { errorText_ = text; }

// ---------------------------------------------------------------- windows

bool sampValues::flush() const { return columnMode_ ? flushColumnWindow() : flushRowWindow(); }

bool sampValues::flushRowWindow() const {
    if (!dirty_ || columnMode_ || windowBlock_ < 0) return true;
    const size_t slot = size_t(blockRows_) * size_t(columns_);
    if (!reserve(scratch_, slot)) return false;
    transpose(rowWindow_.data(), scratch_.data(), blockRows_, columns_);
    // The whole slot goes out, also rows not yet used, so that every slot
    // below the last row is complete in the file.
    if (!writeBytes(scratch_.data(), int64_t(slot * sizeof(double)), slotOffset(windowBlock_))) return false;
    dirty_ = false;
    return true;
}

bool sampValues::flushColumnWindow() const {
    if (!dirty_ || !columnMode_ || cachedColumn_ < 0) return true;
    const int32_t first = cachedSegment_ * segmentBlocks_;
    const int32_t end = std::min(first + segmentBlocks_, blockCount());
    const int64_t runBytes = int64_t{blockRows_} * int64_t{sizeof(double)};
    if (columns_ == 1) {
        // One column: the runs of consecutive blocks touch each other.
        const int64_t values = std::min<int64_t>(int64_t{rows_} - int64_t{first} * blockRows_,
                                                 int64_t{segmentBlocks_} * blockRows_);
        if (!writeBytes(columnWindow_.data(), values * int64_t{sizeof(double)}, slotOffset(first))) return false;
    } else {
        for (int32_t q = first; q < end; ++q) {
            const double* run = columnWindow_.data() + size_t(q - first) * size_t(blockRows_);
            const int64_t bytes = int64_t{validRows(q)} * int64_t{sizeof(double)};
            if (!writeBytes(run, bytes, slotOffset(q) + cachedColumn_ * runBytes)) return false;
        }
    }
    dirty_ = false;
    return true;
}

bool sampValues::loadRowWindow(int32_t block) {
    if (!flushRowWindow()) return false;
    windowBlock_ = -1;
    const size_t slot = size_t(blockRows_) * size_t(columns_);
    if (!reserve(rowWindow_, slot)) return false;
    if (int64_t{block} * blockRows_ < rows_) {
        if (!reserve(scratch_, slot)) return false;
        if (!readBytes(scratch_.data(), int64_t(slot * sizeof(double)), slotOffset(block))) return false;
        transpose(scratch_.data(), rowWindow_.data(), columns_, blockRows_);
    } else {
        std::fill(rowWindow_.begin(), rowWindow_.end(), 0.0);
    }
    windowBlock_ = block;
    firstRow_ = block * blockRows_;
    endRow_ = static_cast<int32_t>(std::min<int64_t>(INT32_MAX, int64_t{firstRow_} + blockRows_));
    dirty_ = false;
    return true;
}

bool sampValues::readColumnRun(int32_t column, int32_t block, double* out) const {
    const int64_t runBytes = int64_t{blockRows_} * int64_t{sizeof(double)};
    return readBytes(out, int64_t{validRows(block)} * int64_t{sizeof(double)},
                     slotOffset(block) + column * runBytes);
}

bool sampValues::loadColumnWindow(int32_t column, int32_t segment) {
    if (!flushColumnWindow()) return false;
    cachedColumn_ = -1;
    // The window spans the segment's blocks that exist, so a short sample
    // does not pay for a whole window.
    const int32_t first = segment * segmentBlocks_;
    const int32_t end = std::min(first + segmentBlocks_, blockCount());
    const size_t size = size_t(std::max(end - first, 1)) * size_t(blockRows_);
    if (!reserve(columnWindow_, size)) return false;
    if (columns_ == 1) {
        const int64_t values = std::min<int64_t>(int64_t{rows_} - int64_t{first} * blockRows_, int64_t(size));
        if (!readBytes(columnWindow_.data(), values * int64_t{sizeof(double)}, slotOffset(first))) return false;
    } else {
        for (int32_t q = first; q < end; ++q)
            if (!readColumnRun(column, q, columnWindow_.data() + size_t(q - first) * size_t(blockRows_)))
                return false;
    }
    cachedColumn_ = column;
    cachedSegment_ = segment;
    firstRow_ = first * blockRows_;
    endRow_ = static_cast<int32_t>(std::min<int64_t>(rows_, int64_t{firstRow_} + int64_t(size)));
    dirty_ = false;
    return true;
}

bool sampValues::toRowMode() {
    if (!columnMode_) return true;
    if (!flushColumnWindow()) return false;
    release(columnWindow_);
    columnMode_ = 0;
    cachedColumn_ = -1;
    cachedSegment_ = -1;
    windowBlock_ = -1;
    return true;
}

bool sampValues::toColumnMode() {
    if (columnMode_) return true;
    if (!flushRowWindow()) return false;
    release(rowWindow_);
    release(scratch_);
    columnMode_ = 1;
    windowBlock_ = -1;
    cachedColumn_ = -1;
    cachedSegment_ = -1;
    return true;
}

bool sampValues::rowWindowFor(int32_t row) {
    if (!columnMode_ && windowBlock_ >= 0 && row >= firstRow_ && row < endRow_) return true;
    if (!toRowMode()) return false;
    return loadRowWindow(row / blockRows_);
}

bool sampValues::columnWindowFor(int32_t row, int32_t column) {
    if (columnMode_ && column == cachedColumn_ && row >= firstRow_ && row < endRow_) return true;
    if (!toColumnMode()) return false;
    return loadColumnWindow(column, row / (segmentBlocks_ * blockRows_));
}

// ---------------------------------------------------------------- operations

void sampValues::resetCounts() {
    rows_ = 0;
    columns_ = 0;
    blockRows_ = 0;
    fullBlockRows_ = 0;
    segmentBlocks_ = 1;
    columnMode_ = 0;
    dirty_ = false;
    windowBlock_ = -1;
    cachedColumn_ = -1;
    cachedSegment_ = -1;
    firstRow_ = endRow_ = 0;
}

int sampValues::clear() {
    release(rowWindow_);
    release(scratch_);
    release(columnWindow_);
    resetCounts();
    if (fd_ >= 0 && ::ftruncate(fd_, 0) != 0) {
        // An unshrinkable file still holds nothing the store will read back.
        errorText_ = "Cannot empty the working file " + fileName_ + ": " + std::strerror(errno);
        return 1;
    }
    errorText_ = "No errors";
    return 1;
}

int sampValues::allocate(int32_t columns) {
    if (columns_ != 0) {
        fail("Column number already set. Can't allocate a new sampValues.");
        return 0;
    }
    if (columns < 1) {
        fail("Invalid number of factors");
        return 0;
    }
    clear();
    columns_ = columns;
    fullBlockRows_ = cacheLimit_ / columns + 1;
    blockRows_ = std::min(fullBlockRows_, kFirstBlockRows);
    segmentBlocks_ = std::max(1, cacheLimit_ / blockRows_);
    return 1;
}

// While the whole sample is in block 0, the block can take a new length: its
// slot is written whole from the row window at the next flush, so the window
// only has to hold the block's rows and grow.
bool sampValues::growFirstBlock(int32_t rows) {
    if (rows <= blockRows_ || blockRows_ >= fullBlockRows_) return true;
    if (int64_t{rows_} > blockRows_) return true;  // laid out for good
    if (!toRowMode()) return false;
    if (windowBlock_ != 0 && !loadRowWindow(0)) return false;
    int32_t grown = blockRows_;
    while (grown < rows && grown < fullBlockRows_)
        grown = static_cast<int32_t>(std::min<int64_t>(int64_t{grown} * 2, fullBlockRows_));
    try {
        rowWindow_.resize(size_t(grown) * size_t(columns_), 0.0);
    } catch (const std::exception&) {
        fail("Not enough memory for the sample window");
        return false;
    }
    blockRows_ = grown;
    segmentBlocks_ = std::max(1, cacheLimit_ / blockRows_);
    endRow_ = grown;
    dirty_ = true;
    return true;
}

int32_t sampValues::addRow(const double* values) {
    if (columns_ == 0) {
        fail("No columns allocated");
        return 0;
    }
    if (values == nullptr) {
        fail("Wrong line position.");
        return 0;
    }
    if (rows_ == INT32_MAX) {
        fail("Too many rows");
        return 0;
    }
    const int32_t row = rows_;
    if (row == blockRows_ && !growFirstBlock(row + 1)) return 0;
    if (!(!columnMode_ && windowBlock_ >= 0 && row >= firstRow_ && row < endRow_)) {
        if (!toRowMode() || !loadRowWindow(row / blockRows_)) return 0;
    }
    std::copy_n(values, columns_, rowWindow_.data() + size_t(row - firstRow_) * size_t(columns_));
    dirty_ = true;
    return ++rows_;
}

int sampValues::setValue(int32_t row, int32_t column, double x) {
    if (row < 0 || row >= rows_ || column < 0 || column >= columns_) {
        fail("Wrong element position to modify");
        return 0;
    }
    if (!rowWindowFor(row)) return 0;
    rowWindow_[size_t(row - firstRow_) * size_t(columns_) + size_t(column)] = x;
    dirty_ = true;
    return 1;
}

int sampValues::getValue(int32_t row, int32_t column, double* x) {
    if (row < 0 || row >= rows_ || column < 0 || column >= columns_ || x == nullptr) {
        fail("Wrong element position.");
        return 0;
    }
    if (!rowWindowFor(row)) return 0;
    *x = rowWindow_[size_t(row - firstRow_) * size_t(columns_) + size_t(column)];
    return 1;
}

int sampValues::setRow(int32_t row, const double* values) {
    if (row < 0 || row >= rows_ || values == nullptr) {
        fail("Wrong line position.");
        return 0;
    }
    if (!rowWindowFor(row)) return 0;
    std::copy_n(values, columns_, rowWindow_.data() + size_t(row - firstRow_) * size_t(columns_));
    dirty_ = true;
    return 1;
}

int sampValues::getRow(int32_t row, double* values) {
    if (row < 0 || row >= rows_ || values == nullptr) {
        fail("Wrong line position.");
        return 0;
    }
    if (!rowWindowFor(row)) return 0;
    std::copy_n(rowWindow_.data() + size_t(row - firstRow_) * size_t(columns_), columns_, values);
    return 1;
}

double* sampValues::rowPointer(int32_t row) {
    if (row < 0 || row >= rows_) {
        fail("Wrong line position.");
        return nullptr;
    }
    if (!rowWindowFor(row)) return nullptr;
    // The caller may write through the pointer: the window must go back to the file.
    dirty_ = true;
    return rowWindow_.data() + size_t(row - firstRow_) * size_t(columns_);
}

int sampValues::setColumnValue(int32_t row, int32_t column, double x) {
    if (row < 0 || row >= rows_ || column < 0 || column >= columns_) {
        fail("Wrong element position.");
        return 0;
    }
    if (!columnWindowFor(row, column)) return 0;
    columnWindow_[size_t(row - firstRow_)] = x;
    dirty_ = true;
    return 1;
}

int sampValues::getColumnValue(int32_t row, int32_t column, double* x) {
    if (row < 0 || row >= rows_ || column < 0 || column >= columns_ || x == nullptr) {
        fail("Wrong element position.");
        return 0;
    }
    if (!columnWindowFor(row, column)) return 0;
    *x = columnWindow_[size_t(row - firstRow_)];
    return 1;
}

int sampValues::setOrder(int32_t order) {
    if (order != 0 && order != 1) return 0;
    order_ = order;
    return 1;
}

int sampValues::setColumnMode(int32_t mode) {
    if (mode == 1) return toColumnMode() ? 1 : 0;
    if (mode == 0) return toRowMode() ? 1 : 0;
    return 0;
}

// ---------------------------------------------------------------- copies

bool sampValues::copyFrom(const sampValues& other) {
    order_ = other.order_;
    if (other.columns_ == 0) return true;
    if (!other.flush()) {
        errorText_ = other.errorText_;
        return false;
    }
    cacheLimit_ = other.cacheLimit_;
    columns_ = other.columns_;
    blockRows_ = other.blockRows_;
    fullBlockRows_ = other.fullBlockRows_;
    segmentBlocks_ = other.segmentBlocks_;
    rows_ = other.rows_;

    // Every slot below the last row is in the other store's file now; copy
    // them through a bounded buffer.
    const int64_t total = int64_t{blockCount()} * blockRows_ * columns_ * int64_t{sizeof(double)};
    constexpr int64_t chunk = int64_t{1} << 20;
    std::vector<char> buffer(size_t(std::min(total, chunk)));
    for (int64_t done = 0; done < total; done += chunk) {
        const int64_t bytes = std::min(chunk, total - done);
        if (!other.readBytes(buffer.data(), bytes, done)) {
            errorText_ = other.errorText_;
            return false;
        }
        if (!writeBytes(buffer.data(), bytes, done)) return false;
    }
    return true;
}

int sampValues::assign(const sampValues& other) {
    if (&other == this) return 1;
    clear();
    cacheLimit_ = other.cacheLimit_;
    if (!copyFrom(other)) {
        const std::string reason = errorText_;
        clear();
        errorText_ = reason;
        return 0;
    }
    return 1;
}

}  // namespace tarvex
