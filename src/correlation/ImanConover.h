#pragma once
// Iman-Conover rank correlation (Iman and Conover, "A distribution-free
// approach to inducing rank correlation among input variables", Commun.
// Statist. B11(3), 1982): a rank table that reorders the columns of a sample so
// that their rank correlation approaches a target matrix, without changing the
// values of any column.
//
// Scores are the van der Waerden scores of a default (hence truncated) standard
// Normal, shuffled independently per column, multiplied by the transposed
// Cholesky factor of the target and ranked. Cost O(N n^2 + n N log N). The
// shuffled columns, the correlated scores and the final ranks (one 32-bit rank
// per cell) live in working files; memory holds the N scores and a column or
// two at a time, whatever the number of columns.
#include <cstdint>
#include <memory>
#include <vector>

namespace tarvex {

class ColumnFile;
class FactorList;

inline constexpr const char* kImanConoverFailedText =
    "The Iman Conover Matrix is not positive definited.\nNo correlation can be calculated.";

class ImanConover {
public:
    static constexpr int32_t defaultSeed = 5648423;

    // Target from `matrix` (n by n floats, row after row) for N rows, with the
    // default seed or with `seed`.
    ImanConover(const float* matrix, int32_t n, int32_t rowCount);
    ImanConover(const float* matrix, int32_t n, int32_t rowCount, int32_t seed);
    // Target from the list's correlation matrix, one column per correlatable
    // factor. A matrix that does not match the list counts as failed.
    ImanConover(const FactorList& factors, int32_t rowCount);
    ImanConover(const FactorList& factors, int32_t rowCount, int32_t seed);
    // Preview: only the Cholesky step, to tell whether a matrix is acceptable.
    ImanConover(const float* matrix, int32_t n);
    ~ImanConover();
    ImanConover(const ImanConover&) = delete;
    ImanConover& operator=(const ImanConover&) = delete;

    // 1 unless the target was found not positive semidefinite (or, rarely,
    // the working file of the table could not be written or read).
    int isValid() const { return failed_ ? 0 : 1; }
    // Rank from 0 to N-1 of `row` in `column`; 0 when the table failed or the
    // place is outside it. Callers that must not collapse a column test
    // isValid first.
    int32_t rankOf(int32_t column, int32_t row) const;

    int32_t factorCount() const { return factorCount_; }
    int32_t rowCount() const { return rowCount_; }
    int32_t seed() const { return seed_; }

    // n by n, row after row: the target, and the Cholesky factor after its
    // transposition (upper triangular), zero where the decomposition stopped.
    const std::vector<double>& target() const { return target_; }
    const std::vector<double>& cholesky() const { return cholesky_; }

private:
    void build(const float* matrix);
    void buildFromList(const FactorList& factors);
    void shuffle();
    void decompose();
    void correlateAndRank();

    std::vector<double> target_;
    std::vector<double> cholesky_;
    int failed_ = 0;
    int32_t factorCount_ = 0;
    int32_t rowCount_ = 0;
    int32_t seed_ = -defaultSeed;
    std::vector<double> scores_;  // N scores, ascending
    // Column after column: first the shuffled score index of each row, then
    // the rank of each row.
    std::unique_ptr<ColumnFile> table_;
    // The column of ranks last asked for: the samplers ask column by column.
    mutable std::vector<int32_t> cached_;
    mutable int32_t cachedColumn_ = -1;
};

}  // namespace tarvex
