#include "sampling/Combinations.h"

#include <cstddef>

namespace tarvex {

int64_t binomial(int32_t n, int32_t r) {
    if (r < 0 || n < 0 || r > n) return 0;
    if (r > n - r) r = n - r;
    // c stays C(n - r + i, i): the product of a binomial and the next factor
    // divides exactly by i, and 128 bits hold it.
    int64_t c = 1;
    for (int32_t i = 1; i <= r; ++i) {
        const unsigned __int128 next = (unsigned __int128)(c) * unsigned(n - r + i) / unsigned(i);
        if (next > (unsigned __int128)(INT64_MAX)) return INT64_MAX;
        c = int64_t(next);
    }
    return c;
}

std::vector<int32_t> combinations(int32_t n, int32_t r, const int32_t* items, int64_t& count, int64_t limit) {
    count = binomial(n, r);
    std::vector<int32_t> table;
    if (count == 0 || r == 0) return table;
    std::vector<int32_t> at(static_cast<std::size_t>(r));
    for (int32_t i = 0; i < r; ++i) at[std::size_t(i)] = i;
    for (int64_t made = 0; made < count && made < limit; ++made) {
        for (int32_t i = 0; i < r; ++i) table.push_back(items[at[std::size_t(i)]]);
        // Next subset: raise the last position that can still rise, and put
        // the ones after it right behind it.
        int32_t i = r - 1;
        while (i >= 0 && at[std::size_t(i)] == n - r + i) --i;
        if (i < 0) break;
        ++at[std::size_t(i)];
        for (int32_t j = i + 1; j < r; ++j) at[std::size_t(j)] = at[std::size_t(j - 1)] + 1;
    }
    return table;
}

}  // namespace tarvex
