#include "common/UniformRandom.h"

namespace tarvex {

namespace {

// The generator's arithmetic is 32-bit signed with two's-complement wrap-around:
// with the divisor 53688 the product 40014 * (x mod 53688) can exceed 2^31 - 1,
// and the stream depends on the wrapped value.
inline int32_t wrap(int64_t v) { return static_cast<int32_t>(static_cast<uint32_t>(static_cast<uint64_t>(v))); }

inline int32_t step1(int32_t x) {
    const int32_t k = x / 53688;
    int32_t y = wrap(int64_t{40014} * (x - k * 53688) - int64_t{12211} * k);
    if (y < 0) y = wrap(int64_t{y} + 2147483563);
    return y;
}

inline int32_t step2(int32_t x) {
    const int32_t k = x / 52774;
    int32_t y = wrap(int64_t{40692} * (x - k * 52774) - int64_t{3791} * k);
    if (y < 0) y = wrap(int64_t{y} + 2147483399);
    return y;
}

constexpr int32_t kTableSize = 32;
constexpr int32_t kTableDivisor = 67108862;  // 1 + 2147483562 / 32
constexpr double kScale = 4.656613057391769e-10;  // nearest double to 1 / 2147483563
constexpr float kTop = 0.99999988f;  // largest result, single precision on purpose

// Shared by every caller (see the header).
int32_t state2 = 123456789;
int32_t shuffle[kTableSize] = {};
int32_t last = 0;

}  // namespace

double uniformRandom(int32_t* state) {
    int32_t s = *state;
    if (s <= 0) {
        s = wrap(-int64_t{s});
        if (s < 1) s = 1;
        state2 = s;
        for (int32_t j = kTableSize + 7; j >= 0; --j) {
            s = step1(s);
            if (j < kTableSize) shuffle[j] = s;
        }
        last = shuffle[0];
    }
    s = step1(s);
    state2 = step2(state2);
    int32_t j = last / kTableDivisor;
    // A wrapped table entry can push `last` to the very top of the 32-bit
    // range, one past the table; stay inside it.
    if (j >= kTableSize) j = kTableSize - 1;
    if (j < 0) j = 0;
    last = wrap(int64_t{shuffle[j]} - state2);
    shuffle[j] = s;
    if (last < 1) last = wrap(int64_t{last} + 2147483562);
    *state = s;
    const double t = last * kScale;
    if (t > static_cast<double>(kTop)) return static_cast<double>(kTop);
    return t;
}

}  // namespace tarvex
