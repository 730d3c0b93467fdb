#include "sampling/FastFrequencies.h"

#include <algorithm>

namespace tarvex {

const int32_t OMEGA[kFastMaxClassicFactors + 1] = {
    0,   0,   0,   1,   5,   11,  1,   17,  23,   19,   25,   41,   31,   23,   87,   67,   73,
    85,  143, 149, 99,  119, 237, 267, 283, 151,  385,  157,  215,  449,  163,  337,  253,  375,
    441, 673, 773, 875, 873, 587, 849, 623, 637,  891,  943,  1171, 1225, 1335, 1725, 1663, 2019,
};

const int32_t DELTA[kFastMaxClassicFactors - 1] = {
    4,   8,   6,   10,  20,  22,  32,  40,  38,  26,  56,  62,  46,  76,  96,  60,  86,
    126, 134, 112, 92,  128, 154, 196, 34,  416, 106, 208, 328, 198, 382, 88,  348, 186,
    140, 170, 284, 568, 302, 438, 410, 248, 448, 388, 596, 216, 100, 488, 166,
};

std::vector<int32_t> classicFrequencies(int32_t k) {
    if (k < 2 || k > kFastMaxClassicFactors) return {};
    if (k == 2) return {5, 9};
    if (k == 3) return {1, 9, 15};
    std::vector<int32_t> set(static_cast<size_t>(k));
    set[0] = OMEGA[k];
    for (int32_t j = 2; j <= k; ++j) set[size_t(j - 1)] = set[size_t(j - 2)] + DELTA[k - j];
    return set;
}

int32_t classicCheckFrequency(int32_t k) {
    if (k < 2 || k > kFastMaxClassicFactors) return 0;
    if (k == 2) return 9;
    int32_t highest = OMEGA[k];
    for (int32_t i = 0; i <= k - 2; ++i) highest += DELTA[i];
    return highest;
}

std::vector<int32_t> complementaryFrequencies(int32_t omegaMax, int32_t members, int32_t k) {
    const int32_t m = omegaMax / 8;
    // No other factor (or names of no stochastic factor among the members):
    // a single value keeps the assignment defined.
    const int32_t d = std::max(std::min(m, k - members), int32_t(1));
    const int32_t step = m > 1 && d > 1 ? (m - 1) / (d - 1) : 0;
    std::vector<int32_t> set(static_cast<size_t>(d));
    for (int32_t j = 0; j < d; ++j) set[size_t(j)] = 1 + j * step;
    return set;
}

}  // namespace tarvex
