#include "correlation/ImanConover.h"

#include <cmath>

#include "common/ParallelFor.h"
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
        failed = 1;
        return;
    }
    build(matrix.data());
}

ImanConover::ImanConover(const float* matrix, int32_t n) : factorCount_(n > 0 ? n : 0) {
    const size_t cells = size_t(factorCount_) * size_t(factorCount_);
    target.assign(cells, 0.0);
    for (size_t i = 0; i < cells; ++i) target[i] = double(matrix[i]);
    decompose();
}

void ImanConover::build(const float* matrix) {
    const size_t cells = size_t(factorCount_) * size_t(factorCount_);
    target.assign(cells, 0.0);
    for (size_t i = 0; i < cells; ++i) target[i] = double(matrix[i]);

    // Scores: the truncation of the default Normal squeezes them into its
    // span, and equal scores can arise only from it.
    Normal normal;
    scores_.resize(size_t(rowCount_));
    if (rowCount_ > 0 && normal.prepareInverse()) {
        const double denominator = double(rowCount_) + 1.0;
        double* scores = scores_.data();
        parallelFor(rowCount_, 4096, [&normal, scores, denominator](int64_t begin, int64_t end) {
            for (int64_t r = begin; r < end; ++r) scores[r] = normal.inverse(double(r + 1) / denominator);
        });
    }
    shuffle();
    decompose();
    if (failed) return;
    correlateAndRank();
    scores_.clear();
    scores_.shrink_to_fit();
}

void ImanConover::shuffle() {
    const size_t n = size_t(rowCount_);
    table_.resize(size_t(factorCount_) * n);
    const int64_t swaps = int64_t(double(rowCount_) * 0.75);
    for (int32_t c = 0; c < factorCount_; ++c) {
        int32_t* column = table_.data() + size_t(c) * n;
        for (int32_t r = 0; r < rowCount_; ++r) column[r] = r;
        for (int64_t s = 0; s < swaps; ++s) {
            int32_t a = int32_t(uniformRandom(&seed_) * rowCount_);
            int32_t b = int32_t(uniformRandom(&seed_) * rowCount_);
            if (a == rowCount_) a = rowCount_ - 1;
            if (b == rowCount_) b = rowCount_ - 1;
            std::swap(column[a], column[b]);
        }
    }
}

void ImanConover::decompose() {
    const int32_t n = factorCount_;
    std::vector<double> a(size_t(n) * size_t(n), 0.0);
    auto at = [&](int32_t i, int32_t j) -> double& { return a[size_t(i) * size_t(n) + size_t(j)]; };
    for (int32_t j = 0; j < n && !failed; ++j) {
        double d = target[size_t(j) * size_t(n) + size_t(j)];
        for (int32_t k = 0; k < j; ++k) d -= at(j, k) * at(j, k);
        // A d of exactly 0 (a correlation of 1) passes; the divisions below
        // then give what they give, as they always have.
        if (!(d >= 0.0)) {
            failed = 1;
            break;
        }
        at(j, j) = std::sqrt(d);
        for (int32_t i = j + 1; i < n; ++i) {
            double s = target[size_t(i) * size_t(n) + size_t(j)];
            for (int32_t k = 0; k < j; ++k) s -= at(j, k) * at(i, k);
            at(i, j) = s / at(j, j);
        }
    }
    if (failed) {
        // Zeroed where the decomposition stopped, not transposed.
        cholesky = a;
        return;
    }
    cholesky.assign(a.size(), 0.0);
    for (int32_t i = 0; i < n; ++i)
        for (int32_t j = 0; j < n; ++j) cholesky[size_t(j) * size_t(n) + size_t(i)] = at(i, j);
}

void ImanConover::correlateAndRank() {
    const int32_t n = factorCount_;
    const size_t rows = size_t(rowCount_);
    std::vector<double> values(rows);
    // Column j of the correlated scores draws only on the shuffled columns
    // 0..j, so working from the last column down lets each column's ranks
    // replace its own shuffle in place.
    for (int32_t j = n - 1; j >= 0; --j) {
        // Row ranges are independent; each row sums its terms in column order.
        parallelFor(int64_t(rows), 16384, [&, j](int64_t begin, int64_t end) {
            std::fill(values.begin() + begin, values.begin() + end, 0.0);
            for (int32_t k = 0; k <= j; ++k) {
                const double weight = cholesky[size_t(k) * size_t(n) + size_t(j)];
                const int32_t* shuffled = table_.data() + size_t(k) * rows;
                for (int64_t r = begin; r < end; ++r) values[size_t(r)] += weight * scores_[size_t(shuffled[r])];
            }
        });
        // The weights of the columns beyond j are exactly 0 and add nothing.
        rankPositions(values.data(), rowCount_, table_.data() + size_t(j) * rows);
    }
}

int32_t ImanConover::rankOf(int32_t column, int32_t row) const {
    if (failed || column < 0 || column >= factorCount_ || row < 0 || row >= rowCount_ ||
        table_.size() < size_t(factorCount_) * size_t(rowCount_))
        return 0;
    return table_[size_t(column) * size_t(rowCount_) + size_t(row)];
}

}  // namespace tarvex
