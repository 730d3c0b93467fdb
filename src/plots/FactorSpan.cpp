#include "plots/FactorSpan.h"

#include <cmath>

#include "factors/Beta.h"
#include "factors/Constant.h"
#include "factors/Discrete.h"
#include "factors/Triangular.h"
#include "factors/TruncatedDistribution.h"
#include "factors/Uniform.h"

namespace tarvex {

namespace {

// The x at which `cumulative` first exceeds p, to the last bit.
template <class Cumulative>
int quantile(const Cumulative& cumulative, double p, double centre, double scale, double& x) {
    if (!std::isfinite(centre)) centre = 0.0;
    if (!(scale > 0.0) || !std::isfinite(scale)) scale = std::fabs(centre) + 1.0;
    auto above = [&](double v) { return cumulative(v) > p; };
    // Bracket: lo below the crossing, hi above it, widening by doublings.
    double down = scale, up = scale;
    while (above(centre - down)) {
        down *= 2.0;
        if (!std::isfinite(centre - down)) return 0;
    }
    while (!above(centre + up)) {
        up *= 2.0;
        if (!std::isfinite(centre + up)) return 0;
    }
    double lo = centre - down, hi = centre + up;
    for (int i = 0; i < 2100; ++i) {
        const double mid = lo / 2 + hi / 2;
        if (!(mid > lo && mid < hi)) break;
        (above(mid) ? hi : lo) = mid;
    }
    x = hi;
    return 1;
}

}  // namespace

int FactorSpan::find(const Factor& factor, double& low, double& high) {
    double lo = NAN, hi = NAN;
    if (auto* c = dynamic_cast<const Constant*>(&factor)) {
        lo = hi = c->value;
    } else if (auto* d = dynamic_cast<const Discrete*>(&factor)) {
        if (d->count() == 0) return 0;
        lo = hi = d->intervalAt(0)->left;
        for (int i = 1; i < d->count(); ++i) {
            lo = std::fmin(lo, d->intervalAt(i)->left);
            hi = std::fmax(hi, d->intervalAt(i)->left);
        }
    } else if (auto* u = dynamic_cast<const Uniform*>(&factor)) {
        if (u->count() == 0) return 0;
        lo = u->intervalAt(0)->left;
        hi = u->intervalAt(u->count() - 1)->right;
    } else if (auto* b = dynamic_cast<const Beta*>(&factor)) {
        lo = b->getLower();
        hi = b->getUpper();
    } else if (auto* t = dynamic_cast<const Triangular*>(&factor)) {
        lo = t->getAlfa();
        hi = t->getGamma();
    } else if (auto* dist = dynamic_cast<const Distribution*>(&factor)) {
        double left = 0.001, right = 0.999;
        if (auto* tr = dynamic_cast<const TruncatedDistribution*>(&factor)) {
            left = tr->getLeftTruncation();
            right = tr->getRightTruncation();
        }
        auto cdf = [dist](double x) { return dist->cumulative(x); };
        if (!quantile(cdf, left, dist->mean(), dist->stdDev(), lo)) return 0;
        if (!quantile(cdf, right, dist->mean(), dist->stdDev(), hi)) return 0;
    } else {
        return 0;
    }
    if (!std::isfinite(lo) || !std::isfinite(hi) || lo > hi) return 0;
    low = lo;
    high = hi;
    return 1;
}

}  // namespace tarvex
