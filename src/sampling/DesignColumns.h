#pragma once
// Column-wise helpers shared by the samplers: a whole column in and out of the
// store through its column window, and the re-ranking of a column by a rank
// table.
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace tarvex {

class FactorList;
class ImanConover;
class SteinRanks;
class sampValues;

inline constexpr const char* kSteinNarrowText =
    "The Stein correlation sample has fewer columns than the stochastic factors.\n"
    "The factors beyond its columns are not correlated.";

[[nodiscard]] int readColumn(sampValues& store, int32_t column, int32_t rows, std::vector<double>& out);
[[nodiscard]] int writeColumn(sampValues& store, int32_t column, const std::vector<double>& values);
// The same for the rows firstRow .. firstRow + rows - 1 of a column.
[[nodiscard]] int readBlock(sampValues& store, int32_t column, int32_t firstRow, int32_t rows, std::vector<double>& out);
[[nodiscard]] int writeBlock(sampValues& store, int32_t column, int32_t firstRow, const std::vector<double>& values);

// The rank table of a correlated design: Iman-Conover for correlation mode 1,
// the Stein sample's ranks for mode 3. A table that failed, or a column it
// does not hold, is not usable, and the sampler makes that column as it
// would without correlation: asking the table anyway would give rank 0 for
// every row and collapse the column onto its smallest value.
class RankTable {
public:
    RankTable();
    ~RankTable();
    RankTable(const RankTable&) = delete;
    RankTable& operator=(const RankTable&) = delete;

    // Builds the table for `rows` rows in blocks of `blockRows`; an
    // Iman-Conover table shuffles its scores from `imanConoverSeed`. Returns
    // the message to report when it cannot be used, or not for every
    // stochastic factor; "" otherwise.
    [[nodiscard]] std::string build(const FactorList& factors, int32_t rows, int32_t blockRows, int32_t replicates,
                                    int32_t imanConoverSeed = 5648423);
    void release();
    bool built() const { return built_; }
    bool usable(int32_t column) const;
    int32_t rankOf(int32_t column, int32_t row) const;

private:
    bool built_ = false;
    std::unique_ptr<ImanConover> imanConover_;
    std::unique_ptr<SteinRanks> steinRanks_;
};

}  // namespace tarvex
