#include "postproc/SmirnovStatistic.h"

#include <algorithm>
#include <cmath>

namespace tarvex {

SmirnovStatistic::SmirnovStatistic(int32_t runs)
    : runs_(std::max(runs, 0)), threshold_(static_cast<int32_t>(std::trunc(0.9 * static_cast<double>(runs_)))) {
    high_.reserve(static_cast<std::size_t>(runs_));
    low_.reserve(static_cast<std::size_t>(runs_));
    byRank_.assign(static_cast<std::size_t>(runs_), -1);
}

double SmirnovStatistic::distance(const int32_t* factorRanks, const int32_t* outputRanks) {
    high_.clear();
    low_.clear();
    // Rank tables hold every rank once: placing each run by its factor rank
    // gives both subsets in ascending order without a sort.
    std::fill(byRank_.begin(), byRank_.end(), int8_t{-1});
    bool permutation = true;
    for (int32_t r = 0; r < runs_ && permutation; ++r) {
        const int32_t rank = factorRanks[r];
        if (rank < 1 || rank > runs_ || byRank_[static_cast<std::size_t>(rank - 1)] >= 0) {
            permutation = false;
            break;
        }
        byRank_[static_cast<std::size_t>(rank - 1)] = outputRanks[r] > threshold_ ? 1 : 0;
    }
    if (permutation) {
        for (int32_t q = 0; q < runs_; ++q) (byRank_[static_cast<std::size_t>(q)] ? high_ : low_).push_back(q + 1);
    } else {
        // Not a rank column: split in run order and sort.
        for (int32_t r = 0; r < runs_; ++r) (outputRanks[r] > threshold_ ? high_ : low_).push_back(factorRanks[r]);
        std::sort(high_.begin(), high_.end());
        std::sort(low_.begin(), low_.end());
    }
    return walk(high_.data(), static_cast<int32_t>(high_.size()), low_.data(), static_cast<int32_t>(low_.size()));
}

double SmirnovStatistic::walk(const int32_t* high, int32_t highCount, const int32_t* low, int32_t lowCount) {
    if (highCount <= 0 || lowCount <= 0) return -1.0;
    const double nH = static_cast<double>(highCount);
    const double nL = static_cast<double>(lowCount);
    double result = 0.0;
    int32_t h = 1, l = 1;  // 1-based heads
    for (int64_t step = 0; step < int64_t{highCount} + lowCount; ++step) {
        double d;
        if (h > highCount || (l <= lowCount && low[l - 1] <= high[h - 1])) {
            d = std::fabs(static_cast<double>(h - 1) / nH - static_cast<double>(l) / nL);
            ++l;
        } else {
            d = std::fabs(static_cast<double>(h) / nH - static_cast<double>(l - 1) / nL);
            ++h;
        }
        if (d > result) result = d;
    }
    return result;
}

}  // namespace tarvex
