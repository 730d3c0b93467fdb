#pragma once
// Latin hypercube sampling (McKay, Beckman and Conover, "A comparison of three
// methods for selecting values of input variables in the analysis of output
// from a computer code", Technometrics 21, 1979): each stochastic factor's
// probability range is cut in numSamples strata of equal probability, each
// stratum gets one random point, and the points of a factor are put in random
// order, or in the order a correlation asks for.
//
// Without rank correlation (tree or none), three phases: 0-25 one point per
// stratum in rising order, 25-45 a permutation by 2n random exchanges per
// column, 45-50 the children of the dependence tree (not stratified: drawn
// conditionally on their parent) and the constants. With Iman-Conover or a
// Stein sample, two: 0-25 the strata (constants included), 25-50 each
// stochastic column reordered by the rank table, in list order.
#include <memory>
#include <vector>

#include "sampling/DesignColumns.h"
#include "sampling/Sampler.h"

namespace tarvex {

class LatinSampler : public Sampler {
public:
    LatinSampler();
    LatinSampler(const LatinSampler& other);

    [[nodiscard]] float generate(float targetPercent, sampValues& store, FactorList& factors) override;
    void reset() override;
    std::unique_ptr<Sampler> clone() const override { return std::make_unique<LatinSampler>(*this); }
    void readItems(std::istream& in) override { readCountsAndSeed(in); }

    // The point of stratum `stratum` of `n` for a uniform draw u in (0, 1):
    // u / n + stratum / n, inside [stratum / n, (stratum + 1) / n) and below 1.
    static double stratumPoint(double u, int32_t stratum, int32_t n);

    // 0 stratify, 1 shuffle, 2 finish; 3 once done.
    int32_t phase() const { return phase_; }

protected:
    void writeItems(std::ostream& out) const override { writeCountsAndSeed(out); }

private:
    [[nodiscard]] int stratify(float target, sampValues& store, FactorList& factors, bool ranked, int32_t stochastic);
    [[nodiscard]] int exchange(float target, sampValues& store, FactorList& factors, int32_t stochastic);
    [[nodiscard]] int finishTree(float target, sampValues& store, FactorList& factors, int32_t stochastic);
    [[nodiscard]] int rerank(float target, sampValues& store, FactorList& factors);
    float fail(const sampValues& store);

    int32_t phase_ = 0;
    RankTable ranks_;
    std::vector<double> column_;   // a column being exchanged, or a child's parent column
    int32_t columnOf_ = -1;        // factor whose values column_ holds
};

}  // namespace tarvex
