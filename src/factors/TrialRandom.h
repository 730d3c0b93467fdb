#pragma once
// Throw-away test values for checking expressions before they are accepted.
// A generator of its own, separate from the sampling generator, so that
// checking an expression never disturbs a sample's random sequence.

namespace tarvex {

// Next value in (0, 1): word = word * 65539 with 32-bit wrap-around, negated
// when negative, times 4.656613e-10 in single precision. The word starts at
// 5648423 and lives as long as the program.
double trialRandom();

// Puts the word back to its starting value (for tests and repeatable checks).
void resetTrialRandom();

} // namespace tarvex
