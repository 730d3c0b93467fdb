#include "correlation/Ranking.h"

#include "common/ParallelFor.h"

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

}  // namespace

void rankPositions(const double* values, int32_t count, int32_t* ranks) {
    if (count <= 0) return;
    if (count < 4096) {
        // Small columns: a stable comparison sort beats six passes over a
        // histogram.
        std::vector<int32_t> rows(static_cast<size_t>(count));
        for (int32_t i = 0; i < count; ++i) rows[size_t(i)] = i;
        std::stable_sort(rows.begin(), rows.end(),
                         [&](int32_t x, int32_t y) { return orderKey(values[x]) < orderKey(values[y]); });
        for (int32_t p = 0; p < count; ++p) ranks[rows[size_t(p)]] = p;
        return;
    }
    // LSD radix sort on 11-bit digits: six stable passes, so equal keys stay
    // in row order; the 2048-entry histograms keep the scatter in cache.
    // Passes whose digit is the same for every key are skipped. Keys and rows
    // sit in separate arrays: 24 bytes a row with the second buffer.
    //
    // Each pass counts and scatters a fixed number of contiguous slices, each
    // slice writing after the earlier slices' keys of the same digit: the
    // result is that of one sequential pass, and the slices can run on
    // several processors.
    const size_t n = static_cast<size_t>(count);
    std::vector<uint64_t> keys(n), keysOut(n);
    std::vector<int32_t> rows(n), rowsOut(n);
    for (size_t i = 0; i < n; ++i) {
        keys[i] = orderKey(values[i]);
        rows[i] = int32_t(i);
    }
    constexpr int kBits = 11;
    constexpr size_t kDigits = size_t(1) << kBits;
    constexpr uint64_t kMask = kDigits - 1;
    constexpr int64_t kSlices = 8;
    const size_t slice = (n + kSlices - 1) / kSlices;
    std::vector<uint32_t> histograms(size_t(kSlices) * kDigits);
    for (int shift = 0; shift < 64; shift += kBits) {
        parallelFor(kSlices, 1, [&](int64_t first, int64_t last) {
            for (int64_t t = first; t < last; ++t) {
                uint32_t* h = histograms.data() + size_t(t) * kDigits;
                std::fill(h, h + kDigits, 0u);
                const size_t end = std::min(n, size_t(t + 1) * slice);
                for (size_t i = size_t(t) * slice; i < end; ++i) ++h[(keys[i] >> shift) & kMask];
            }
        });
        const size_t common = (keys[0] >> shift) & kMask;
        uint32_t sameDigit = 0;
        for (int64_t t = 0; t < kSlices; ++t) sameDigit += histograms[size_t(t) * kDigits + common];
        if (sameDigit == uint32_t(count)) continue;
        uint32_t sum = 0;
        for (size_t d = 0; d < kDigits; ++d)
            for (int64_t t = 0; t < kSlices; ++t) {
                uint32_t& h = histograms[size_t(t) * kDigits + d];
                const uint32_t c = h;
                h = sum;
                sum += c;
            }
        parallelFor(kSlices, 1, [&](int64_t first, int64_t last) {
            for (int64_t t = first; t < last; ++t) {
                uint32_t* h = histograms.data() + size_t(t) * kDigits;
                const size_t end = std::min(n, size_t(t + 1) * slice);
                for (size_t i = size_t(t) * slice; i < end; ++i) {
                    const uint32_t to = h[(keys[i] >> shift) & kMask]++;
                    keysOut[to] = keys[i];
                    rowsOut[to] = rows[i];
                }
            }
        });
        keys.swap(keysOut);
        rows.swap(rowsOut);
    }
    for (int32_t p = 0; p < count; ++p) ranks[rows[size_t(p)]] = p;
}

}  // namespace tarvex
