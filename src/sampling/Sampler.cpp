#include "sampling/Sampler.h"

#include <cmath>
#include <istream>
#include <limits>
#include <ostream>

#include "common/UniformRandom.h"
#include "correlation/FactorList.h"
#include "correlation/Ranking.h"
#include "sampling/DesignColumns.h"
#include "sampling/FastSampler.h"
#include "sampling/FixedSampler.h"
#include "sampling/LatinSampler.h"
#include "sampling/LpTauSampler.h"
#include "sampling/MorrisSampler.h"
#include "sampling/RandomSampler.h"
#include "sampling/RepLatinSampler.h"
#include "sampling/SamplerFactors.h"
#include "sampling/SobolSampler.h"
#include "sampling/sampValues.h"

namespace tarvex {

namespace {

struct MethodEntry {
    const char* name;
    // Null for a method this build does not offer: such a number reads as
    // an unknown one, and a sample file naming it fails cleanly.
    std::unique_ptr<Sampler> (*create)();
};

template <class T>
std::unique_ptr<Sampler> make() {
    return std::make_unique<T>();
}

// By method number. A new method adds its class's maker here.
const MethodEntry kMethods[] = {
    {"Fast", &make<FastSampler>},
    {"Fixed samples", &make<FixedSampler>},
    {"Latin Hypercube", &make<LatinSampler>},
    {"QuasiRandom LpTau", &make<LpTauSampler>},
    {"Morris", &make<MorrisSampler>},
    {"Random", &make<RandomSampler>},
    {"Replicated Latin Hypercube", &make<RepLatinSampler>},
    {"Sobol", &make<SobolSampler>},
};
constexpr int32_t kMethodCount = int32_t(sizeof kMethods / sizeof kMethods[0]);

}  // namespace

Sampler::Sampler(int32_t id, int32_t defaultSeed)
    : methodId_(id), methodName_(nameOf(id)), seed_(defaultSeed), randomState_(-defaultSeed) {}

const char* Sampler::nameOf(int32_t id) { return id >= 0 && id < kMethodCount ? kMethods[id].name : ""; }

std::unique_ptr<Sampler> Sampler::create(int32_t id) {
    if (id < 0 || id >= kMethodCount || kMethods[id].create == nullptr) return nullptr;
    return kMethods[id].create();
}

int Sampler::setNumFactors(int32_t count) {
    numFactors_ = count;
    return 1;
}

void Sampler::reset() {
    progress_ = 0.0f;
    sampleIndex_ = 0;
    factorPosition_ = 0;
    randomState_ = -seed_;
    warningText_.clear();
    sortedColumn_.clear();
    stochasticIndex_ = 0;
}

int Sampler::setSamples(int32_t n) {
    if (n < 0) {
        errorText_ = kNegativeSamplesText;
        return 0;
    }
    numSamples_ = n;
    return 1;
}

int Sampler::setSeed(int32_t s) {
    if (s < 1) {
        errorText_ = kBadSeedText;
        return 0;
    }
    seed_ = s;
    randomState_ = -s;
    return 1;
}

void Sampler::writeSection(std::ostream& out) const {
    out << methodId_ << '\n' << methodName_ << '\n';
    writeItems(out);
}

void Sampler::writeCountsAndSeed(std::ostream& out) const {
    out << numSamples_ << '\n' << numFactors_ << '\n' << seed_ << '\n';
}

void Sampler::readCountsAndSeed(std::istream& in) {
    int32_t samples = 0, factors = 0, s = 0;
    if (in >> samples >> factors >> s) {
        numSamples_ = samples;
        numFactors_ = factors;
        seed_ = s;
        randomState_ = -s;
        return;
    }
    methodName_ = nameOf(methodId_);
    numSamples_ = 0;
    numFactors_ = 0;
    seed_ = 1;
    randomState_ = -1;
}

float Sampler::phasePercent(int64_t done, int64_t total, float from, float span) {
    if (total <= 0 || done >= total) return from + span;
    const float end = from + span;
    const float p = float(done) / float(total) * span + from;
    return p < end ? p : std::nextafter(end, from);
}

int Sampler::openGeneration(bool atFirstCell, sampValues& store, const FactorList& factors) {
    numFactors_ = factors.factorCount();
    if (numSamples_ <= 0) {
        errorText_ = kNoSamplesText;
        return -1;
    }
    if (numFactors_ == 0) {
        progress_ = 50.0f;
        return 0;
    }
    if (atFirstCell && (store.rowCount() != 0 || store.columnCount() != numFactors_)) {
        if (!store.clear() || !store.allocate(numFactors_)) {
            errorText_ = store.errorText();
            return -1;
        }
    }
    return 1;
}

int Sampler::placeCell(sampValues& store, bool newRow, int32_t width, int f, bool write, double value) {
    return placeCell(store, newRow, width, f, write, value, numSamples_);
}

int Sampler::placeCell(sampValues& store, bool newRow, int32_t width, int f, bool write, double value,
                       int32_t rows) {
    if (newRow) {
        scratch_.assign(size_t(width), 0.0);
        if (write) scratch_[size_t(f)] = value;
        if (!store.addRow(scratch_.data())) {
            errorText_ = store.errorText();
            return 0;
        }
    } else if (write && !store.setColumnValue(sampleIndex_, f, value)) {
        errorText_ = store.errorText();
        return 0;
    }
    if (++sampleIndex_ == rows) {
        sampleIndex_ = 0;
        ++factorPosition_;
    }
    return 1;
}

void Sampler::rankPlaced(int32_t, int32_t, int32_t) {}

int Sampler::rerankBlock(float target, sampValues& store, const FactorList& factors, const RankedBlock& block) {
    const int32_t n = block.rows;
    const int32_t count = numFactors_;
    auto failed = [&] {
        errorText_ = store.errorText();
        return -1;
    };
    while (progress_ < target && factorPosition_ < count) {
        const int f = factorPosition_;
        if (!isStochastic(factors, f)) {
            sampleIndex_ = n;
        } else {
            const bool resumed = sampleIndex_ != 0 && !sortedColumn_.empty();
            if (!resumed) {
                stochasticIndex_ = stochasticRank(factors, f);
                if (block.ranks->usable(stochasticIndex_)) {
                    if (!readBlock(store, f, block.firstRow, n, sortedColumn_)) return failed();
                    sortAscending(sortedColumn_.data(), n);
                }
            }
            if (!block.ranks->usable(stochasticIndex_)) {
                if (block.shuffleUnranked) {
                    // Left in the order it was made in (the strata of a Latin
                    // hypercube rise), every pair of such columns would be
                    // perfectly rank-correlated.
                    std::vector<double> column;
                    if (!readBlock(store, f, block.firstRow, n, column)) return failed();
                    for (int64_t e = 0; e < 2 * int64_t(n); ++e) randomExchange(column.data(), n, &randomState_);
                    if (!writeBlock(store, f, block.firstRow, column)) return failed();
                    std::vector<int32_t> ranks(size_t(n), 0);
                    rankPositions(column.data(), n, ranks.data());
                    for (int32_t s = 0; s < n; ++s) rankPlaced(f, ranks[size_t(s)], block.firstRow + s);
                }
                sampleIndex_ = n;
            } else {
                const int32_t r = block.ranks->rankOf(stochasticIndex_, block.rankRow + sampleIndex_);
                const int32_t row = block.firstRow + sampleIndex_;
                if (!store.setColumnValue(row, f, sortedColumn_[size_t(r)])) return failed();
                rankPlaced(f, r, row);
                ++sampleIndex_;
            }
        }
        if (sampleIndex_ == n) {
            sortedColumn_.clear();
            sampleIndex_ = 0;
            ++factorPosition_;
        }
        progress_ = phasePercent(block.cellsBefore + int64_t(factorPosition_) * n + sampleIndex_, block.phaseCells,
                                 block.from, block.span);
    }
    if (factorPosition_ < count) return 0;
    factorPosition_ = 0;
    sampleIndex_ = 0;
    sortedColumn_.clear();
    const int64_t done = block.cellsBefore + int64_t(count) * n;
    if (done >= block.phaseCells) block.ranks->release();
    progress_ = phasePercent(done, block.phaseCells, block.from, block.span);
    return 1;
}

}  // namespace tarvex
