#pragma once
// Sobol' variance fractions from the block design of SobolSampler (I. M.
// Sobol', Math. Comput. Simul. 55, 2001; A. Saltelli, Comput. Phys. Commun.
// 145, 2002). Block 0 is A, block 1 is B, B = baseSize runs each; the
// further blocks take some columns from the other matrix. With m the mean of
// every run, each variable keeps the working record
//   aA = mean of (yA - m), vA = mean of (yA - m - aA)^2 over block A,
//   aB, vB the same over block B (divisor B),
// and C = sum of (yA - m)(yB - m).
//
// Two forms, by the design's designKind:
//  1  first and total order indices, one record per factor of the list
//     (slot 0 first order, slot 1 total), each uncertain factor averaged
//     over its "B with it from A" and "A with it from B" blocks;
//  3  every term up to `order`: one record per subset of the uncertain
//     factors, sizes 1, 2, ... in the design's lexicographic order, each
//     holding its index, for a single factor its total index, and its closed
//     index (the variance of the expectation given the whole subset); an
//     order equal to k adds a last record of all factors, 1 minus the rest.
// The estimators converge as 1 / sqrt(B) (faster on the quasi-random base).
//
// A constant output has vA = vB = 0: the first form gives zeros, the closed
// indices of the higher-order form divide by zero and hold NaN or inf.
#include <cstdint>
#include <memory>

#include "postproc/SensitivityStats.h"

namespace tarvex {

inline constexpr const char* kSobolNotSobolText = "The sample was not made by the Sobol design";
inline constexpr const char* kSobolBaseSizeText = "The Sobol design has no base sample size";

class SobolStats : public SensitivityStats {
public:
    SobolStats() : SensitivityStats(4) {}

    // 0 at once, with no message, for an output table without runs.
    [[nodiscard]] int compute(PrepConfiguration& configuration, OutputTable& outputs) override;
    std::unique_ptr<SensitivityStats> clone() const override { return std::make_unique<SobolStats>(*this); }
    void writeTable(std::ostream& out, const ResultTableRequest& request) const override;

    // One double per record into `values` (records.size() of them); 1, or 0
    // when nothing is computed or the variable is out of range.
    //  firstOrder: slot 0, the first order index (first form) or the term's
    //    index (higher-order form);
    //  totalOrder: the total index; in the higher-order form only single
    //    factors have one, the other terms give NaN;
    //  closedIndex: higher-order form only (0 in the first form); for the
    //    last record of an order equal to k, 1.0.
    [[nodiscard]] int firstOrder(int32_t variable, double* values) const { return slotValues(0, variable, values); }
    [[nodiscard]] int totalOrder(int32_t variable, double* values) const;
    [[nodiscard]] int closedIndex(int32_t variable, double* values) const;

    // 0 in the first form, else the order chosen for the design.
    int32_t maxOrder = 0;
    // Records made.
    int32_t termCount = 0;
    // 1 in the first form, 3 in the higher-order form: with 3, a single
    // factor's term holds three slots per variable.
    int32_t slotMode = 1;
    // Uncertain factors k.
    int32_t extra = 0;

protected:
    void writeHeader(std::ostream& out) const override;
    void readHeader(std::istream& in) override;
    int32_t recordsInFile() const override { return termCount; }
    int32_t slotCount(const IndexRecord& record) const override {
        return record.groupCount() == 1 && slotMode != 1 ? 3 : 2;
    }
    bool recordsHaveGroups() const override { return true; }
};

}  // namespace tarvex
