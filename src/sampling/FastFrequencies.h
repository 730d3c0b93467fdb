#pragma once
// Frequencies of the search curves of the Fourier Amplitude Sensitivity Test.
//
// Classic test (first order effects): one frequency per stochastic factor,
// taken from the sets free of interference up to the fourth order published
// with the method (Cukier, Schaibly and Shuler, J. Chem. Phys. 63, 1975;
// McRae, Tilden and Seinfeld, Comput. Chem. Eng. 6, 1982). The set of k
// factors is OMEGA[k], then each next one adds DELTA[k - j], for k from 3 to
// 50; two factors take 5 and 9.
//
// Extended test (first and total order effects, Saltelli, Tarantola and Chan,
// Technometrics 41, 1999): the factor or group of a block runs at omegaMax,
// every other factor at a complementary frequency no higher than omegaMax / 8,
// so that none of them meets the main frequency's harmonics up to the fourth.
#include <cstdint>
#include <vector>

namespace tarvex {

inline constexpr int32_t kFastMaxClassicFactors = 50;

// Base frequency of a set of k factors, by k from 3 to 50 (0 to 2 unused).
extern const int32_t OMEGA[kFastMaxClassicFactors + 1];
// Steps between the frequencies of a set, from 0 to 48.
extern const int32_t DELTA[kFastMaxClassicFactors - 1];

// The classic frequencies of k stochastic factors, in list order; empty for
// k outside 2 to 50, where no set is defined.
std::vector<int32_t> classicFrequencies(int32_t k);

// The highest frequency as the sample-size check counts it: 9 for k = 2,
// OMEGA[k] + DELTA[0] + ... + DELTA[k - 2] above. For k = 3 this is 13
// although that set reaches 15; users' sample sizes were checked this way,
// so it stays. 0 for k outside 2 to 50.
int32_t classicCheckFrequency(int32_t k);

// The complementary frequencies of a block whose main frequency is
// omegaMax, with `members` factors at that frequency among k stochastic
// ones: d = min(omegaMax / 8, k - members) values 1, 1 + step, 1 + 2 step,
// ..., step = (m - 1) / (d - 1) with m = omegaMax / 8. With a single value
// the step is 0 (there is nothing to spread). At least one value, 1, so that
// factors beyond the count always get a frequency.
std::vector<int32_t> complementaryFrequencies(int32_t omegaMax, int32_t members, int32_t k);

}  // namespace tarvex
