#include "correlation/ImanConover.h"

#include <algorithm>
#include <cmath>

#include "common/ParallelFor.h"
#include "correlation/ColumnFile.h"
#include "common/UniformRandom.h"
#include "correlation/FactorList.h"
#include "correlation/Ranking.h"
#include "factors/Normal.h"

namespace tarvex {

ImanConover::ImanConover(const float* matrix, int32_t n, int32_t rowCount)
    : factorCount_(n > 0 ? n : 0), rowCount_(rowCount > 0 ? rowCount : 0) {
    build(matrix);
}

ImanConover::ImanConover(const float* matrix, int32_t n, int32_t rowCount, int32_t seed)
    : factorCount_(n > 0 ? n : 0), rowCount_(rowCount > 0 ? rowCount : 0), seed_(-seed) {
    build(matrix);
}

ImanConover::ImanConover(const FactorList& factors, int32_t rowCount)
    : factorCount_(factors.correlatableCount()), rowCount_(rowCount > 0 ? rowCount : 0) {
    buildFromList(factors);
}

ImanConover::ImanConover(const FactorList& factors, int32_t rowCount, int32_t seed)
    : factorCount_(factors.correlatableCount()), rowCount_(rowCount > 0 ? rowCount : 0), seed_(-seed) {
    buildFromList(factors);
}

void ImanConover::buildFromList(const FactorList& factors) {
    const std::vector<float>& matrix = factors.correlationMatrix();
    if (matrix.size() != size_t(factorCount_) * size_t(factorCount_)) {
        failed_ = 1;
        return;
    }
    build(matrix.data());
}

ImanConover::ImanConover(const float* matrix, int32_t n) : factorCount_(n > 0 ? n : 0) {
    const size_t cells = size_t(factorCount_) * size_t(factorCount_);
    target_.assign(cells, 0.0);
    for (size_t i = 0; i < cells; ++i) target_[i] = double(matrix[i]);
    decompose();
}

void ImanConover::build(const float* matrix) {
    const size_t cells = size_t(factorCount_) * size_t(factorCount_);
    target_.assign(cells, 0.0);
    for (size_t i = 0; i < cells; ++i) target_[i] = double(matrix[i]);

    // Scores: the truncation of the default Normal squeezes them into its
    // span, and equal scores can arise only from it.
    Normal normal;
    scores_.resize(size_t(rowCount_));
    if (rowCount_ > 0 && normal.prepareInverse()) {
        const double denominator = double(rowCount_) + 1.0;
        double* scores = scores_.data();
        parallelFor(rowCount_, 4096, [&normal, scores, denominator](int64_t begin, int64_t end) {
            for (int64_t r = begin; r < end; ++r) scores[r] = double(r + 1) / denominator;
            normal.inverseMany(scores + begin, end - begin);
        });
    }
    shuffle();
    decompose();
    if (failed_) return;
    correlateAndRank();
    scores_.clear();
    scores_.shrink_to_fit();
}

ImanConover::~ImanConover() = default;

void ImanConover::shuffle() {
    table_ = std::make_unique<ColumnFile>();
    const int64_t columnBytes = int64_t(rowCount_) * int64_t(sizeof(int32_t));
    std::vector<int32_t> column(static_cast<size_t>(rowCount_));
    const int64_t swaps = int64_t(double(rowCount_) * 0.75);
    for (int32_t c = 0; c < factorCount_; ++c) {
        for (int32_t r = 0; r < rowCount_; ++r) column[size_t(r)] = r;
        for (int64_t s = 0; s < swaps; ++s) randomExchange(column.data(), rowCount_, &seed_);
        if (!table_->write(c * columnBytes, column.data(), columnBytes)) failed_ = 1;
    }
}

void ImanConover::decompose() {
    const int32_t n = factorCount_;
    std::vector<double> a(size_t(n) * size_t(n), 0.0);
    auto at = [&](int32_t i, int32_t j) -> double& { return a[size_t(i) * size_t(n) + size_t(j)]; };
    for (int32_t j = 0; j < n && !failed_; ++j) {
        double d = target_[size_t(j) * size_t(n) + size_t(j)];
        for (int32_t k = 0; k < j; ++k) d -= at(j, k) * at(j, k);
        // A d of exactly 0 (a correlation of 1) passes; the divisions below
        // then give what they give, as they always have.
        if (!(d >= 0.0)) {
            failed_ = 1;
            break;
        }
        at(j, j) = std::sqrt(d);
        for (int32_t i = j + 1; i < n; ++i) {
            double s = target_[size_t(i) * size_t(n) + size_t(j)];
            for (int32_t k = 0; k < j; ++k) s -= at(j, k) * at(i, k);
            at(i, j) = s / at(j, j);
        }
    }
    if (failed_) {
        // Zeroed where the decomposition stopped, not transposed.
        cholesky_ = a;
        return;
    }
    cholesky_.assign(a.size(), 0.0);
    for (int32_t i = 0; i < n; ++i)
        for (int32_t j = 0; j < n; ++j) cholesky_[size_t(j) * size_t(n) + size_t(i)] = at(i, j);
}

void ImanConover::correlateAndRank() {
    const int32_t n = factorCount_;
    const int64_t rows = rowCount_;
    ColumnFile correlated;
    // Correlate by blocks of rows: each row gathers its n shuffled scores
    // once and forms every column's sum from them, in column order.
    constexpr int64_t kBlockRows = 16384;
    std::vector<int32_t> shuffled(size_t(n) * size_t(kBlockRows));
    std::vector<double> sums(size_t(n) * size_t(kBlockRows));
    for (int64_t first = 0; first < rows && !failed_; first += kBlockRows) {
        const int64_t length = std::min(kBlockRows, rows - first);
        for (int32_t k = 0; k < n; ++k)
            if (!table_->read((k * rows + first) * int64_t(sizeof(int32_t)), shuffled.data() + size_t(k) * kBlockRows,
                              length * int64_t(sizeof(int32_t))))
                failed_ = 1;
        parallelFor(length, 2048, [&](int64_t begin, int64_t end) {
            std::vector<double> x(static_cast<size_t>(n));
            for (int64_t r = begin; r < end; ++r) {
                for (int32_t k = 0; k < n; ++k) x[size_t(k)] = scores_[size_t(shuffled[size_t(k) * kBlockRows + r])];
                for (int32_t j = 0; j < n; ++j) {
                    // The weights beyond j are exactly 0 and add nothing.
                    double v = 0.0;
                    for (int32_t k = 0; k <= j; ++k) v += cholesky_[size_t(k) * size_t(n) + size_t(j)] * x[size_t(k)];
                    sums[size_t(j) * kBlockRows + r] = v;
                }
            }
        });
        for (int32_t j = 0; j < n; ++j)
            if (!correlated.write((j * rows + first) * int64_t(sizeof(double)), sums.data() + size_t(j) * kBlockRows,
                                  length * int64_t(sizeof(double))))
                failed_ = 1;
    }
    shuffled = {};
    sums = {};
    // Rank each column; the ranks replace its shuffle.
    std::vector<double> values(static_cast<size_t>(rows));
    std::vector<int32_t> ranks(static_cast<size_t>(rows));
    for (int32_t j = 0; j < n && !failed_; ++j) {
        if (!correlated.read(j * rows * int64_t(sizeof(double)), values.data(), rows * int64_t(sizeof(double))))
            failed_ = 1;
        rankPositions(values.data(), rowCount_, ranks.data());
        if (!table_->write(j * rows * int64_t(sizeof(int32_t)), ranks.data(), rows * int64_t(sizeof(int32_t))))
            failed_ = 1;
    }
}

int32_t ImanConover::rankOf(int32_t column, int32_t row) const {
    if (failed_ || !table_ || column < 0 || column >= factorCount_ || row < 0 || row >= rowCount_) return 0;
    if (cachedColumn_ != column) {
        cached_.resize(size_t(rowCount_));
        const int64_t bytes = int64_t(rowCount_) * int64_t(sizeof(int32_t));
        if (!table_->read(column * bytes, cached_.data(), bytes)) return 0;
        cachedColumn_ = column;
    }
    return cached_[size_t(row)];
}

}  // namespace tarvex
