#include "sampling/LatinSampler.h"

#include <cmath>

#include "common/UniformRandom.h"
#include "correlation/DiagonalBand.h"
#include "correlation/Ranking.h"
#include "sampling/SamplerFactors.h"
#include "sampling/sampValues.h"

namespace tarvex {

LatinSampler::LatinSampler() : Sampler(kLatinMethod, 1) { numSamples = 1; }

// Generation state is not copied: a copy starts from reset.
LatinSampler::LatinSampler(const LatinSampler& other) : Sampler(other) { reset(); }

void LatinSampler::reset() {
    Sampler::reset();
    phase = 0;
    stochasticIndex = 0;
    ranks_.release();
    sortedColumn_.clear();
    column_.clear();
    columnOf_ = -1;
    scratch_.clear();
}

float LatinSampler::fail(const sampValues& store) {
    errorText = store.errorText();
    return -1.0f;
}

float LatinSampler::generate(float targetPercent, sampValues& store, FactorList& factors) {
    const int open = openGeneration(phase == 0 && factorPosition == 0 && sampleIndex == 0, store, factors);
    if (open < 0) return -1.0f;
    if (open == 0) {
        phase = 3;
        return progress;
    }
    int32_t stochastic = 0;
    for (int f = 0; f < numFactors; ++f) stochastic += isStochastic(factors, f) ? 1 : 0;
    const bool ranked = factors.correlationMode == kImanConoverCorrelation ||
                        factors.correlationMode == kSteinCorrelation;
    if (!ranked && stochastic == 0 && phase < 2) {
        // Nothing to stratify or exchange: only the constants remain.
        phase = 2;
        progress = 45.0f;
    }
    if (phase == 0 && !stratify(targetPercent, store, factors, ranked, stochastic)) return fail(store);
    if (phase == 1 && !exchange(targetPercent, store, factors, stochastic)) return fail(store);
    if (phase == 2) {
        const int ok = ranked ? rerank(targetPercent, store, factors)
                              : finishTree(targetPercent, store, factors, stochastic);
        if (!ok) return fail(store);
    }
    return progress;
}

double LatinSampler::stratumPoint(double u, int32_t stratum, int32_t n) {
    // The method divides by n in single precision. Up to 2^24 rows that float
    // is n exactly, so dividing by n itself gives the same samples there;
    // beyond, the float rounds n (2^24 + 1 becomes 2^24) and the last strata
    // would pass 1, where no inverse cumulative is defined.
    const double divisor = double(n);
    const double x = u / divisor + double(stratum) / divisor;
    // Near 2^31 rows a stratum is barely wider than the spacing of doubles
    // below 1, and the sum can round up to 1 itself.
    return x < 1.0 ? x : std::nextafter(1.0, 0.0);
}

// Phase 0. Stratum `sampleIndex` of each column gets u/n + sampleIndex/n, so a
// column stands in rising order afterwards.
int LatinSampler::stratify(float target, sampValues& store, FactorList& factors, bool ranked, int32_t stochastic) {
    const int32_t n = numSamples;
    const int32_t count = ranked ? numFactors : stochastic;
    while (progress < target && factorPosition < count) {
        const int f = factors.factorAt(factorPosition);
        bool write = false;
        double value = 0.0;
        if (isStochastic(factors, f)) {
            if (ranked || parentOf(factors, f) == -1) {
                value = stratumPoint(uniformRandom(&randomState), sampleIndex, n);
                write = true;
            }
        } else if (ranked && isConstantFactor(factors, f)) {
            value = constantValue(factors, f);
            write = true;
        }
        if (!placeCell(store, factorPosition == 0, numFactors, f, write, value)) return 0;
        progress = phasePercent(int64_t(factorPosition) * n + sampleIndex, int64_t(count) * n, 0.0f, 25.0f);
    }
    if (factorPosition == count) {
        factorPosition = 0;
        sampleIndex = 0;
        scratch_.clear();
        phase = ranked ? 2 : 1;
        progress = 25.0f;
    }
    return 1;
}

// Phase 1. 2n random exchanges per stratified column (not one pass of a
// shuffle); children of the tree are left alone, their counters run on. The
// column is exchanged in memory and written back once complete.
int LatinSampler::exchange(float target, sampValues& store, FactorList& factors, int32_t stochastic) {
    const int32_t n = numSamples;
    const int64_t exchanges = 2 * int64_t(n);
    while (progress < target && factorPosition < stochastic) {
        const int f = factors.factorAt(factorPosition);
        int64_t index = sampleIndex;
        if (!isStochastic(factors, f) || parentOf(factors, f) != -1) {
            index = exchanges;
        } else {
            if (columnOf_ != f) {
                if (!readColumn(store, f, n, column_)) return 0;
                columnOf_ = f;
            }
            randomExchange(column_.data(), n, &randomState);
            ++index;
        }
        if (index == exchanges) {
            if (columnOf_ == f && !writeColumn(store, f, column_)) return 0;
            column_.clear();
            columnOf_ = -1;
            index = 0;
            ++factorPosition;
        }
        sampleIndex = int32_t(index);
        progress = phasePercent(int64_t(factorPosition) * exchanges + index, int64_t(stochastic) * exchanges,
                                25.0f, 20.0f);
    }
    if (factorPosition == stochastic) {
        factorPosition = 0;
        sampleIndex = 0;
        phase = 2;
        progress = 45.0f;
    }
    return 1;
}

// Phase 2 without rank correlation: children of the tree follow their
// (already permuted) parent through a diagonal band; constants take their
// value. The band sampler is made afresh at each call, with its own state
// word, and so depends on how the generation is split into calls; every front
// end drives generation through the same loop of rising targets.
int LatinSampler::finishTree(float target, sampValues& store, FactorList& factors, int32_t stochastic) {
    const int32_t n = numSamples;
    const int32_t count = numFactors;
    DiagonalBand band;
    int bandFactor = -1;
    while (progress < target && factorPosition < count) {
        const int f = factors.factorAt(factorPosition);
        bool write = false;
        double value = 0.0;
        const int parent = isStochastic(factors, f) ? parentOf(factors, f) : -1;
        if (parent != -1) {
            if (bandFactor != f) {
                band.setCorrelation(linkCorrelation(factors, f));
                bandFactor = f;
            }
            if (columnOf_ != parent) {
                if (!readColumn(store, parent, n, column_)) return 0;
                columnOf_ = parent;
            }
            value = band.sampleConditional(column_[size_t(sampleIndex)]);
            write = true;
        } else if (isConstantFactor(factors, f)) {
            value = constantValue(factors, f);
            write = true;
        }
        if (!placeCell(store, stochastic == 0 && factorPosition == 0, count, f, write, value)) return 0;
        progress = phasePercent(int64_t(factorPosition) * n + sampleIndex, int64_t(count) * n, 45.0f, 5.0f);
    }
    if (factorPosition == count) {
        factorPosition = 0;
        sampleIndex = 0;
        column_.clear();
        columnOf_ = -1;
        scratch_.clear();
        phase = 3;
        progress = 50.0f;
    }
    return 1;
}

// Phase 2 with rank correlation, in list order: each stochastic column is
// sorted and row r takes the value at place rankOf(column, r).
int LatinSampler::rerank(float target, sampValues& store, FactorList& factors) {
    const int32_t n = numSamples;
    const int32_t count = numFactors;
    if (!ranks_.built()) warningText = ranks_.build(factors, n, n, 1);
    while (progress < target && factorPosition < count) {
        const int f = factorPosition;
        if (!isStochastic(factors, f)) {
            sampleIndex = n;
        } else {
            if (sampleIndex == 0 || sortedColumn_.empty()) {
                stochasticIndex = stochasticRank(factors, f);
                if (ranks_.usable(stochasticIndex)) {
                    if (!readColumn(store, f, n, sortedColumn_)) return 0;
                    sortAscending(sortedColumn_.data(), n);
                }
            }
            if (!ranks_.usable(stochasticIndex)) {
                // No usable ranks: the column is permuted as it would be
                // without correlation, by 2n random exchanges. Left in the
                // stratum order of phase 0, every pair of columns would be
                // perfectly rank-correlated.
                if (!readColumn(store, f, n, column_)) return 0;
                for (int64_t e = 0; e < 2 * int64_t(n); ++e) randomExchange(column_.data(), n, &randomState);
                if (!writeColumn(store, f, column_)) return 0;
                column_.clear();
                sampleIndex = n;
            } else {
                const int32_t r = ranks_.rankOf(stochasticIndex, sampleIndex);
                if (!store.setColumnValue(sampleIndex, f, sortedColumn_[size_t(r)])) return 0;
                ++sampleIndex;
            }
        }
        if (sampleIndex == n) {
            sortedColumn_.clear();
            sampleIndex = 0;
            ++factorPosition;
        }
        progress = phasePercent(int64_t(factorPosition) * n + sampleIndex, int64_t(count) * n, 25.0f, 25.0f);
    }
    if (factorPosition == count) {
        ranks_.release();
        factorPosition = 0;
        sampleIndex = 0;
        phase = 3;
        progress = 50.0f;
    }
    return 1;
}

}  // namespace tarvex
