#include "factors/Distribution.h"

#include <cmath>

namespace tarvex {

namespace {

// Every search loop of the table build is bounded the same way: a counter
// from 0, tested after each pass, ends the build when it has passed 1000.
constexpr int kMaxCount = 1000;
constexpr double kTailProbability = 1e-11;

} // namespace

int Distribution::prepareInverse() {
    const double mu = mean();
    const double sd = stdDev();

    // 1. Bracket the bulk of the distribution in whole standard deviations.
    double lo = mu - sd;
    for (int count = 0; cumulative(lo) > kTailProbability;) {
        lo -= sd;
        if (count++ > kMaxCount) return 0;
    }
    double hi = mu + sd;
    for (int count = 0; cumulative(hi) < 0.99999999999;) {
        hi += sd;
        if (count++ > kMaxCount) return 0;
    }

    // 2. Lower end: walk down until the cumulative is negligible, backing up
    // with halved steps whenever it falls to 0 (a bounded support).
    double x = lo + sd;
    double step = x - lo;
    double p = cumulative(x);
    for (int count = 0; p > kTailProbability;) {
        p = cumulative(x);
        for (int inner = 0; p <= 0.0;) {
            x += step;
            step /= 2.0;
            p = cumulative(x);
            if (inner++ > kMaxCount) return 0;
        }
        x -= step;
        if (count++ > kMaxCount) return 0;
    }
    x += step;
    table_.push_back({x, p});

    // 3. Percentiles: march up with a step that doubles where the cumulative
    // is flat, then bisect the last bracket down to 1e-11 in probability.
    double xPrev = x;
    double pPrev = 0.0;
    const double step0 = (hi - xPrev) * 0.001;
    x = xPrev + step0;
    double target = 0.01;
    while (target < 1.0) {
        step = step0;
        p = cumulative(x);
        for (int count = 0; p < target;) {
            if ((p - pPrev) / (x - xPrev) < 0.1) step *= 2.0;
            xPrev = x;
            pPrev = p;
            x += step;
            p = cumulative(x);
            if (count++ > kMaxCount) return 0;
        }
        for (int count = 0; std::fabs(p - pPrev) > kTailProbability;) {
            const double m = (xPrev + x) / 2.0;
            const double pm = cumulative(m);
            if (pm < target) {
                xPrev = m;
                pPrev = pm;
            } else {
                x = m;
                p = pm;
            }
            if (count++ > kMaxCount) return 0;
        }
        table_.push_back({x, p});
        target += 0.01;
    }

    // 4. Upper end: walk up until the cumulative is within 1e-11 of the last
    // target, backing down with halved steps whenever it reaches 1.
    step = (hi - x) * 0.1;
    for (int count = 0; std::fabs(p - target) > kTailProbability;) {
        p = cumulative(x);
        for (int inner = 0; p >= 1.0;) {
            x -= step;
            step /= 2.0;
            p = cumulative(x);
            if (inner++ > kMaxCount) return 0;
        }
        x += step;
        if (count++ > kMaxCount) return 0;
    }
    table_.push_back({x - step, p});
    return 1;
}

double Distribution::inverse(double u) const {
    return InverseSearch::one(table_, inverseRule(), [this](double x) { return cumulative(x); }, u);
}

void Distribution::inverseMany(double* values, int64_t count) const {
    InverseSearch::many(table_, inverseRule(), [this](double x) { return cumulative(x); }, values, count);
}

} // namespace tarvex
