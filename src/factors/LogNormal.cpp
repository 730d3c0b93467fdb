#include "factors/LogNormal.h"

#include <cmath>

namespace tarvex {

LogNormal::LogNormal() {
    setTypeName("LogNormal");
    setDefaultName("nonameLogNorm");
}

LogNormal::LogNormal(const LogNormal& other) : Normal(other) {
    setTypeName("LogNormal");
}

double LogNormal::mean() const {
    return std::exp(meanValue + stdDeviation * stdDeviation / 2.0);
}

double LogNormal::stdDev() const {
    const double s2 = stdDeviation * stdDeviation;
    return std::sqrt(std::exp(2.0 * meanValue + 2.0 * s2) - std::exp(2.0 * meanValue + s2));
}

double LogNormal::cumulative(double x) const {
    return logNormalCumulative(x);
}

void LogNormal::inverseMany(double* values, int64_t count) const {
    InverseSearch::many(table_, inverseRule(), [this](double x) { return logNormalCumulative(x); }, values, count);
}

double LogNormal::density(double x) const {
    if (x < 0.0) return 0.0;
    const double d = std::log(x) - meanValue;
    return std::exp(-d * d / (2.0 * stdDeviation * stdDeviation)) /
           (std::sqrt(2.0 * M_PI) * stdDeviation * x);
}

} // namespace tarvex
