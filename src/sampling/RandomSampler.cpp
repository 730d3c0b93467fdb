#include "sampling/RandomSampler.h"

#include <algorithm>

#include "common/UniformRandom.h"
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
    const int open = openGeneration(phase_ == 0 && factorPosition_ == 0 && sampleIndex_ == 0, store, factors);
    if (open < 0) return -1.0f;
    if (open == 0) {
        phase_ = 2;
        return progress_;
    }
    const bool imanConover = factors.correlationMode == kImanConoverCorrelation;
    if (phase_ == 0) {
        if (fillPhase(targetPercent, store, factors, imanConover) < 0.0f) return -1.0f;
    }
    if (phase_ == 1) {
        if (rankPhase(targetPercent, store, factors) < 0.0f) return -1.0f;
    }
    return progress_;
}

float RandomSampler::fillPhase(float target, sampValues& store, FactorList& factors, bool correlated) {
    const int32_t n = numSamples_;
    const int32_t count = numFactors_;
    const float span = correlated ? 25.0f : 50.0f;
    if (!correlated && !band_) band_ = std::make_unique<DiagonalBand>();
    while (progress_ < target && factorPosition_ < count) {
        const int f = factors.factorAt(factorPosition_);
        double value = 0.0;
        bool write = true;
        if (isStochastic(factors, f)) {
            const int parent = correlated ? -1 : parentOf(factors, f);
            if (parent != -1) {
                // The parent comes first in sampling order; its column is done.
                if (columnOf_ != parent) {
                    if (!readColumn(store, parent, n, column_)) {
                        errorText_ = store.errorText();
                        return -1.0f;
                    }
                    columnOf_ = parent;
                }
                if (sampleIndex_ == 0) band_->setCorrelation(linkCorrelation(factors, f));
                value = band_->sampleConditional(column_[size_t(sampleIndex_)]);
            } else {
                value = uniformRandom(&randomState_);
            }
        } else if (isConstantFactor(factors, f)) {
            value = constantValue(factors, f);
        } else {
            write = false;  // a relation: filled by the value pass
        }
        if (!placeCell(store, factorPosition_ == 0, count, f, write, value)) return -1.0f;
        progress_ = phasePercent(int64_t(factorPosition_) * n + sampleIndex_, int64_t(count) * n, 0.0f, span);
    }
    if (factorPosition_ == count) {
        factorPosition_ = 0;
        sampleIndex_ = 0;
        column_.clear();
        columnOf_ = -1;
        scratch_.clear();
        phase_ = correlated ? 1 : 2;
        progress_ = span;
    }
    return progress_;
}

// Columns without usable ranks keep their independent draws.
float RandomSampler::rankPhase(float target, sampValues& store, FactorList& factors) {
    const int32_t n = numSamples_;
    if (!ranks_.built()) warningText_ = ranks_.build(factors, n, n, 1);
    RankedBlock block;
    block.ranks = &ranks_;
    block.rows = n;
    block.phaseCells = int64_t(numFactors_) * n;
    block.from = 25.0f;
    block.span = 25.0f;
    const int done = rerankBlock(target, store, factors, block);
    if (done < 0) return -1.0f;
    if (done == 1) phase_ = 2;
    return progress_;
}

}  // namespace tarvex
