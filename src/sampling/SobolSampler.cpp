#include "sampling/SobolSampler.h"

#include <algorithm>
#include <cstdio>
#include <istream>
#include <new>
#include <ostream>

#include "sampling/Combinations.h"
#include "sampling/LpTauSampler.h"
#include "sampling/SamplerFactors.h"
#include "sampling/sampValues.h"

namespace tarvex {

namespace {

constexpr int64_t kMaxRuns = INT32_MAX;

int64_t saturatingAdd(int64_t a, int64_t b) { return a > INT64_MAX - b ? INT64_MAX : a + b; }

// Orders the generation walks: the order, or order - 1 when it equals k, at
// least 1 (the sizing always counts the k blocks of order 1) and at most k
// (larger subsets do not exist).
int32_t ordersToWalk(int32_t k, int32_t order) {
    const int32_t walked = order == k ? order - 1 : order;
    return std::clamp(walked, 1, std::max(k, 1));
}

}  // namespace

SobolSampler::SobolSampler() : Sampler(kSobolMethod, 5648423) {}

// Generation state is not copied: a copy starts from reset.
SobolSampler::SobolSampler(const SobolSampler& other)
    : Sampler(other), baseSize_(other.baseSize_), designKind_(other.designKind_), order_(other.order_) {
    reset();
}

void SobolSampler::reset() {
    Sampler::reset();
    scratch_.clear();
    k_ = 0;
    coordinateOf_.clear();
    stochasticIndex_.clear();
    matrixA_.clear();
    matrixB_.clear();
    orderCount_ = 0;
    comboCount_.clear();
    orderStart_.clear();
    combos_.clear();
    currentOrder_ = 0;
    point_.clear();
}

int SobolSampler::setBaseSize(int32_t size) {
    if (size < 1) {
        errorText_ = kSobolBadBaseSizeText;
        return 0;
    }
    baseSize_ = size;
    return 1;
}

int64_t SobolSampler::blockCount(int32_t k, int32_t designKind, int32_t order, bool cheapDesign) {
    if (k < 0) k = 0;
    if (designKind == 1) return 2 * int64_t(k) + 2;
    int32_t highest = order > k ? 1 : (order == k ? order - 1 : order);
    if (cheapDesign && k / 2 <= highest) highest = k / 2;
    int64_t blocks = 2 + int64_t(k);
    for (int32_t r = 2; r <= highest; ++r) blocks = saturatingAdd(blocks, binomial(k, r));
    return blocks;
}

int SobolSampler::sampleSizes(int32_t k, int32_t designKind, int32_t order, bool cheapDesign,
                              std::vector<int32_t>& sizes, std::string& errorText) {
    const bool tooBig = designKind != 1 && order > k;
    const int64_t blocks = blockCount(k, designKind, order, cheapDesign);
    sizes.clear();
    for (int i = 0; i < 9; ++i) {
        const int64_t base = int64_t(1) << (i + 4);
        if (blocks > kMaxRuns / base) break;
        sizes.push_back(int32_t(base * blocks));
    }
    if (tooBig) {
        errorText = kSobolOrderTooBigText;
        return 0;
    }
    if (sizes.empty()) {
        errorText = kSobolTooManyRunsText;
        return 0;
    }
    return 1;
}

// At the first run: which coordinate goes to which factor, the order table,
// and room for the base rows.
int SobolSampler::openDesign(const FactorList& factors, int32_t width) {
    if (baseSize_ < 1) {
        errorText_ = kSobolBadBaseSizeText;
        return 0;
    }
    k_ = coordinatesBySamplingOrder(factors, coordinateOf_);
    stochasticIndex_.clear();
    for (int f = 0; f < width; ++f)
        if (coordinateOf_[size_t(f)] >= 0) stochasticIndex_.push_back(f);

    orderCount_ = ordersToWalk(k_, order_);
    comboCount_.assign(size_t(orderCount_), 0);
    orderStart_.assign(size_t(orderCount_), 2);
    for (int32_t r = 0; r < orderCount_; ++r) {
        comboCount_[size_t(r)] = binomial(k_, r + 1);
        if (r > 0) orderStart_[size_t(r)] = saturatingAdd(orderStart_[size_t(r - 1)], comboCount_[size_t(r - 1)]);
    }
    currentOrder_ = 0;
    combos_.clear();
    if (designKind_ != 1) {
        // Blocks past the last subset would have no columns to take from A.
        const int64_t designBlocks = saturatingAdd(orderStart_.back(), comboCount_.back());
        const int64_t neededBlocks = (int64_t(numSamples_) + baseSize_ - 1) / baseSize_;
        if (k_ > 0 && neededBlocks > designBlocks) {
            char text[200];
            std::snprintf(text, sizeof text,
                          "  Sample size too big for the design: %d runs need %lld blocks of %d, the design has %lld.",
                          numSamples_, static_cast<long long>(neededBlocks), baseSize_,
                          static_cast<long long>(designBlocks));
            errorText_ = text;
            return 0;
        }
    }
    // Only the base rows that the sample reaches.
    const size_t rows = size_t(std::min(baseSize_, numSamples_));
    try {
        matrixA_.assign(rows * size_t(width), 0.0);
        matrixB_.assign(rows * size_t(width), 0.0);
    } catch (const std::bad_alloc&) {
        matrixA_.clear();
        matrixB_.clear();
        errorText_ = "Not enough memory for the base samples of the Sobol design";
        return 0;
    }
    for (int f = 0; f < width; ++f) {
        if (coordinateOf_[size_t(f)] != kConstantCell) continue;
        const double value = constantValue(factors, f);
        for (size_t r = 0; r < rows; ++r) {
            matrixA_[r * size_t(width) + size_t(f)] = value;
            matrixB_[r * size_t(width) + size_t(f)] = value;
        }
    }
    point_.assign(size_t(2 * k_ > 0 ? 2 * k_ : 1), 0.0);
    scratch_.assign(size_t(width), 0.0);
    return 1;
}

// Row `row` of A and of B from point row + 1 of 2k coordinates: the first k
// for A, the other k for B, each to the stochastic factors in sampling order.
int SobolSampler::makeBaseRow(int32_t row, int32_t width) {
    if (!generator_.point(row + 1, 2 * k_, point_.data())) return 0;
    double* a = &matrixA_[size_t(row) * size_t(width)];
    double* b = &matrixB_[size_t(row) * size_t(width)];
    for (int f = 0; f < width; ++f) {
        const int32_t c = coordinateOf_[size_t(f)];
        if (c >= 0) {
            a[f] = point_[size_t(c)];
            b[f] = point_[size_t(k_ + c)];
        }
    }
    return 1;
}

void SobolSampler::makeBlockRow(int64_t block, int32_t row, int32_t width) {
    const double* a = &matrixA_[size_t(row) * size_t(width)];
    const double* b = &matrixB_[size_t(row) * size_t(width)];
    double* out = scratch_.data();
    if (designKind_ == 1) {
        // Block 2 + j: B with the j-th stochastic factor (list order) from A;
        // block 2 + k + j: A with it from B. Blocks past 2k + 1 are A.
        const int64_t j = block - 2;
        const bool onB = j < k_;
        const double* base = onB ? b : a;
        std::copy(base, base + width, out);
        const int64_t swapped = onB ? j : j - k_;
        if (swapped < k_) {
            const int f = stochasticIndex_[size_t(swapped)];
            out[f] = onB ? a[f] : b[f];
        }
        return;
    }
    if (row == 0) {
        for (int32_t r = 0; r < orderCount_; ++r) {
            if (block != orderStart_[size_t(r)]) continue;
            // Only the subsets that the sample reaches.
            const int64_t reached = (int64_t(numSamples_) + baseSize_ - 1) / baseSize_ - block;
            int64_t count = 0;
            combos_ = combinations(k_, r + 1, stochasticIndex_.data(), count, reached);
            currentOrder_ = r;
        }
    }
    std::copy(b, b + width, out);
    const int32_t size = currentOrder_ + 1;
    const int64_t subset = block - orderStart_[size_t(currentOrder_)];
    for (int32_t i = 0; i < size; ++i) {
        const int f = combos_[size_t(subset * size + i)];
        out[f] = a[f];
    }
}

float SobolSampler::generate(float targetPercent, sampValues& store, FactorList& factors) {
    const bool first = sampleIndex_ == 0;
    const int open = openGeneration(first, store, factors);
    if (open < 0) return -1.0f;
    if (open == 0) return progress_;
    const int32_t width = numFactors_;
    if (first && !openDesign(factors, width)) return -1.0f;
    numFactors_ = k_;
    while (progress_ < targetPercent && sampleIndex_ < numSamples_) {
        const int64_t block = sampleIndex_ / baseSize_;
        const int32_t row = sampleIndex_ % baseSize_;
        const double* cells = nullptr;
        if (block == 0) {
            if (!makeBaseRow(row, width)) {
                errorText_ = LpTauSampler::failureText(int64_t(sampleIndex_) + 1);
                return -1.0f;
            }
            cells = &matrixA_[size_t(row) * size_t(width)];
        } else if (block == 1) {
            cells = &matrixB_[size_t(row) * size_t(width)];
        } else {
            makeBlockRow(block, row, width);
            cells = scratch_.data();
        }
        if (!store.addRow(cells)) {
            errorText_ = store.errorText();
            return -1.0f;
        }
        ++sampleIndex_;
        progress_ = phasePercent(sampleIndex_, numSamples_, 0.0f, 50.0f);
    }
    return progress_;
}

void SobolSampler::writeItems(std::ostream& out) const {
    out << baseSize_ << '\n' << numSamples_ << '\n' << designKind_ << '\n' << order_ << '\n' << numFactors_ << '\n';
}

void SobolSampler::readItems(std::istream& in) {
    int32_t base = 0, samples = 0, kind = 0, order = 0, factors = 0;
    if (in >> base >> samples >> kind >> order >> factors) {
        baseSize_ = base;
        numSamples_ = samples;
        designKind_ = kind;
        order_ = order;
        numFactors_ = factors;
        return;
    }
    methodName_ = nameOf(methodId_);
    baseSize_ = 0;
    numSamples_ = 0;
    designKind_ = 0;
    order_ = 0;
    numFactors_ = 0;
}

}  // namespace tarvex
