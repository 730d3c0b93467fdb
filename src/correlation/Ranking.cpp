#include "correlation/Ranking.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace tarvex {

void sortAscending(double* values, int64_t count) {
    // Latin hypercube columns arrive in stratum order: one linear check
    // spares the sort.
    if (count > 1 && !std::is_sorted(values, values + count)) std::sort(values, values + count);
}

namespace {

// A double mapped to an unsigned key with the same order (negative values
// reversed, the sign bit flipped).
inline uint64_t orderKey(double x) {
    // -0.0 and 0.0 compare equal: one key for both.
    if (x == 0.0) x = 0.0;
    uint64_t bits;
    std::memcpy(&bits, &x, sizeof bits);
    return (bits & 0x8000000000000000ULL) ? ~bits : (bits | 0x8000000000000000ULL);
}

struct Keyed {
    uint64_t key;
    int32_t row;
};

}  // namespace

void rankPositions(const double* values, int32_t count, int32_t* ranks) {
    if (count <= 0) return;
    if (count < 4096) {
        // Small columns: a stable comparison sort beats four passes over a
        // 64K-entry histogram.
        std::vector<int32_t> rows(static_cast<size_t>(count));
        for (int32_t i = 0; i < count; ++i) rows[size_t(i)] = i;
        std::stable_sort(rows.begin(), rows.end(),
                         [&](int32_t x, int32_t y) { return orderKey(values[x]) < orderKey(values[y]); });
        for (int32_t p = 0; p < count; ++p) ranks[rows[size_t(p)]] = p;
        return;
    }
    // LSD radix sort on 11-bit digits: six stable passes, so equal keys stay
    // in row order; the 2048-entry histogram keeps the scatter in cache.
    // Passes whose digit is the same for every key are skipped.
    std::vector<Keyed> a(static_cast<size_t>(count)), b(static_cast<size_t>(count));
    for (int32_t i = 0; i < count; ++i) a[size_t(i)] = Keyed{orderKey(values[i]), i};
    constexpr int kBits = 11;
    constexpr uint64_t kMask = (1u << kBits) - 1;
    std::vector<uint32_t> histogram(size_t(1) << kBits);
    for (int shift = 0; shift < 64; shift += kBits) {
        std::fill(histogram.begin(), histogram.end(), 0u);
        for (const Keyed& k : a) ++histogram[(k.key >> shift) & kMask];
        if (histogram[(a[0].key >> shift) & kMask] == uint32_t(count)) continue;
        uint32_t sum = 0;
        for (uint32_t& h : histogram) {
            const uint32_t c = h;
            h = sum;
            sum += c;
        }
        for (const Keyed& k : a) b[histogram[(k.key >> shift) & kMask]++] = k;
        a.swap(b);
    }
    for (int32_t p = 0; p < count; ++p) ranks[a[size_t(p)].row] = p;
}

}  // namespace tarvex
