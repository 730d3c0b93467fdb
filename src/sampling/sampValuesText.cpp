// The text form of the sample store, which sample files embed.
#include <algorithm>
#include <istream>
#include <limits>
#include <ostream>

#include "common/ParallelFor.h"
#include "common/TextLines.h"
#include "sampling/NumberText.h"
#include "sampling/sampValues.h"

namespace tarvex {

namespace {

constexpr int kDigits = 10;
constexpr size_t kChunk = size_t{1} << 16;

void drain(std::ostream& out, std::string& text, bool force) {
    if (text.size() >= kChunk || (force && !text.empty())) {
        out.write(text.data(), std::streamsize(text.size()));
        text.clear();
    }
}

}  // namespace

void sampValues::write(std::ostream& out) const {
    out.precision(kDigits);
    out << rows_ << '\n' << columns_ << '\n' << order_ << '\n';
    if (rows_ == 0 || columns_ == 0) return;
    // Everything is in the file after a flush: read it through buffers of our
    // own, so that writing leaves the store's windows where they are.
    if (!flush()) {
        out.setstate(std::ios::badbit);
        return;
    }
    std::string text;
    text.reserve(kChunk + 64);
    std::vector<double> values;
    if (!reserve(values, order_ == 0 ? size_t(blockRows_) * size_t(columns_) : size_t(blockRows_))) {
        out.setstate(std::ios::badbit);
        return;
    }
    const int32_t blocks = blockCount();
    if (order_ == 0) {
        const int64_t slotBytes = int64_t{blockRows_} * columns_ * int64_t{sizeof(double)};
        for (int32_t q = 0; q < blocks; ++q) {
            if (!readBytes(values.data(), slotBytes, slotOffset(q))) {
                out.setstate(std::ios::badbit);
                return;
            }
            const int32_t n = validRows(q);
            // Slices of the block's rows are formatted side by side, then
            // written in row order: the same text as one pass.
            constexpr int64_t kSlices = 8;
            const int64_t slice = (int64_t(n) + kSlices - 1) / kSlices;
            std::vector<std::string> parts(static_cast<size_t>(kSlices));
            parallelFor(kSlices, 1, [&](int64_t first, int64_t last) {
                for (int64_t t = first; t < last; ++t) {
                    std::string& part = parts[size_t(t)];
                    const int64_t end = std::min<int64_t>(n, (t + 1) * slice);
                    for (int64_t r = t * slice; r < end; ++r) {
                        for (int32_t c = 0; c < columns_; ++c) {
                            appendNumber(part, values[size_t(c) * size_t(blockRows_) + size_t(r)], kDigits);
                            part += '\t';
                        }
                        part += '\n';
                    }
                }
            });
            drain(out, text, true);
            for (const std::string& part : parts) out.write(part.data(), std::streamsize(part.size()));
        }
    } else {
        for (int32_t c = 0; c < columns_; ++c) {
            for (int32_t q = 0; q < blocks; ++q) {
                if (!readColumnRun(c, q, values.data())) {
                    out.setstate(std::ios::badbit);
                    return;
                }
                const int32_t n = validRows(q);
                for (int32_t r = 0; r < n; ++r) {
                    appendNumber(text, values[size_t(r)], kDigits);
                    text += '\t';
                    drain(out, text, false);
                }
            }
            text += '\n';
        }
    }
    drain(out, text, true);
}

void sampValues::read(std::istream& in) {
    int32_t rows = 0, columns = 0, order = 0;
    in >> rows >> columns >> order;
    // Offsets into the working file must stay far inside 64 bits.
    constexpr int64_t kMaxValues = int64_t{1} << 58;
    if (in && (rows < 0 || columns < 0 || (order != 0 && order != 1) || (rows > 0 && columns == 0) ||
               int64_t{rows} * columns > kMaxValues || !countFitsInput(in, int64_t{rows} * columns, 1)))
        in.setstate(std::ios::failbit);
    if (!in) {
        clear();
        return;
    }

    // A read replaces whatever the store held.
    clear();
    order_ = order;
    if (columns > 0 && !allocate(columns)) in.setstate(std::ios::badbit);

    if (order == 0) {
        // The row buffer grows only with values actually read, so an absurd
        // column count in a short text costs nothing.
        std::vector<double> row;
        double value = 0.0;
        for (int32_t i = 0; i < rows && in; ++i) {
            row.clear();
            for (int32_t j = 0; j < columns; ++j) {
                if (!readNumber(in, value)) break;
                row.push_back(value);
            }
            if (in && addRow(row.data()) == 0) in.setstate(std::ios::badbit);
        }
    } else if (rows > 0) {
        // By factor: every value goes straight to its place through the
        // column window. The rows count is taken on trust while reading; parts
        // of the file never written read back as zeros, and a short text
        // clears the store below.
        if (!growFirstBlock(rows)) in.setstate(std::ios::badbit);
        if (in) rows_ = rows;
        double value = 0.0;
        for (int32_t j = 0; j < columns && in; ++j) {
            for (int32_t i = 0; i < rows; ++i) {
                if (!readNumber(in, value)) break;
                if (!columnWindowFor(i, j)) {
                    in.setstate(std::ios::badbit);
                    break;
                }
                columnWindow_[size_t(i - firstRow_)] = value;
                dirty_ = true;
            }
        }
        if (in && !toRowMode()) in.setstate(std::ios::badbit);
    }
    if (in) in.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
    if (in.fail()) {
        const std::string reason = errorText_;
        clear();
        if (in.bad()) errorText_ = reason;
    }
}

std::ostream& operator<<(std::ostream& out, const sampValues& store) {
    store.write(out);
    return out;
}

std::istream& operator>>(std::istream& in, sampValues& store) {
    store.read(in);
    return in;
}

}  // namespace tarvex
