#pragma once
// The system's one pseudo-random generator.
#include <cstdint>
#include <utility>

namespace tarvex {

// Returns a double in (0, 1) and advances the caller's state word.
//
// Two multiplicative congruential streams combined through a 32-entry
// Bays-Durham shuffle table (L'Ecuyer, "Efficient and portable combined random
// number generators", CACM 31, 1988). The first stream uses the divisor 53688
// instead of the published 53668, so its values are not the textbook ones:
// every stored sample depends on that stream, so it stays.
//
// Only the first stream's word belongs to the caller. The second stream's word,
// the shuffle table and the last output are shared by all callers, so a caller
// that (re)starts with a state word of 0 or below reseeds the shared part and
// disturbs every other stream in flight: streams reproduce only in the order
// in which they were drawn.
double uniformRandom(int32_t* state);

// One exchange step of the column permutations: two entries of values[0, n),
// each picked by one draw (a product that rounds up to n picks the last),
// trade places.
template <class T>
void randomExchange(T* values, int32_t n, int32_t* state) {
    int32_t a = int32_t(uniformRandom(state) * n);
    if (a == n) a = n - 1;
    int32_t b = int32_t(uniformRandom(state) * n);
    if (b == n) b = n - 1;
    std::swap(values[a], values[b]);
}

}  // namespace tarvex
