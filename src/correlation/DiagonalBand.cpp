#include "correlation/DiagonalBand.h"

#include <cmath>

#include "common/UniformRandom.h"

namespace tarvex {

namespace {
// Bisection passes never needed in double arithmetic (the interval is empty
// long before); they only guard against a target that rounding put out of reach.
constexpr int kMaxPasses = 200;
}  // namespace

void DiagonalBand::setCorrelation(double rho) {
    if (!(rho >= -1.0 && rho <= 1.0)) {
        rho_ = 0.0;
        band_ = 0.0;
        return;
    }
    const double r = std::fabs(rho);
    double lo = 0.0, hi = 1.0, a = 0.5;
    for (int pass = 0; pass < kMaxPasses; ++pass) {
        a = (lo + hi) / 2.0;
        const double g = a - a * a * a + a * a;
        if (g > r)
            hi = a;
        else
            lo = a;
        if (std::fabs(g - r) <= 1e-5) break;
    }
    rho_ = rho;
    band_ = a;
}

double DiagonalBand::solve(double lo, double hi, double target, double density) {
    const double start = lo;
    double x = (lo + hi) / 2.0;
    for (int pass = 0; pass < kMaxPasses; ++pass) {
        x = (lo + hi) / 2.0;
        const double v = x * density - start * density;
        if (target < v)
            hi = x;
        else
            lo = x;
        if (std::fabs(v - target) <= 0.001) break;
    }
    return x;
}

double DiagonalBand::sampleConditional(double u) {
    const double t = uniformRandom(&seed);
    if (rho_ == 1.0) return u;
    if (rho_ == -1.0) return 1.0 - u;
    if (rho_ == 0.0) return t;

    const double a = band_;
    const double w = 1.0 - a;
    double m = 0.0;
    if (rho_ > 0.0) {
        if (u < w) {
            m = (w - u) / w;
            if (t <= m) return solve(0.0, w - u, t, 1.0 / w);
        }
        if (u > 0.0 && u < 1.0) {
            const double lo = std::fabs(w - u);
            const double hi = u <= a ? w + u : (a - u) + 1.0;
            const double mass = hi / (2.0 * w) - lo / (2.0 * w) + m;
            if (t <= mass) return solve(lo, hi, t - m, 1.0 / (2.0 * w));
            m = mass;
        }
        return solve((a - u) + 1.0, 1.0, t - m, 1.0 / w);
    }
    if (u > a) {
        m = (u - a) / w;
        if (t <= m) return solve(0.0, u - a, t, 1.0 / w);
    }
    if (u > 0.0 && u < 1.0) {
        const double lo = std::fabs(u - a);
        const double hi = u < w ? u + a : (w - u) + 1.0;
        const double mass = hi / (2.0 * w) - lo / (2.0 * w) + m;
        if (t <= mass) return solve(lo, hi, t - m, 1.0 / (2.0 * w));
        m = mass;
    }
    return solve(u + a, 1.0, t - m, 1.0 / w);
}

void DiagonalBand::sampleConditional(double* values, int32_t count) {
    for (int32_t i = 0; i < count; ++i) values[i] = sampleConditional(values[i]);
}

}  // namespace tarvex
