#pragma once
// The one-at-a-time trajectories of the elementary effects method (Morris,
// "Factorial sampling plans for preliminary computational experiments",
// Technometrics 33, 1991). With k stochastic factors a trajectory has k + 1
// runs on a grid of p levels; each step from run to run changes exactly one
// factor by d = p / 2 levels (integer halving), that is by d / p in
// probability. Cells are the midpoints (i + 0.5) / p of the p strata, which the
// value pass turns into factor values. numSamples is r * (k + 1) for r
// trajectories.
//
// `changedFactor` records, per run, the stochastic factor (in list order, from
// 0) that differs from the run before, -1 at a trajectory's first run: the
// elementary effects are read from it.
#include <cstdint>
#include <memory>
#include <vector>

#include "sampling/Sampler.h"

namespace tarvex {

inline constexpr const char* kBadLevelsText = "Num level must be a positive value";
inline constexpr const char* kBadTrajectoriesText = "Num trajectories must be a positive value";
inline constexpr const char* kTooFewLevelsText = "The Morris design needs at least 2 levels.";

class MorrisSampler : public Sampler {
public:
    MorrisSampler();
    MorrisSampler(const MorrisSampler& other);

    [[nodiscard]] float generate(float targetPercent, sampValues& store, FactorList& factors) override;
    // The base's work; the trajectory and the change record are dropped.
    void reset() override;
    std::unique_ptr<Sampler> clone() const override { return std::make_unique<MorrisSampler>(*this); }
    void readItems(std::istream& in) override;

    [[nodiscard]] int setLevels(uint32_t p);
    [[nodiscard]] int setTrajectories(uint32_t r);
    uint32_t levels() const { return levels_; }
    uint32_t trajectories() const { return trajectories_; }
    int32_t numStochastic() const { return numStochastic_; }

    // One entry per run, or empty when there is no record.
    const std::vector<int32_t>& changedFactor() const { return changedFactor_; }

    // The midpoint of grid level i of p, (i + 0.5) / p, as the design
    // computes it.
    static double gridPoint(uint32_t i, uint32_t p);

protected:
    void writeItems(std::ostream& out) const override;

private:
    void buildTrajectory();
    void restoreDefaults();

    uint32_t levels_ = 0;
    uint32_t trajectories_ = 0;
    int32_t numStochastic_ = 0;
    // k + 1 rows of k cells, row after row: grid levels while it is built,
    // then the midpoints.
    std::vector<double> trajectory_;
    std::vector<int32_t> changedFactor_;
    bool done_ = false;
};

}  // namespace tarvex
