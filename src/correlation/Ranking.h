#pragma once
// Sorting and ranking of sample columns in O(N log N).
//
// Columns arrive here already sorted or nearly so (a Latin hypercube column
// stands in stratum order), which would make a first-element-pivot quicksort
// quadratic; these routines do not depend on the input order.
#include <cstdint>

namespace tarvex {

// Sorts values ascending. Only the values matter to the callers, so the order
// among equal values is of no consequence.
void sortAscending(double* values, int64_t count);

// ranks[i] = place of values[i] in the ascending order, from 0 to count - 1.
// Equal values take their places in row order, so the ranks are a
// permutation and the same input always gives the same ranks.
void rankPositions(const double* values, int32_t count, int32_t* ranks);

}  // namespace tarvex
