#pragma once
// Quasi-random sampling with the points of the LP-tau sequence: run p is point
// p + 1 of the sequence (the origin, point 0, is skipped), its coordinates
// going to the stochastic factors in sampling order. No seed, no correlation.
// Sizes that are powers of 2 keep the sequence's balance over dyadic boxes;
// the panel offers 2^4 to 2^12. At most 370 stochastic factors.
//
// One phase, percents 0-50, one row per step; constants get their value,
// relation cells wait for the value pass. numFactors is the count of
// stochastic factors once a generation has started.
#include <memory>
#include <string>
#include <vector>

#include "sampling/LpTauGenerator.h"
#include "sampling/Sampler.h"

namespace tarvex {

class LpTauSampler : public Sampler {
public:
    LpTauSampler();
    LpTauSampler(const LpTauSampler& other);

    [[nodiscard]] float generate(float targetPercent, sampValues& store, FactorList& factors) override;
    void reset() override;
    std::unique_ptr<Sampler> clone() const override { return std::make_unique<LpTauSampler>(*this); }
    void readItems(std::istream& in) override;

    // "Sample number <run>: generation failed": the point of run `run` (from
    // 1) could not be made, for want of dimensions.
    static std::string failureText(int64_t run);

protected:
    void writeItems(std::ostream& out) const override;

private:
    // The sampler keeps its own place in the sequence: a second generation
    // restarts at point 1 by the jump path, and other users of the sequence
    // never move it.
    LpTauGenerator generator_;
    std::vector<double> point_;
};

// The cell of each factor in a row made from a point: the point's coordinate
// for a stochastic factor, in sampling order; kConstantCell or kRelationCell
// otherwise. Returns the count of stochastic factors.
inline constexpr int32_t kConstantCell = -1;
inline constexpr int32_t kRelationCell = -2;
int32_t coordinatesBySamplingOrder(const FactorList& factors, std::vector<int32_t>& coordinateOf);

}  // namespace tarvex
