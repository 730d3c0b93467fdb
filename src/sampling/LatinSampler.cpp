#include "sampling/LatinSampler.h"

#include <cmath>

#include "common/UniformRandom.h"
#include "correlation/DiagonalBand.h"
#include "sampling/SamplerFactors.h"
#include "sampling/sampValues.h"

namespace tarvex {

LatinSampler::LatinSampler() : Sampler(kLatinMethod, 1) { numSamples_ = 1; }

// Generation state is not copied: a copy starts from reset.
LatinSampler::LatinSampler(const LatinSampler& other) : Sampler(other) { reset(); }

void LatinSampler::reset() {
    Sampler::reset();
    phase_ = 0;
    ranks_.release();
    column_.clear();
    columnOf_ = -1;
    scratch_.clear();
}

float LatinSampler::fail(const sampValues& store) {
    errorText_ = store.errorText();
    return -1.0f;
}

float LatinSampler::generate(float targetPercent, sampValues& store, FactorList& factors) {
    const int open = openGeneration(phase_ == 0 && factorPosition_ == 0 && sampleIndex_ == 0, store, factors);
    if (open < 0) return -1.0f;
    if (open == 0) {
        phase_ = 3;
        return progress_;
    }
    int32_t stochastic = 0;
    for (int f = 0; f < numFactors_; ++f) stochastic += isStochastic(factors, f) ? 1 : 0;
    const bool ranked = factors.correlationMode == kImanConoverCorrelation ||
                        factors.correlationMode == kSteinCorrelation;
    if (!ranked && stochastic == 0 && phase_ < 2) {
        // Nothing to stratify or exchange: only the constants remain.
        phase_ = 2;
        progress_ = 45.0f;
    }
    if (phase_ == 0 && !stratify(targetPercent, store, factors, ranked, stochastic)) return fail(store);
    if (phase_ == 1 && !exchange(targetPercent, store, factors, stochastic)) return fail(store);
    if (phase_ == 2) {
        const int ok = ranked ? rerank(targetPercent, store, factors)
                              : finishTree(targetPercent, store, factors, stochastic);
        if (!ok) return fail(store);
    }
    return progress_;
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
    const int32_t n = numSamples_;
    const int32_t count = ranked ? numFactors_ : stochastic;
    while (progress_ < target && factorPosition_ < count) {
        const int f = factors.factorAt(factorPosition_);
        bool write = false;
        double value = 0.0;
        if (isStochastic(factors, f)) {
            if (ranked || parentOf(factors, f) == -1) {
                value = stratumPoint(uniformRandom(&randomState_), sampleIndex_, n);
                write = true;
            }
        } else if (ranked && isConstantFactor(factors, f)) {
            value = constantValue(factors, f);
            write = true;
        }
        if (!placeCell(store, factorPosition_ == 0, numFactors_, f, write, value)) return 0;
        progress_ = phasePercent(int64_t(factorPosition_) * n + sampleIndex_, int64_t(count) * n, 0.0f, 25.0f);
    }
    if (factorPosition_ == count) {
        factorPosition_ = 0;
        sampleIndex_ = 0;
        scratch_.clear();
        phase_ = ranked ? 2 : 1;
        progress_ = 25.0f;
    }
    return 1;
}

// Phase 1. 2n random exchanges per stratified column (not one pass of a
// shuffle); children of the tree are left alone, their counters run on. The
// column is exchanged in memory and written back once complete.
int LatinSampler::exchange(float target, sampValues& store, FactorList& factors, int32_t stochastic) {
    const int32_t n = numSamples_;
    const int64_t exchanges = 2 * int64_t(n);
    while (progress_ < target && factorPosition_ < stochastic) {
        const int f = factors.factorAt(factorPosition_);
        int64_t index = sampleIndex_;
        if (!isStochastic(factors, f) || parentOf(factors, f) != -1) {
            index = exchanges;
        } else {
            if (columnOf_ != f) {
                if (!readColumn(store, f, n, column_)) return 0;
                columnOf_ = f;
            }
            randomExchange(column_.data(), n, &randomState_);
            ++index;
        }
        if (index == exchanges) {
            if (columnOf_ == f && !writeColumn(store, f, column_)) return 0;
            column_.clear();
            columnOf_ = -1;
            index = 0;
            ++factorPosition_;
        }
        sampleIndex_ = int32_t(index);
        progress_ = phasePercent(int64_t(factorPosition_) * exchanges + index, int64_t(stochastic) * exchanges,
                                25.0f, 20.0f);
    }
    if (factorPosition_ == stochastic) {
        factorPosition_ = 0;
        sampleIndex_ = 0;
        phase_ = 2;
        progress_ = 45.0f;
    }
    return 1;
}

// Phase 2 without rank correlation: children of the tree follow their
// (already permuted) parent through a diagonal band; constants take their
// value. The band sampler is made afresh at each call, with its own state
// word, and so depends on how the generation is split into calls; every front
// end drives generation through the same loop of rising targets.
int LatinSampler::finishTree(float target, sampValues& store, FactorList& factors, int32_t stochastic) {
    const int32_t n = numSamples_;
    const int32_t count = numFactors_;
    DiagonalBand band;
    int bandFactor = -1;
    while (progress_ < target && factorPosition_ < count) {
        const int f = factors.factorAt(factorPosition_);
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
            value = band.sampleConditional(column_[size_t(sampleIndex_)]);
            write = true;
        } else if (isConstantFactor(factors, f)) {
            value = constantValue(factors, f);
            write = true;
        }
        if (!placeCell(store, stochastic == 0 && factorPosition_ == 0, count, f, write, value)) return 0;
        progress_ = phasePercent(int64_t(factorPosition_) * n + sampleIndex_, int64_t(count) * n, 45.0f, 5.0f);
    }
    if (factorPosition_ == count) {
        factorPosition_ = 0;
        sampleIndex_ = 0;
        column_.clear();
        columnOf_ = -1;
        scratch_.clear();
        phase_ = 3;
        progress_ = 50.0f;
    }
    return 1;
}

// Phase 2 with rank correlation, in list order: each stochastic column is
// sorted and row r takes the value at place rankOf(column, r); a column
// without usable ranks is permuted as it would be without correlation.
int LatinSampler::rerank(float target, sampValues& store, FactorList& factors) {
    const int32_t n = numSamples_;
    if (!ranks_.built()) warningText_ = ranks_.build(factors, n, n, 1);
    RankedBlock block;
    block.ranks = &ranks_;
    block.rows = n;
    block.shuffleUnranked = true;
    block.phaseCells = int64_t(numFactors_) * n;
    block.from = 25.0f;
    block.span = 25.0f;
    const int done = rerankBlock(target, store, factors, block);
    if (done < 0) return 0;
    if (done == 1) phase_ = 3;
    return 1;
}

}  // namespace tarvex
