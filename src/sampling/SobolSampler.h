#pragma once
// The design for Sobol' sensitivity indices (I. M. Sobol', "Global sensitivity
// indices for nonlinear mathematical models and their Monte Carlo estimates",
// Math. Comput. Simul. 55, 2001; A. Saltelli, "Making best use of model
// evaluations to compute sensitivity indices", Comput. Phys. Commun. 145,
// 2002): two base matrices A and B of baseSize runs each, made from one LP-tau
// point of 2k coordinates per row (k stochastic factors; so k at most 185),
// followed by blocks of baseSize runs that take some columns from A and the
// others from B. Block 0 is A, block 1 is B; then
//   designKind 1, first and total order indices, 2k + 2 blocks: blocks 2 to
//     k + 1 are B with the j-th stochastic factor (list order) from A, blocks
//     k + 2 to 2k + 1 are A with that factor from B;
//   designKind 3, indices up to `order`: B with every subset of the stochastic
//     factors taken from A, sizes 1, 2, ... in turn, each size in lexicographic
//     order; an order equal to k stops at k - 1 (the last index is 1 minus the
//     others), 2 + sum C(k, r) blocks.
// Run p is row p % baseSize of block p / baseSize; generation stops after
// numSamples runs, so a smaller numSamples (the cheap design) drops the last
// orders. Constants hold their value in every block; relation cells wait for
// the value pass. No seed. One phase, percents 0-50.
#include <memory>
#include <string>
#include <vector>

#include "sampling/LpTauGenerator.h"
#include "sampling/Sampler.h"

namespace tarvex {

inline constexpr const char* kSobolOrderTooBigText = "  Incorrect order number, order too big.";
inline constexpr const char* kSobolTooManyRunsText =
    "  Sample size too big: the design needs more than 2147483647 runs.";
inline constexpr const char* kSobolBadBaseSizeText = "Base sample size must be a positive value";

class SobolSampler : public Sampler {
public:
    SobolSampler();
    SobolSampler(const SobolSampler& other);

    [[nodiscard]] float generate(float targetPercent, sampValues& store, FactorList& factors) override;
    void reset() override;
    std::unique_ptr<Sampler> clone() const override { return std::make_unique<SobolSampler>(*this); }
    void readItems(std::istream& in) override;

    // Base size below 1 is refused with its text; designKind is 1 or 3
    // (anything else is taken as 3, the design of all orders); order as the
    // user chose it.
    [[nodiscard]] int setBaseSize(int32_t size);
    void setDesignKind(int32_t kind) { designKind_ = kind; }
    void setOrder(int32_t order) { order_ = order; }
    int32_t baseSize() const { return baseSize_; }
    int32_t designKind() const { return designKind_; }
    int32_t order() const { return order_; }

    // Blocks of the design for k stochastic factors, worked out exactly:
    // designKind 1, 2k + 2; otherwise 2 + k + C(k, 2) + ... + C(k, R), R being
    // the order, order - 1 when it equals k, 1 when it is above k, and at most
    // k / 2 with the cheap design. INT64_MAX for a count past 64 bits.
    static int64_t blockCount(int32_t k, int32_t designKind, int32_t order, bool cheapDesign);
    // The sample sizes the panel offers: baseSize 2^(i + 4) times the blocks,
    // i = 0 .. 8, those that a run count holds. Returns 1; 0 with errorText
    // for an order above k (the sizes are then those of order 1), or when not
    // even the first size fits (sizes empty).
    static int sampleSizes(int32_t k, int32_t designKind, int32_t order, bool cheapDesign,
                           std::vector<int32_t>& sizes, std::string& errorText);

    // The block where each order begins (from order 1) and its count of
    // subsets, as the last generation laid them out.
    const std::vector<int64_t>& orderStart() const { return orderStart_; }
    const std::vector<int64_t>& comboCount() const { return comboCount_; }

protected:
    void writeItems(std::ostream& out) const override;

private:
    [[nodiscard]] int openDesign(const FactorList& factors, int32_t width);
    [[nodiscard]] int makeBaseRow(int32_t row, int32_t width);
    void makeBlockRow(int64_t block, int32_t row, int32_t width);

    int32_t baseSize_ = 0;
    int32_t designKind_ = 0;
    int32_t order_ = 0;

    int32_t k_ = 0;                         // stochastic factors
    std::vector<int32_t> coordinateOf_;     // per factor: its coordinate, or a constant or relation cell
    std::vector<int32_t> stochasticIndex_;  // the stochastic factors in list order
    std::vector<double> matrixA_, matrixB_; // base rows, one cell per factor of the list
    int32_t orderCount_ = 0;
    std::vector<int64_t> comboCount_, orderStart_;
    std::vector<int32_t> combos_;           // subsets of the current order, currentOrder + 1 entries each
    int32_t currentOrder_ = 0;
    LpTauGenerator generator_;
    std::vector<double> point_;
};

}  // namespace tarvex
