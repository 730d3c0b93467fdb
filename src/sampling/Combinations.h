#pragma once
// Subsets of a fixed size, in lexicographic order of their positions: the
// order in which the Sobol design lays out its blocks and its analysis reads
// them back.
#include <cstdint>
#include <vector>

namespace tarvex {

// C(n, r), exactly, or INT64_MAX for a value past 64 bits; 0 if r is outside
// 0 to n.
int64_t binomial(int32_t n, int32_t r);

// All subsets of size r of the positions 0 .. n - 1, in lexicographic order,
// each as r entries items[position], row after row (count rows of r entries).
// count is C(n, r) (0 if r is above n); at most `limit` rows are made, for a
// caller that needs only the first ones of a large table.
std::vector<int32_t> combinations(int32_t n, int32_t r, const int32_t* items, int64_t& count,
                                  int64_t limit = INT64_MAX);

}  // namespace tarvex
