#include "sampling/LpTauSampler.h"

#include <cstdio>
#include <istream>
#include <ostream>

#include "sampling/SamplerFactors.h"
#include "sampling/sampValues.h"

namespace tarvex {

LpTauSampler::LpTauSampler() : Sampler(kLpTauMethod, 5648423) {}

// Generation state is not copied: a copy starts from reset.
LpTauSampler::LpTauSampler(const LpTauSampler& other) : Sampler(other) { reset(); }

void LpTauSampler::reset() {
    Sampler::reset();
    scratch_.clear();
}

std::string LpTauSampler::failureText(int64_t run) {
    char text[64];
    std::snprintf(text, sizeof text, "Sample number %lld: generation failed", static_cast<long long>(run));
    return text;
}

int32_t coordinatesBySamplingOrder(const FactorList& factors, std::vector<int32_t>& coordinateOf) {
    const int count = factors.factorCount();
    coordinateOf.assign(size_t(count), kRelationCell);
    int32_t k = 0;
    for (int position = 0; position < count; ++position) {
        const int f = factors.factorAt(position);
        if (f < 0 || f >= count) continue;
        if (isStochastic(factors, f))
            coordinateOf[size_t(f)] = k++;
        else if (isConstantFactor(factors, f))
            coordinateOf[size_t(f)] = kConstantCell;
    }
    return k;
}

float LpTauSampler::generate(float targetPercent, sampValues& store, FactorList& factors) {
    const int open = openGeneration(sampleIndex_ == 0, store, factors);
    if (open < 0) return -1.0f;
    if (open == 0) return progress_;
    const int32_t width = numFactors_;
    std::vector<int32_t> coordinateOf;
    const int32_t k = coordinatesBySamplingOrder(factors, coordinateOf);
    numFactors_ = k;
    point_.resize(size_t(k > 0 ? k : 1));
    scratch_.assign(size_t(width), 0.0);
    for (int f = 0; f < width; ++f)
        if (coordinateOf[size_t(f)] == kConstantCell) scratch_[size_t(f)] = constantValue(factors, f);

    while (progress_ < targetPercent && sampleIndex_ < numSamples_) {
        if (!generator_.point(sampleIndex_ + 1, k, point_.data())) {
            errorText_ = failureText(int64_t(sampleIndex_) + 1);
            return -1.0f;
        }
        for (int f = 0; f < width; ++f) {
            const int32_t c = coordinateOf[size_t(f)];
            if (c >= 0) scratch_[size_t(f)] = point_[size_t(c)];
        }
        if (!store.addRow(scratch_.data())) {
            errorText_ = store.errorText();
            return -1.0f;
        }
        ++sampleIndex_;
        progress_ = phasePercent(sampleIndex_, numSamples_, 0.0f, 50.0f);
    }
    return progress_;
}

void LpTauSampler::writeItems(std::ostream& out) const { out << numSamples_ << '\n' << numFactors_ << '\n'; }

void LpTauSampler::readItems(std::istream& in) {
    int32_t samples = 0, factors = 0;
    if (in >> samples >> factors) {
        numSamples_ = samples;
        numFactors_ = factors;
        return;
    }
    methodName_ = nameOf(methodId_);
    numSamples_ = 0;
    numFactors_ = 0;
}

}  // namespace tarvex
