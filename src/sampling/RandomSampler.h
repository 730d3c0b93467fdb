#pragma once
// Simple random sampling: independent uniform numbers per cell.
//
// Under Iman-Conover correlation (mode 1) two phases: percents 0-25 fill the
// design in sampling order, 25-50 reorder each stochastic column by the rank
// table in list order. Otherwise one phase, 0-50, in which a child of the
// dependence tree (mode 0) is drawn from the diagonal band conditional on its
// parent's value in the same row. Constants get their value; relation cells
// wait for the value pass.
#include <memory>
#include <vector>

#include "correlation/DiagonalBand.h"
#include "sampling/DesignColumns.h"
#include "sampling/Sampler.h"

namespace tarvex {

class RandomSampler : public Sampler {
public:
    RandomSampler();
    RandomSampler(const RandomSampler& other);

    [[nodiscard]] float generate(float targetPercent, sampValues& store, FactorList& factors) override;
    void reset() override;
    std::unique_ptr<Sampler> clone() const override { return std::make_unique<RandomSampler>(*this); }
    void readItems(std::istream& in) override { readCountsAndSeed(in); }

protected:
    void writeItems(std::ostream& out) const override { writeCountsAndSeed(out); }

private:
    [[nodiscard]] float fillPhase(float target, sampValues& store, FactorList& factors, bool correlated);
    [[nodiscard]] float rankPhase(float target, sampValues& store, FactorList& factors);

    int32_t phase_ = 0;  // 0 filling, 1 re-ranking, 2 done
    std::unique_ptr<DiagonalBand> band_;
    RankTable ranks_;
    std::vector<double> column_;        // the parent's column
    int32_t columnOf_ = -1;             // factor whose values column_ holds
};

}  // namespace tarvex
