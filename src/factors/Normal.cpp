#include "factors/Normal.h"

#include <cmath>
#include <istream>
#include <ostream>

namespace tarvex {

Normal::Normal() {
    setTypeName("Normal");
    setDefaultName("nonameNorm");
}

Normal::Normal(const Normal& other)
    : TruncatedDistribution(other), meanValue(other.meanValue), stdDeviation(other.stdDeviation) {
    setTypeName("Normal");
}

double Normal::cumulative(double x) const {
    return normalCumulative(x);
}

void Normal::inverseMany(double* values, int64_t count) const {
    InverseSearch::many(table_, inverseRule(), [this](double x) { return normalCumulative(x); }, values, count);
}

double Normal::density(double x) const {
    const double d = x - meanValue;
    return std::exp(-d * d / (2.0 * stdDeviation * stdDeviation)) / (std::sqrt(2.0 * M_PI) * stdDeviation);
}

int Normal::setMean(double v) {
    meanValue = v;
    return 1;
}

int Normal::setStdDeviation(double v) {
    if (!(v >= 0.0)) {
        errorText_ = "Standard deviation must be >= 0";
        return 0;
    }
    stdDeviation = v;
    return 1;
}

int Normal::setTruncations(double left, double right) {
    if (!(left <= right)) {
        errorText_ = "Left Truncation must be less than right truncation";
        return 0;
    }
    if (!(right < 1.0)) {
        errorText_ = "Right Truncation must be less than 1";
        return 0;
    }
    if (!(left > 0.0)) {
        errorText_ = "Left Truncation must be greater than 0";
        return 0;
    }
    leftTruncation = left;
    rightTruncation = right;
    return 1;
}

// Data line: mean, standard deviation, left and right truncation.
void Normal::writeData(std::ostream& out) const {
    out << '\t' << meanValue << '\t' << stdDeviation << '\t' << leftTruncation << '\t' << rightTruncation << '\n';
}

int Normal::readData(std::istream& in) {
    double m = 0.0, sd = 0.0, left = 0.0, right = 0.0;
    if (!(in >> m >> sd >> left >> right)) return 0;
    meanValue = m;
    stdDeviation = sd;
    leftTruncation = left;
    rightTruncation = right;
    return 1;
}

} // namespace tarvex
