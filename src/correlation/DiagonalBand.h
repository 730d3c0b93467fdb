#pragma once
// Diagonal band distribution on the unit square (Cooke and Waij, "Monte Carlo
// sampling for generalized knowledge dependence", Reliability Engineering 13,
// 1986): a child's uniform value drawn conditionally on its parent's, so that a
// dependence tree can be sampled row by row without a correlation matrix.
//
// The band parameter a in [0, 1] is found from the wanted correlation |rho| by
// bisection on a + a^2 - a^3 = |rho|; the sign of rho chooses the diagonal.
#include <cstdint>

namespace tarvex {

class DiagonalBand {
public:
    DiagonalBand() = default;

    // A rho outside [-1, 1] (or NaN) leaves rho and band at 0: independent values.
    void setCorrelation(double rho);
    // The child's uniform value for the parent's uniform value u. One draw of
    // the generator always comes first, whatever the branch, so that the stream
    // of draws never depends on the data.
    double sampleConditional(double u);
    // The same for each element of `values`, in place.
    void sampleConditional(double* values, int32_t count);

    double rho() const { return rho_; }
    double band() const { return band_; }

    int32_t seed = -5648423;

private:
    // Bisection for x in [lo, hi] with (x - lo) * density = target, to within
    // 0.001 of probability: a coarse tolerance, but the samples depend on it.
    static double solve(double lo, double hi, double target, double density);

    double rho_ = 0.0;
    double band_ = 0.0;
};

}  // namespace tarvex
