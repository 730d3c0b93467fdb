#include "factors/Weibull.h"

#include <cmath>
#include <istream>
#include <ostream>

#include "factors/NumericLibrary.h"

namespace tarvex {

Weibull::Weibull() {
    setTypeName("Weibull");
    setDefaultName("nonameWeib");
    leftTruncation = 0.0;
}

Weibull::Weibull(const Weibull& other)
    : TruncatedDistribution(other), beta(other.beta), n(other.n), b(other.b) {
    setTypeName("Weibull");
}

double Weibull::mean() const {
    return std::exp(lnGamma(1.0 + 1.0 / beta)) * n + b;
}

double Weibull::stdDev() const {
    const double g1 = std::exp(lnGamma(1.0 + 1.0 / beta));
    const double g2 = std::exp(lnGamma(1.0 + 2.0 / beta));
    return std::sqrt((g2 - g1 * g1) * n * n);
}

double Weibull::cumulative(double x) const {
    if (x <= b) return 0.0;
    return 1.0 - std::exp(-std::pow(x - b, beta) / std::pow(n, beta));
}

double Weibull::density(double x) const {
    return (beta / n) * std::pow((x - b) / n, beta - 1.0) * std::exp(-std::pow(x - b, beta) / std::pow(n, beta));
}

int Weibull::setBeta(double v) {
    if (!(v > 0.0)) {
        errorText_ = "Beta must be > 0";
        return 0;
    }
    beta = v;
    return 1;
}

int Weibull::setN(double v) {
    if (!(v > 0.0)) {
        errorText_ = "n must be > 0";
        return 0;
    }
    n = v;
    return 1;
}

int Weibull::setB(double v) {
    if (!(v >= 0.0)) {
        errorText_ = "b must be >= 0";
        return 0;
    }
    b = v;
    return 1;
}

// Data line: beta, n, b, right truncation.
void Weibull::writeData(std::ostream& out) const {
    out << '\t' << beta << '\t' << n << '\t' << b << '\t' << rightTruncation << '\n';
}

int Weibull::readData(std::istream& in) {
    double shape = 0.0, scale = 0.0, loc = 0.0, right = 0.0;
    if (!(in >> shape >> scale >> loc >> right)) return 0;
    beta = shape;
    n = scale;
    b = loc;
    rightTruncation = right;
    return 1;
}

} // namespace tarvex
