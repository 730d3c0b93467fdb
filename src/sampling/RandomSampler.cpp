#include "sampling/RandomSampler.h"

#include <algorithm>

#include "common/UniformRandom.h"
#include "correlation/Ranking.h"
#include "sampling/SamplerFactors.h"
#include "sampling/sampValues.h"

namespace tarvex {

RandomSampler::RandomSampler() : Sampler(kRandomMethod, 1) {}

// Generation state is not copied: a copy starts from reset.
RandomSampler::RandomSampler(const RandomSampler& other) : Sampler(other) { reset(); }

void RandomSampler::reset() {
    Sampler::reset();
    phase_ = 0;
    band_.reset();
    ranks_.release();
    scratch_.clear();
    column_.clear();
    columnOf_ = -1;
}

float RandomSampler::generate(float targetPercent, sampValues& store, FactorList& factors) {
    const int open = openGeneration(phase_ == 0 && factorPosition == 0 && sampleIndex == 0, store, factors);
    if (open < 0) return -1.0f;
    if (open == 0) {
        phase_ = 2;
        return progress;
    }
    const bool imanConover = factors.correlationMode == kImanConoverCorrelation;
    if (phase_ == 0) {
        if (fillPhase(targetPercent, store, factors, imanConover) < 0.0f) return -1.0f;
    }
    if (phase_ == 1) {
        if (rankPhase(targetPercent, store, factors) < 0.0f) return -1.0f;
    }
    return progress;
}

float RandomSampler::fillPhase(float target, sampValues& store, FactorList& factors, bool correlated) {
    const int32_t n = numSamples;
    const int32_t count = numFactors;
    const float span = correlated ? 25.0f : 50.0f;
    if (!correlated && !band_) band_ = std::make_unique<DiagonalBand>();
    while (progress < target && factorPosition < count) {
        const int f = factors.factorAt(factorPosition);
        double value = 0.0;
        bool write = true;
        if (isStochastic(factors, f)) {
            const int parent = correlated ? -1 : parentOf(factors, f);
            if (parent != -1) {
                // The parent comes first in sampling order; its column is done.
                if (columnOf_ != parent) {
                    if (!readColumn(store, parent, n, column_)) {
                        errorText = store.errorText();
                        return -1.0f;
                    }
                    columnOf_ = parent;
                }
                if (sampleIndex == 0) band_->setCorrelation(linkCorrelation(factors, f));
                value = band_->sampleConditional(column_[size_t(sampleIndex)]);
            } else {
                value = uniformRandom(&randomState);
            }
        } else if (isConstantFactor(factors, f)) {
            value = constantValue(factors, f);
        } else {
            write = false;  // a relation: filled by the value pass
        }
        if (!placeCell(store, factorPosition == 0, count, f, write, value)) return -1.0f;
        progress = phasePercent(int64_t(factorPosition) * n + sampleIndex, int64_t(count) * n, 0.0f, span);
    }
    if (factorPosition == count) {
        factorPosition = 0;
        sampleIndex = 0;
        column_.clear();
        columnOf_ = -1;
        scratch_.clear();
        phase_ = correlated ? 1 : 2;
        progress = span;
    }
    return progress;
}

float RandomSampler::rankPhase(float target, sampValues& store, FactorList& factors) {
    const int32_t n = numSamples;
    const int32_t count = numFactors;
    if (!ranks_.built()) {
        warningText = ranks_.build(factors, n, n, 1);
    }
    while (progress < target && factorPosition < count) {
        const int f = factorPosition;  // list order here
        const int32_t rankColumn = isStochastic(factors, f) ? stochasticRank(factors, f) : -1;
        if (rankColumn < 0 || !ranks_.usable(rankColumn)) {
            // Nothing to reorder in this column: it stays as it is.
            sampleIndex = n;
        } else {
            if (columnOf_ != f) {
                if (!readColumn(store, f, n, column_)) {
                    errorText = store.errorText();
                    return -1.0f;
                }
                sortAscending(column_.data(), n);
                columnOf_ = f;
            }
            const int32_t r = ranks_.rankOf(rankColumn, sampleIndex);
            if (!store.setColumnValue(sampleIndex, f, column_[size_t(r)])) {
                errorText = store.errorText();
                return -1.0f;
            }
            ++sampleIndex;
        }
        if (sampleIndex == n) {
            sampleIndex = 0;
            ++factorPosition;
            column_.clear();
            columnOf_ = -1;
        }
        progress = phasePercent(int64_t(factorPosition) * n + sampleIndex, int64_t(count) * n, 25.0f, 25.0f);
    }
    if (factorPosition == count) {
        ranks_.release();
        factorPosition = 0;
        sampleIndex = 0;
        phase_ = 2;
        progress = 50.0f;
    }
    return progress;
}

}  // namespace tarvex
