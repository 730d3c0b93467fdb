#include "factors/NumericLibrary.h"

#include <cfloat>
#include <cmath>
#include <limits>

#include <boost/math/special_functions/beta.hpp>
#include <boost/math/special_functions/gamma.hpp>

namespace tarvex {

namespace {

// Errors are reported through the return value (NaN, 0, infinity) rather than
// by exceptions; the arithmetic stays in double, which is accurate enough and
// several times faster than the default promotion to long double.
using Policy = boost::math::policies::policy<
    boost::math::policies::domain_error<boost::math::policies::errno_on_error>,
    boost::math::policies::pole_error<boost::math::policies::errno_on_error>,
    boost::math::policies::overflow_error<boost::math::policies::errno_on_error>,
    boost::math::policies::underflow_error<boost::math::policies::ignore_error>,
    boost::math::policies::evaluation_error<boost::math::policies::errno_on_error>,
    boost::math::policies::promote_double<false>>;

// Shared check of the selector; returns 1 when the forward mode was asked for.
int checkWhich(int which, int& status, double& bound) {
    if (which == 1) return 1;
    status = -1;
    bound = which < 1 ? 1.0 : 4.0;
    return 0;
}

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
double gaussFactor(double y) {
    const double high = std::trunc(y * 16.0) / 16.0;
    const double del = (y - high) * (y + high);
    return std::exp(-high * high * 0.5) * std::exp(-del * 0.5);
}

} // namespace

void normalTails(double z, double& lower, double& upper) {
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

void cdfNormal(int& which, double& p, double& q, double& x, double& mean, double& sd,
               int& status, double& bound) {
    if (!checkWhich(which, status, bound)) return;
    if (!(sd > 0.0)) {
        status = -6;
        bound = 0.0;
        return;
    }
    normalTails((x - mean) / sd, p, q);
    status = 0;
}

void cdfGamma(int& which, double& p, double& q, double& x, double& shape, double& scale,
              int& status, double& bound) {
    if (!checkWhich(which, status, bound)) return;
    if (!(x >= 0.0)) {
        status = -4;
        bound = 0.0;
        return;
    }
    if (!(shape > 0.0)) {
        status = -5;
        bound = 0.0;
        return;
    }
    if (!(scale > 0.0)) {
        status = -6;
        bound = 0.0;
        return;
    }
    status = 0;
    const double z = x * scale;
    if (z <= 0.0) {
        p = 0.0;
        q = 1.0;
        return;
    }
    if (std::isinf(z)) {
        p = 1.0;
        q = 0.0;
        return;
    }
    // Only the smaller tail needs its own evaluation: the other one is its
    // complement, exact to the last digit once it lies above one half.
    if (z < shape) {
        p = boost::math::gamma_p(shape, z, Policy());
        if (p <= 0.5) {
            q = 1.0 - p;
            return;
        }
    }
    q = boost::math::gamma_q(shape, z, Policy());
    if (q <= 0.5) {
        p = 1.0 - q;
    } else {
        p = boost::math::gamma_p(shape, z, Policy());
    }
}

void cdfBeta(int& which, double& p, double& q, double& x, double& y, double& a, double& b,
             int& status, double& bound) {
    if (!checkWhich(which, status, bound)) return;
    if (!(x >= 0.0 && x <= 1.0)) {
        status = -4;
        bound = x < 0.0 ? 0.0 : 1.0;
        return;
    }
    if (!(y >= 0.0 && y <= 1.0)) {
        status = -5;
        bound = y < 0.0 ? 0.0 : 1.0;
        return;
    }
    if (!(a > 0.0)) {
        status = -6;
        bound = 0.0;
        return;
    }
    if (!(b > 0.0)) {
        status = -7;
        bound = 0.0;
        return;
    }
    const double sum = x + y;
    if (std::fabs(sum - 1.0) > 3.0 * std::numeric_limits<double>::epsilon()) {
        status = 4;
        bound = sum < 1.0 ? 0.0 : 1.0;
        return;
    }
    status = 0;
    if (x <= 0.0) {
        p = 0.0;
        q = 1.0;
        return;
    }
    if (y <= 0.0) {
        p = 1.0;
        q = 0.0;
        return;
    }
    // The smaller tail is evaluated, the other taken as its complement, which
    // is exact to the last digit above one half. The upper tail comes from y
    // through I_x(a, b) = 1 - I_y(b, a), so that x near 1 loses nothing.
    if (x * (a + b) < a) {
        p = boost::math::ibeta(a, b, x, Policy());
        if (p <= 0.5) {
            q = 1.0 - p;
            return;
        }
    }
    q = boost::math::ibeta(b, a, y, Policy());
    if (q <= 0.5) {
        p = 1.0 - q;
    } else {
        p = boost::math::ibeta(a, b, x, Policy());
    }
}

double lnGamma(double a) {
    return boost::math::lgamma(a, Policy());
}

double lnGamma(const double* a) {
    return lnGamma(*a);
}

double lnBeta(double a, double b) {
    const double bySums = boost::math::lgamma(a, Policy()) + boost::math::lgamma(b, Policy()) -
                          boost::math::lgamma(a + b, Policy());
    // Where B(a, b) is a normal double, its logarithm is accurate to the last
    // digit; the sum of logarithms cancels badly there (a + b near 1 or 2).
    if (bySums > -700.0 && bySums < 700.0) return std::log(boost::math::beta(a, b, Policy()));
    return bySums;
}

double lnBeta(const double* a, const double* b) {
    return lnBeta(*a, *b);
}

} // namespace tarvex
