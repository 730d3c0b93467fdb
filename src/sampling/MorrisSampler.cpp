#include "sampling/MorrisSampler.h"

#include <istream>
#include <limits>
#include <ostream>
#include <utility>

#include "common/TextLines.h"
#include "common/UniformRandom.h"
#include "sampling/SamplerFactors.h"
#include "sampling/sampValues.h"

namespace tarvex {

namespace {

constexpr const char* kEffectsLine = "Elementary effects";
constexpr const char* kNoEffectsLine = "No elementary effects";
// The marker line is read as into a buffer of 100 bytes.
constexpr std::size_t kMarkerBytes = 100;

// A whole-line read at the end of a section took the line end with it; the
// record's reader reads away the rest of the section's last line itself, so
// the line end goes back.
void giveBackLineEnd(std::istream& in) {
    if (in) in.unget();
}

}  // namespace

MorrisSampler::MorrisSampler() : Sampler(kMorrisMethod, 1) {}

// Parameters and the change record (which the elementary effects read) are
// copied; a generation in progress is not.
MorrisSampler::MorrisSampler(const MorrisSampler& other)
    : Sampler(other),
      levels_(other.levels_),
      trajectories_(other.trajectories_),
      numStochastic_(other.numStochastic_),
      changedFactor_(other.changedFactor_) {
    Sampler::reset();
}

void MorrisSampler::reset() {
    Sampler::reset();
    trajectory_.clear();
    changedFactor_.clear();
    scratch_.clear();
    done_ = false;
}

int MorrisSampler::setLevels(uint32_t p) {
    if (p == 0) {
        errorText_ = kBadLevelsText;
        return 0;
    }
    levels_ = p;
    return 1;
}

int MorrisSampler::setTrajectories(uint32_t r) {
    if (r == 0) {
        errorText_ = kBadTrajectoriesText;
        return 0;
    }
    trajectories_ = r;
    return 1;
}

double MorrisSampler::gridPoint(uint32_t i, uint32_t p) {
    return (100.0 / double(p) * double(i) + 100.0 / (2.0 * double(p))) * 0.01;
}

// ------------------------------------------------------------ generation

float MorrisSampler::generate(float targetPercent, sampValues& store, FactorList& factors) {
    if (done_) return progress_;
    const bool atFirstCell = factorPosition_ == 0 && sampleIndex_ == 0;
    const int open = openGeneration(atFirstCell, store, factors);
    if (open < 0) return -1.0f;
    if (open == 0) {
        done_ = true;
        return progress_;
    }
    // With one level there is no jump: the base point would fall below
    // level 0.
    if (levels_ < 2) {
        errorText_ = levels_ == 0 ? kBadLevelsText : kTooFewLevelsText;
        return -1.0f;
    }
    numStochastic_ = 0;
    for (int f = 0; f < numFactors_; ++f) numStochastic_ += isStochastic(factors, f) ? 1 : 0;
    const int32_t k = numStochastic_;
    const int64_t runs = numSamples_;
    const int64_t length = int64_t(k) + 1;
    int64_t done = length * factorPosition_ + sampleIndex_;
    while (progress_ < targetPercent && done < runs) {
        if (sampleIndex_ == 0) {
            if (factorPosition_ == 0) {
                trajectory_.assign(size_t(length) * size_t(k), 0.0);
                changedFactor_.assign(size_t(runs), 0);
            }
            buildTrajectory();
        }
        scratch_.assign(size_t(numFactors_), 0.0);
        const double* cells = trajectory_.data() + size_t(sampleIndex_) * size_t(k);
        for (int f = 0, c = 0; f < numFactors_; ++f) {
            if (isStochastic(factors, f))
                scratch_[size_t(f)] = cells[c++];
            else if (isConstantFactor(factors, f))
                scratch_[size_t(f)] = constantValue(factors, f);
        }
        if (store.addRow(scratch_.data()) == 0) {
            errorText_ = store.errorText();
            return -1.0f;
        }
        if (++sampleIndex_ > k) {
            sampleIndex_ = 0;
            ++factorPosition_;
        }
        done = length * factorPosition_ + sampleIndex_;
        progress_ = phasePercent(done, runs, 0.0f, 50.0f);
    }
    if (done >= runs) {
        trajectory_.clear();
        scratch_.clear();
        done_ = true;
        progress_ = 50.0f;
    }
    return progress_;
}

// One trajectory, drawn in this order: the direction of every column, then
// every base point, then the column exchanges.
void MorrisSampler::buildTrajectory() {
    const int32_t k = numStochastic_;
    const uint32_t p = levels_;
    const int32_t d = int32_t(p >> 1);  // the jump, in levels
    auto at = [this, k](int32_t i, int32_t j) -> double& { return trajectory_[size_t(i) * size_t(k) + size_t(j)]; };

    // Column j steps between rows j and j + 1: up from 0 or down from d.
    for (int32_t j = 0; j < k; ++j) {
        const int32_t b = int32_t(uniformRandom(&randomState_) + 0.5);
        for (int32_t i = 0; i <= k; ++i) at(i, j) = i > j ? double((1 - b) * d) : double(b * d);
    }
    // A base level from 0 to d - 1, so that level + d stays on the grid.
    for (int32_t j = 0; j < k; ++j) {
        int32_t x = int32_t(double(p) * uniformRandom(&randomState_) * 0.5);
        if (x == d) x = d - 1;
        for (int32_t i = 0; i <= k; ++i) at(i, j) += double(x);
    }
    // The order in which the factors change.
    for (int32_t s = 0; s < k; ++s) {
        int32_t a = int32_t(uniformRandom(&randomState_) * k);
        if (a == k) a = k - 1;
        int32_t c = int32_t(uniformRandom(&randomState_) * k);
        if (c == k) c = k - 1;
        for (int32_t i = 0; i <= k; ++i) std::swap(at(i, a), at(i, c));
    }
    // When numSamples is not a whole number of trajectories the last one is
    // cut short: nothing is recorded past the last run.
    const int64_t first = (int64_t(k) + 1) * factorPosition_;
    const int64_t runs = int64_t(changedFactor_.size());
    if (first < runs) changedFactor_[size_t(first)] = -1;
    for (int32_t i = 1; i <= k; ++i) {
        for (int32_t c = 0; c < k; ++c) {
            if (at(i - 1, c) != at(i, c) && first + i < runs) changedFactor_[size_t(first + i)] = c;
            at(i - 1, c) = gridPoint(uint32_t(at(i - 1, c)), p);
            if (i == k) at(i, c) = gridPoint(uint32_t(at(i, c)), p);
        }
    }
}

// ------------------------------------------------------------ section

void MorrisSampler::writeItems(std::ostream& out) const {
    out << levels_ << '\n' << trajectories_ << '\n' << numSamples_ << '\n' << numFactors_ << '\n' << seed_ << '\n';
    // A record of another length than numSamples belongs to another design
    // (the count was changed since) and could not be read back.
    if (changedFactor_.empty() || int64_t(changedFactor_.size()) != int64_t(numSamples_)) {
        out << kNoEffectsLine << '\n';
        return;
    }
    out << kEffectsLine << '\n';
    std::string text;
    for (int32_t c : changedFactor_) {
        text += std::to_string(c);
        text += '\n';
    }
    out << text;
}

void MorrisSampler::restoreDefaults() {
    reset();
    methodName_ = nameOf(methodId_);
    levels_ = 0;
    trajectories_ = 0;
    numSamples_ = 0;
    numFactors_ = 0;
    // Not the class's seed 1: a section that fails reads as seed 5648423.
    seed_ = 5648423;
    randomState_ = -seed_;
}

void MorrisSampler::readItems(std::istream& in) {
    int64_t levels = 0, trajectories = 0;
    int32_t samples = 0, factors = 0, seed = 0;
    constexpr int64_t kMaxCount = std::numeric_limits<uint32_t>::max();
    if (!(in >> levels >> trajectories >> samples >> factors >> seed) || samples < 0 || factors < 0 || levels < 0 ||
        levels > kMaxCount || trajectories < 0 || trajectories > kMaxCount) {
        restoreDefaults();
        in.setstate(std::ios::failbit);
        return;
    }
    reset();
    levels_ = uint32_t(levels);
    trajectories_ = uint32_t(trajectories);
    numSamples_ = samples;
    numFactors_ = factors;
    seed_ = seed;
    randomState_ = -seed;

    skipLine(in);
    std::string marker;
    if (!readLineInBuffer(in, marker, kMarkerBytes)) return;
    if (marker != kEffectsLine || samples == 0) {
        giveBackLineEnd(in);
        return;
    }
    if (!countFitsInput(in, samples, 2)) {
        in.setstate(std::ios::failbit);
        return;
    }
    std::vector<int32_t> changed;
    int32_t c = 0;
    for (int32_t i = 0; i < samples; ++i) {
        if (!(in >> c)) return;  // the record is dropped, the stream stays failed
        changed.push_back(c);
    }
    changedFactor_.swap(changed);
}

}  // namespace tarvex
