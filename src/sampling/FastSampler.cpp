#include "sampling/FastSampler.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "common/UniformRandom.h"
#include "sampling/FastFrequencies.h"
#include "sampling/SamplerFactors.h"
#include "sampling/sampValues.h"

namespace tarvex {

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kInversePi = 0.3183098861837907;
// Runs per curve at the least: 8 omegaMax + 1 with omegaMax 8.
constexpr int32_t kRunsPerUnit = 65;
// Longest name the sample file gives back.
constexpr size_t kNameChars = 80;

// A name that comes back from the sample file as it went in: one line of at
// most 80 characters, no line break, no carriage return, no NUL (a line read
// stops at it).
bool keepsInFile(const std::string& name) {
    return name.size() <= kNameChars && name.find_first_of(std::string("\n\r\0", 3)) == std::string::npos;
}

}  // namespace

FastSampler::FastSampler() : Sampler(kFastMethod, 1) { numSamples_ = 1; }

// ------------------------------------------------------------ settings

int FastSampler::setAnalysisMode(int32_t m) {
    if (m < 0 || m > 2) return 0;
    if (m != analysisMode_) designTable_.reset();
    analysisMode_ = m;
    return 1;
}

int FastSampler::addGroup(const std::string& name) {
    if (!keepsInFile(name)) return 0;
    groupNames_.push_back(name);
    designTable_.reset();
    return 1;
}

int FastSampler::removeGroup(const std::string& name) {
    const auto found = std::find(groupNames_.begin(), groupNames_.end(), name);
    if (found == groupNames_.end()) return 0;
    const int32_t g = int32_t(found - groupNames_.begin());
    size_t kept = 0;
    for (size_t e = 0; e < elementNames_.size(); ++e) {
        if (elementGroups_[e] == g) continue;
        if (kept != e) elementNames_[kept] = std::move(elementNames_[e]);
        elementGroups_[kept] = elementGroups_[e] > g ? elementGroups_[e] - 1 : elementGroups_[e];
        ++kept;
    }
    elementNames_.resize(kept);
    elementGroups_.resize(kept);
    groupNames_.erase(found);
    designTable_.reset();
    return 1;
}

int FastSampler::addElement(const std::string& groupName, const std::string& factorName) {
    const auto found = std::find(groupNames_.begin(), groupNames_.end(), groupName);
    if (found == groupNames_.end() || !keepsInFile(factorName)) return 0;
    elementNames_.push_back(factorName);
    elementGroups_.push_back(int32_t(found - groupNames_.begin()));
    designTable_.reset();
    return 1;
}

int FastSampler::removeElement(const std::string& factorName) {
    const auto found = std::find(elementNames_.begin(), elementNames_.end(), factorName);
    if (found == elementNames_.end()) return 0;
    elementGroups_.erase(elementGroups_.begin() + (found - elementNames_.begin()));
    elementNames_.erase(found);
    designTable_.reset();
    return 1;
}

int32_t FastSampler::membersOf(int32_t group) const {
    return int32_t(std::count(elementGroups_.begin(), elementGroups_.end(), group));
}

int32_t FastSampler::groupSize(const std::string& name) const {
    const auto found = std::find(groupNames_.begin(), groupNames_.end(), name);
    return found == groupNames_.end() ? -1 : membersOf(int32_t(found - groupNames_.begin()));
}

std::optional<std::string> FastSampler::groupElement(const std::string& name, int32_t i) const {
    const auto found = std::find(groupNames_.begin(), groupNames_.end(), name);
    if (found == groupNames_.end() || i < 0) return std::nullopt;
    const int32_t g = int32_t(found - groupNames_.begin());
    for (size_t e = 0; e < elementNames_.size(); ++e)
        if (elementGroups_[e] == g && i-- == 0) return elementNames_[e];
    return std::nullopt;
}

int FastSampler::isInGroup(const std::string& factorName) const {
    return std::find(elementNames_.begin(), elementNames_.end(), factorName) != elementNames_.end() ? 1 : 0;
}

int FastSampler::checkSampleSize(int32_t k) {
    const int64_t n = numSamples_;
    if (analysisMode_ != 0) {
        // Groups count in mode 1 as well; without groups this is 65 k.
        if (int64_t(unitCount(k)) * kRunsPerUnit > n) {
            errorText_ = kFastPerUnitSizeText;
            return 0;
        }
        return 1;
    }
    const int32_t highest = classicCheckFrequency(k);
    if (highest == 0) {
        errorText_ = kFastClassicCountText;
        return 0;
    }
    const long needed = 8L * highest + 1;
    if (needed > n) {
        char text[128];
        std::snprintf(text, sizeof text, kFastClassicSizeFormat, needed);
        errorText_ = text;
        return 0;
    }
    return 1;
}

int32_t FastSampler::unitCount(int32_t k) const {
    return k - int32_t(elementNames_.size()) + int32_t(groupNames_.size());
}

int32_t FastSampler::tableRows(int32_t k) const {
    const int32_t rows = analysisMode_ == 2 ? unitCount(k) : k;
    if (rows < 0 || (rows == 0 && analysisMode_ == 2)) return -1;
    return rows;
}

void FastSampler::makeDesignTable(int32_t k) {
    const int32_t rows = tableRows(k);
    if (rows < 0) {
        designTable_.reset();
        return;
    }
    designTable_.emplace(size_t(rows));
}

void FastSampler::reset() {
    Sampler::reset();
    blockStart_ = 0;
    blockEnd_ = 0;
    currentUnit_ = -1;
    units_ = 0;
    started_ = false;
    scratch_.clear();
    makeDesignTable(numStochastic_);
}

// ------------------------------------------------------------ generation

float FastSampler::generate(float targetPercent, sampValues& store, FactorList& factors) {
    const int open = openGeneration(!started_, store, factors);
    if (open < 0) return -1.0f;
    if (open == 0) return progress_;
    if (!started_) {
        if (!start(factors)) return -1.0f;
        started_ = true;
    }
    while (progress_ < targetPercent) {
        const int32_t r = sampleIndex_;
        if (analysisMode_ != 0 && r == blockEnd_ && currentUnit_ + 1 < units_) {
            if (!openBlock(factors)) return -1.0f;
        }
        // Until the last block opens, numSamples still holds the budget of
        // the blocks to come and r stays below it; then it counts exactly
        // the runs of the blocks made.
        if (r >= numSamples_) {
            progress_ = 50.0f;
            break;
        }
        int64_t t = r;
        int32_t length = numSamples_;
        if (analysisMode_ != 0) {
            // t runs on over the curves of a block: with whole frequencies
            // a curve repeats after curveLength runs anyway.
            t = int64_t(r) - blockStart_;
            length = curveLength_;
            if (t % curveLength_ == 0) drawPhases();
        }
        if (!addRun(store, factors, t, length)) return -1.0f;
        ++sampleIndex_;
        progress_ = phasePercent(sampleIndex_, numSamples_, 0.0f, 50.0f);
    }
    return progress_;
}

// Run 0: the stochastic count, the block table and, in the classic test,
// the frequencies and the one set of phases; in the extended tests the
// budget of a block, to which numSamples is cut down.
int FastSampler::start(FactorList& factors) {
    const int32_t count = numFactors_;
    int32_t k = 0;
    for (int f = 0; f < count; ++f) k += isStochastic(factors, f) ? 1 : 0;
    numStochastic_ = k;
    makeDesignTable(k);
    frequencies_.assign(size_t(count), 0);
    phases_.assign(size_t(count), 0.0);
    currentUnit_ = -1;
    blockStart_ = 0;
    blockEnd_ = 0;

    if (analysisMode_ == 0) {
        // No interference-free set outside 2 to 50 factors; the panel does
        // not offer the mode there, and the failure has no text of its own.
        const std::vector<int32_t> set = classicFrequencies(k);
        if (set.empty()) {
            errorText_ = kNoErrorsText;
            return 0;
        }
        int32_t j = 0;
        for (int f = 0; f < count; ++f) {
            if (!isStochastic(factors, f)) continue;
            frequencies_[size_t(f)] = set[size_t(j)];
            (*designTable_)[size_t(j)] = {set[size_t(j)], 1, numSamples_, numSamples_};
            ++j;
        }
        curveLength_ = numSamples_;
        drawPhases();
        return 1;
    }

    // The extended tests compare units: fewer than two leave nothing to
    // compare. The unit count is the one of groups in mode 1 as well.
    const int32_t units = unitCount(k);
    if (units == 1 || (analysisMode_ == 1 ? k < 2 : units < 2)) {
        errorText_ = kNoErrorsText;
        return 0;
    }
    units_ = analysisMode_ == 2 ? units : k;
    samplesPerUnit_ = numSamples_ / units_;
    numSamples_ = units_ * samplesPerUnit_;
    return 1;
}

int FastSampler::openBlock(const FactorList& factors) {
    ++currentUnit_;
    const bool group = analysisMode_ == 2 && currentUnit_ < int32_t(groupNames_.size());
    int32_t members = 1;
    if (group) {
        members = membersOf(currentUnit_);
        if (members == 0) {
            errorText_ = kFastEmptyGroupText;
            return 0;
        }
    }
    if (group && members > 1) {
        // A group's members share omegaMax 8; its budget goes to more curves.
        resamples_ = samplesPerUnit_ / kRunsPerUnit;
        omegaMax_ = 8;
    } else {
        resamples_ = 1;
        omegaMax_ = (samplesPerUnit_ - 1) / 8;
    }
    if (resamples_ < 1 || omegaMax_ < 1) {
        errorText_ = kFastSetTooSmallText;
        return 0;
    }
    curveLength_ = 8 * omegaMax_ + 1;
    blockLength_ = resamples_ * curveLength_;
    // Never above the budget: the run count follows the blocks made.
    numSamples_ += blockLength_ - samplesPerUnit_;
    assignFrequencies(factors, currentUnit_, omegaMax_, members);
    blockStart_ = sampleIndex_;
    blockEnd_ = sampleIndex_ + blockLength_;
    if (designTable_ && size_t(currentUnit_) < designTable_->size())
        (*designTable_)[size_t(currentUnit_)] = {omegaMax_, resamples_, curveLength_, blockLength_};
    return 1;
}

// The unit's factors run at w; every other stochastic factor, in list order,
// takes the next complementary frequency, round the set.
void FastSampler::assignFrequencies(const FactorList& factors, int32_t unit, int32_t w, int32_t members) {
    const int32_t count = numFactors_;
    const int32_t groups = int32_t(groupNames_.size());
    const std::vector<int32_t> set = complementaryFrequencies(w, members, numStochastic_);
    constexpr int32_t kUnset = -1;
    frequencies_.assign(size_t(count), kUnset);
    if (analysisMode_ == 2 && unit < groups) {
        for (int f = 0; f < count; ++f)
            for (size_t e = 0; e < elementNames_.size(); ++e)
                if (elementGroups_[e] == unit && elementNames_[e] == factors.getFactor(f)->name())
                    frequencies_[size_t(f)] = w;
    } else {
        // Mode 1: the unit-th stochastic factor; mode 2: the (unit - G)-th
        // stochastic factor in no group.
        int32_t wanted = analysisMode_ == 2 ? unit - groups : unit;
        for (int f = 0; f < count && wanted >= 0; ++f) {
            if (!isStochastic(factors, f)) continue;
            if (analysisMode_ == 2 && isInGroup(factors.getFactor(f)->name())) continue;
            if (wanted-- == 0) frequencies_[size_t(f)] = w;
        }
    }
    size_t j = 0;
    for (int f = 0; f < count; ++f) {
        if (frequencies_[size_t(f)] != kUnset) continue;
        frequencies_[size_t(f)] = isStochastic(factors, f) ? set[j++ % set.size()] : 0;
    }
}

void FastSampler::drawPhases() {
    for (double& phase : phases_) phase = 2.0 * kPi * uniformRandom(&randomState_);
}

// One run at place t of a curve of `length` runs: s = (2t - length + 1) pi /
// length, each stochastic factor at 1/2 + arcsin(sin(w s + phase)) / pi,
// constants at their value; relations wait for the value pass.
int FastSampler::addRun(sampValues& store, const FactorList& factors, int64_t t, int32_t length) {
    const int32_t count = numFactors_;
    scratch_.assign(size_t(count), 0.0);
    const double s = double(2 * t - length + 1) * kPi / double(length);
    for (int f = 0; f < count; ++f) {
        if (isStochastic(factors, f)) {
            const double angle = double(frequencies_[size_t(f)]) * s + phases_[size_t(f)];
            scratch_[size_t(f)] = 0.5 + std::asin(std::sin(angle)) * kInversePi;
        } else if (isConstantFactor(factors, f)) {
            scratch_[size_t(f)] = constantValue(factors, f);
        }
    }
    if (!store.addRow(scratch_.data())) {
        errorText_ = store.errorText();
        return 0;
    }
    return 1;
}

}  // namespace tarvex
