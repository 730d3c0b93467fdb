#include "correlation/SteinSample.h"

#include <istream>
#include <ostream>

namespace tarvex {

std::vector<double> SteinSample::column(int32_t c) const {
    std::vector<double> out;
    if (c < 0 || c >= columns_) return out;
    out.reserve(static_cast<std::size_t>(rows_));
    for (int32_t r = 0; r < rows_; ++r) out.push_back(value(r, c));
    return out;
}

void SteinSample::assign(int32_t rows, int32_t columns, std::vector<double> values) {
    if (rows < 0 || columns <= 0) rows = 0;
    if (columns < 0) columns = 0;
    rows_ = rows;
    columns_ = columns;
    values_ = std::move(values);
    values_.resize(static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns), 0.0);
}

void SteinSample::clear() {
    rows_ = 0;
    columns_ = 0;
    values_.clear();
}

void SteinSample::write(std::ostream& out) const {
    out << columns_ << '\n' << rows_ << '\n' << (rows_ > 0 ? 1 : 0) << '\n';
    for (int32_t r = 0; r < rows_; ++r) {
        for (int32_t c = 0; c < columns_; ++c) out << value(r, c) << '\t';
        out << '\n';
    }
}

int SteinSample::read(std::istream& in) {
    int32_t columns = 0, rows = 0, flag = 0;
    if (!(in >> columns >> rows >> flag)) return 0;
    if (columns < 0 || rows < 0) {
        in.setstate(std::ios::failbit);
        return 0;
    }
    // Rows without columns carry nothing; such a sample is empty.
    if (flag == 0 || columns == 0) {
        rows_ = 0;
        columns_ = columns;
        values_.clear();
        return 1;
    }
    // No reservation from the counts: a damaged count meets the end of the
    // stream long before memory runs out.
    std::vector<double> values;
    const int64_t total = static_cast<int64_t>(rows) * columns;
    for (int64_t k = 0; k < total; ++k) {
        double v = 0.0;
        if (!(in >> v)) return 0;
        values.push_back(v);
    }
    rows_ = rows;
    columns_ = columns;
    values_ = std::move(values);
    return 1;
}

} // namespace tarvex
