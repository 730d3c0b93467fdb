#pragma once
// Lower and upper tail of the standard normal law at z: W. J. Cody's rational
// Chebyshev approximations (ACM Algorithm 715), relative accuracy near the
// last digit in both tails down to the smallest normal double.
//
// Inline, because searches for a normal inverse call it a dozen times per
// value and gain from having it in their loop; every caller gets the same
// arithmetic, so the same bits.
#include <cfloat>
#include <cmath>

namespace tarvex {

namespace normal_tails {

// Coefficients of Cody's approximations: |z| <= 0.66291,
// 0.66291 < |z| <= sqrt(32), and beyond.
constexpr double kA[5] = {2.2352520354606839287e00, 1.6102823106855587881e02, 1.0676894854603709582e03,
                          1.8154981253343561249e04, 6.5682337918207449113e-2};
constexpr double kB[4] = {4.7202581904688241870e01, 9.7609855173777669322e02, 1.0260932208618978205e04,
                          4.5507789335026729956e04};
constexpr double kC[9] = {3.9894151208813466764e-1, 8.8831497943883759412e00, 9.3506656132177855979e01,
                          5.9727027639480026226e02, 2.4945375852903726711e03, 6.8481904505362823326e03,
                          1.1602651437647350124e04, 9.8427148383839780218e03, 1.0765576773720192317e-8};
constexpr double kD[8] = {2.2266688044328115691e01, 2.3538790178262499861e02, 1.5193775994075548050e03,
                          6.4855582982667607550e03, 1.8615571640885098091e04, 3.4900952721145977266e04,
                          3.8912003286093271411e04, 1.9685429676859990727e04};
constexpr double kP[6] = {2.1589853405795699e-1, 1.274011611602473639e-1, 2.2235277870649807e-2,
                          1.421619193227893466e-3, 2.9112874951168792e-5, 2.307344176494017303e-2};
constexpr double kQ[5] = {1.28426009614491121e00, 4.68238212480865118e-1, 6.59881378689285515e-2,
                          3.78239633202758244e-3, 7.29751555083966205e-5};
constexpr double kOneOverSqrt2Pi = 3.9894228040143267794e-1;
constexpr double kThreshold = 0.66291;
constexpr double kRoot32 = 5.656854248;

// exp(-y*y/2) without the rounding error of squaring a large y: y is split into
// a multiple of 1/16, whose square is exact, and a small remainder.
inline double gaussFactor(double y) {
    const double high = std::trunc(y * 16.0) / 16.0;
    const double del = (y - high) * (y + high);
    return std::exp(-high * high * 0.5) * std::exp(-del * 0.5);
}

} // namespace normal_tails

inline void normalTails(double z, double& lower, double& upper) {
    using namespace normal_tails;
    const double y = std::fabs(z);
    if (y <= kThreshold) {
        const double zsq = y > DBL_EPSILON * 0.5 ? z * z : 0.0;
        double num = kA[4] * zsq;
        double den = zsq;
        for (int i = 0; i < 3; ++i) {
            num = (num + kA[i]) * zsq;
            den = (den + kB[i]) * zsq;
        }
        const double t = z * (num + kA[3]) / (den + kB[3]);
        lower = 0.5 + t;
        upper = 0.5 - t;
        return;
    }
    double tail;  // the tail beyond |z|
    if (y <= kRoot32) {
        double num = kC[8] * y;
        double den = y;
        for (int i = 0; i < 7; ++i) {
            num = (num + kC[i]) * y;
            den = (den + kD[i]) * y;
        }
        tail = gaussFactor(y) * ((num + kC[7]) / (den + kD[7]));
    } else if (std::isinf(y)) {
        tail = 0.0;
    } else {
        const double r = 1.0 / (z * z);
        double num = kP[5] * r;
        double den = r;
        for (int i = 0; i < 4; ++i) {
            num = (num + kP[i]) * r;
            den = (den + kQ[i]) * r;
        }
        const double s = r * (num + kP[4]) / (den + kQ[4]);
        tail = gaussFactor(y) * ((kOneOverSqrt2Pi - s) / y);
    }
    double other = 1.0 - tail;
    if (tail < DBL_MIN) tail = 0.0;
    if (other < DBL_MIN) other = 0.0;
    if (z > 0.0) {
        lower = other;
        upper = tail;
    } else {
        lower = tail;
        upper = other;
    }
}

} // namespace tarvex
