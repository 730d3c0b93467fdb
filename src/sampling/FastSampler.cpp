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

// The design and its file section come in the next steps; until then a
// generation makes nothing.
float FastSampler::generate(float, sampValues&, FactorList&) { return -1.0f; }

}  // namespace tarvex
