#pragma once
// Regression and rank sensitivity measures, for the Random, Latin hypercube,
// LP-tau and fixed-sample designs. Per factor and analysed variable, seven
// measures with their ranks among the factors and their significance flags;
// per variable, the coefficients of model determination on values and on
// ranks.
//
// Measures (by number): 0 PEAR, the Pearson correlation of factor and
// output; 1 SPEA, Spearman's, the same on ranks; 2 PCC and 3 PRCC, partial
// correlation coefficients on values and ranks; 4 SRC and 5 SRRC,
// standardised regression coefficients on values and ranks; 6 Smirnov, the
// two-sample Kolmogorov-Smirnov distance of the factor between the runs of
// the top tenth of the output and the rest (SmirnovStatistic.h). The partial
// and regression measures come from the inverse B of the correlation matrix
// A of the k uncertain factors and the output (order k + 1, output last):
// PCC_j = -B[j][k] / sqrt(B[k][k] B[j][j]), SRC_j = -B[j][k] / B[k][k],
// R^2 = 1 - 1 / B[k][k] (Saltelli, Chan and Scott (eds.), "Sensitivity
// Analysis", Wiley 2000, chapter 6; Iman and Conover, "The use of the rank
// transform in regression", Technometrics 21, 1979). Rank measures reflect
// monotonic relations, value measures linear ones; with R^2 on ranks well
// above R^2 on values the model is monotonic but not linear. The tests need
// N above k + 2 to mean anything; N of 1 gives no significance at all.
//
// Kept behaviours that a reader might take for slips:
// - the PEAR and SPEA tests are one-sided on the signed value against
//   Student's t with N degrees of freedom, so a negative correlation is never
//   significant, and a SPEA of exactly 1.0 is not significant;
// - the SRC and SRRC tests predict the raw outputs from the raw factors with
//   no intercept; SRRC uses the moments of ranks for its coefficients and
//   errors and N - F degrees of freedom;
// - a singular correlation matrix gives the "singular result" (1.0 for every
//   uncertain factor, 0.0 for the others, determinations 1.0) and ends the
//   computation there: later variables keep zeros.
#include <array>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "postproc/SensitivityStats.h"

namespace tarvex {

inline constexpr const char* kAllFactorsConstantText = "All input factors are constant";

class RegressionStats : public SensitivityStats {
public:
    static constexpr int32_t kMeasureCount = 7;
    // Slots of a record per variable: the seven measures, their ranks, their
    // significance flags.
    static constexpr int32_t kSlots = 3 * kMeasureCount;
    static constexpr int32_t kRankSlot = kMeasureCount;
    static constexpr int32_t kFlagSlot = 2 * kMeasureCount;
    enum Measure : int32_t { kPear = 0, kSpea, kPcc, kPrcc, kSrc, kSrrc, kSmirnov };

    struct Moments {
        double mean = 0.0;
        double sd = 0.0;
        bool operator==(const Moments&) const = default;
    };
    // R^2 on values, on ranks, and both adjusted for the number of factors.
    using Determination = std::array<double, 4>;

    RegressionStats() : SensitivityStats(0) {}

    // The factors come from the sample store in list order, the variables
    // from `outputs`; both must hold the same runs. 0 with errorText
    // kAllFactorsConstantText when no factor is uncertain, or a text naming
    // the two sizes when the tables do not match.
    [[nodiscard]] int compute(PrepConfiguration& configuration, OutputTable& outputs) override;
    void clear() override;
    std::unique_ptr<SensitivityStats> clone() const override { return std::make_unique<RegressionStats>(*this); }
    void writeTable(std::ostream& out, const ResultTableRequest& request) const override;

    // A new confidence for the tests: when it differs from alpha it is stored
    // and the flags are worked out again (only they depend on it). 1 if they
    // were, 0 otherwise: the same level, or results read from a file, which
    // do not keep the sample the tests need.
    int applyAlpha(float value);

    // "PEAR", "SPEA", "PCC", "PRCC", "SRC", "SRRC", "Smirnov"; "ERROR" for any
    // other number.
    static const char* measureName(int32_t measure);

    // One value per record for a variable, into a caller's array of
    // factorCount doubles: the measure, its rank among the factors (1 the
    // strongest), its significance flag (1.0 or 0.0). 1, or 0 when nothing
    // is computed or the measure or variable is out of range.
    [[nodiscard]] int measureValues(int32_t measure, int32_t variable, double* values) const;
    [[nodiscard]] int measureRanks(int32_t measure, int32_t variable, double* values) const;
    [[nodiscard]] int measureFlags(int32_t measure, int32_t variable, double* values) const;

    // R^2 on values and on ranks of a variable, plain or adjusted. 1, or 0
    // when there is no such variable in the table.
    [[nodiscard]] int determination(int32_t variable, double* raw, double* ranks) const;
    [[nodiscard]] int determinationAdjusted(int32_t variable, double* raw, double* ranks) const;

    float alpha = 0.95f;
    // Correlations of the factors then the variables, on values, row after
    // row (order factorCount + variableCount).
    std::vector<double> correlation;
    // The inverse B of the last matrix A inverted (order activeCount + 1).
    std::vector<double> inverse;
    std::vector<Determination> determinations;
    // Factors first, then variables.
    std::vector<Moments> factorMoments;
    std::vector<Moments> rankMoments;
    int32_t activeCount = 0;
    // Pairs (i, j), i before j, whose correlation is above 0.99; j was
    // taken out of the regression.
    std::vector<std::pair<int32_t, int32_t>> collinearPairs;

protected:
    void writeHeader(std::ostream& out) const override;
    void readHeader(std::istream& in) override;
    int32_t slotCount(const IndexRecord&) const override { return kSlots; }
    const char* kindSeparator() const override { return "\t\t"; }
    void writeTrailer(std::ostream& out) const override;
    void readTrailer(std::istream& in) override;

private:
    // The runs of the last computation and, per variable, the sums of
    // squared errors of the SRC and SRRC predictions: all the tests need
    // besides the stored results, so that a new alpha costs no pass over
    // the sample.
    int32_t runs_ = 0;
    std::vector<double> srcErrors_, srrcErrors_;

    void significance();
    void rankMeasures();
};

}  // namespace tarvex
