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

} // namespace

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
