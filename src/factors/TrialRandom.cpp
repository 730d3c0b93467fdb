#include "factors/TrialRandom.h"

#include <cstdint>

namespace tarvex {

namespace {
constexpr int32_t kTrialSeed = 5648423;
int32_t trialWord = kTrialSeed;
} // namespace

double trialRandom() {
    trialWord = static_cast<int32_t>(static_cast<uint32_t>(trialWord) * 65539u);
    if (trialWord < 0) trialWord = static_cast<int32_t>(0u - static_cast<uint32_t>(trialWord));
    // The product is formed in float, as the constant is a float.
    const float scaled = static_cast<float>(trialWord) * 4.656613e-10f;
    return static_cast<double>(scaled);
}

void resetTrialRandom() { trialWord = kTrialSeed; }

} // namespace tarvex
