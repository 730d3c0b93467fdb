#include "factors/LogUniform.h"

#include <cmath>

namespace tarvex {

LogUniform::LogUniform() : Uniform(NoDefault{}) {
    setTypeName("LogUniform");
    setDefaultName("nonameLogUnif");
    intervals.append(std::make_unique<LogInterval>());
}

LogUniform::LogUniform(const LogUniform& other) : Uniform(other, NoDefault{}) {
    setTypeName("LogUniform");
    copyIntervals(other, true);
}

double LogUniform::mean() const {
    double m = 0.0;
    for (const auto& iv : intervals.items) {
        m += (iv->right - iv->left) * iv->weight / (std::log(iv->right) - std::log(iv->left));
    }
    return m;
}

double LogUniform::stdDev() const {
    double m2 = 0.0;
    for (const auto& iv : intervals.items) {
        const double a = iv->left, c = iv->right;
        m2 += (c * c - a * a) * iv->weight / (2.0 * (std::log(c) - std::log(a)));
    }
    const double m = mean();
    return std::sqrt(m2 - m * m);
}

double LogUniform::partialWeight(const Interval& iv, double x) const {
    return logShare(iv, x);
}

void LogUniform::inverseMany(double* values, int64_t count) const {
    searchIntervals([](const auto& iv, double x) { return logShare(iv, x); }, values, count);
}

double LogUniform::intervalDensity(const Interval& iv, double x) const {
    return iv.weight / ((std::log(iv.right) - std::log(iv.left)) * x);
}

std::unique_ptr<Interval> LogUniform::newInterval() const {
    return std::make_unique<LogInterval>();
}

} // namespace tarvex
