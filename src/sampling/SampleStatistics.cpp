#include "sampling/SampleStatistics.h"

#include <cmath>
#include <istream>
#include <ostream>

#include "sampling/NumberText.h"
#include "sampling/sampValues.h"

namespace tarvex {

namespace {
constexpr double kAbsent = -10.0;
}

void SampleStatistics::reset() {
    size_ = 0;
    present_ = false;
    correlation_.clear();
    moments_.clear();
}

int SampleStatistics::compute(sampValues& store) {
    reset();
    const int32_t n = store.rowCount();
    const int32_t m = store.columnCount();
    const size_t cols = size_t(m);
    std::vector<double> row(cols), mean(cols, 0.0), sum2(cols, 0.0), sum3(cols, 0.0), sum4(cols, 0.0), dev(cols);
    std::vector<double> cross(cols * cols, 0.0);
    const double divisor = n > 1 ? double(n - 1) : 1.0;

    for (int32_t r = 0; r < n; ++r) {
        if (!store.getRow(r, row.data())) {
            errorText_ = store.errorText();
            return 0;
        }
        for (size_t c = 0; c < cols; ++c) mean[c] += row[c];
    }
    for (size_t c = 0; c < cols; ++c) mean[c] /= divisor;

    for (int32_t r = 0; r < n; ++r) {
        if (!store.getRow(r, row.data())) {
            errorText_ = store.errorText();
            return 0;
        }
        for (size_t c = 0; c < cols; ++c) {
            const double d = row[c] - mean[c];
            const double d2 = d * d;
            dev[c] = d;
            sum2[c] += d2;
            sum3[c] += d2 * d;
            sum4[c] += d2 * d2;
        }
        for (size_t i = 0; i < cols; ++i) {
            double* line = cross.data() + i * cols;
            const double di = dev[i];
            for (size_t j = i + 1; j < cols; ++j) line[j] += di * dev[j];
        }
    }

    size_ = m;
    moments_.assign(cols * 4, 0.0);
    std::vector<double> sigma(cols);
    for (size_t c = 0; c < cols; ++c) {
        const double s = std::sqrt(sum2[c] / divisor);
        sigma[c] = s;
        double* mo = moments_.data() + c * 4;
        mo[0] = mean[c];
        mo[1] = s;
        if (s > 0.0) {
            mo[2] = sum3[c] / (divisor * s * s * s);
            mo[3] = sum4[c] / (divisor * s * s * s * s) - 3.0;
        }
    }
    correlation_.assign(cols * cols, 0.0);
    for (size_t i = 0; i < cols; ++i) {
        correlation_[i * cols + i] = 1.0;
        for (size_t j = i + 1; j < cols; ++j) {
            double r = 0.0;
            if (sigma[i] > 0.0 && sigma[j] > 0.0) r = cross[i * cols + j] / (divisor * sigma[i] * sigma[j]);
            correlation_[i * cols + j] = r;
            correlation_[j * cols + i] = r;
        }
    }
    present_ = true;
    errorText_ = "No errors";
    return 1;
}

double SampleStatistics::correlation(int32_t i, int32_t j) const {
    if (!present_ || i < 0 || j < 0 || i >= size_ || j >= size_) return kAbsent;
    return correlation_[size_t(i) * size_t(size_) + size_t(j)];
}

double SampleStatistics::moment(int32_t column, int32_t k) const {
    if (!present_ || column < 0 || column >= size_ || k < 0 || k > 3) return kAbsent;
    return moments_[size_t(column) * 4 + size_t(k)];
}

void SampleStatistics::write(std::ostream& out) const {
    out << size_ << '\n';
    const size_t n = size_t(size_);
    for (size_t i = 0; i < n; ++i) {
        for (size_t j = 0; j < n; ++j) out << correlation_[i * n + j] << '\t';
        out << '\n';
    }
    for (size_t i = 0; i < n; ++i) {
        for (size_t k = 0; k < 4; ++k) out << moments_[i * 4 + k] << '\t';
        out << '\n';
    }
}

void SampleStatistics::read(std::istream& in) {
    reset();
    int32_t size = 0;
    if (!(in >> size)) return;
    if (size < 0) {
        in.setstate(std::ios::failbit);
        return;
    }
    // Values are collected before anything is sized by the count, so that a
    // wrong count in a short text cannot ask for a huge matrix.
    std::vector<double> correlation, moments;
    double value = 0.0;
    const int64_t cells = int64_t{size} * size;
    for (int64_t c = 0; c < cells; ++c) {
        if (!readNumber(in, value)) return;
        correlation.push_back(value);
    }
    for (int64_t c = 0; c < int64_t{size} * 4; ++c) {
        if (!readNumber(in, value)) return;
        moments.push_back(value);
    }
    size_ = size;
    correlation_ = std::move(correlation);
    moments_ = std::move(moments);
    present_ = true;
}

std::ostream& operator<<(std::ostream& out, const SampleStatistics& statistics) {
    statistics.write(out);
    return out;
}

std::istream& operator>>(std::istream& in, SampleStatistics& statistics) {
    statistics.read(in);
    return in;
}

}  // namespace tarvex
