#include "factors/Gamma.h"

#include <cmath>
#include <istream>
#include <ostream>

#include "factors/NumericLibrary.h"

namespace tarvex {

Gamma::Gamma() {
    setTypeName("Gamma");
    setDefaultName("nonameGamma");
    leftTruncation = 0.0;
    gammaOfR = std::exp(lnGamma(r));
}

Gamma::Gamma(const Gamma& other)
    : TruncatedDistribution(other), r(other.r), lambda(other.lambda), b(other.b), gammaOfR(other.gammaOfR) {
    setTypeName("Gamma");
}

double Gamma::stdDev() const {
    return std::sqrt(r / (lambda * lambda));
}

double Gamma::cumulative(double x) const {
    if (x < b) return 0.0;
    int which = 1, status = 0;
    double p = 0.0, q = 0.0, bound = 0.0, t = x - b, shape = r, rate = lambda;
    cdfGamma(which, p, q, t, shape, rate, status, bound);
    return status == 0 ? p : -1.0;
}

double Gamma::density(double x) const {
    if (x < b) return 0.0;
    const double t = (x - b) * lambda;
    return (lambda / gammaOfR) * std::pow(t, r - 1.0) * std::exp(-t);
}

int Gamma::setR(double v) {
    if (!(v > 0.0)) {
        errorText_ = "r must be > 0";
        return 0;
    }
    r = v;
    gammaOfR = std::exp(lnGamma(r));
    return 1;
}

int Gamma::setLambda(double v) {
    if (!(v > 0.0)) {
        errorText_ = "Lambda must be >= 0";
        return 0;
    }
    lambda = v;
    return 1;
}

int Gamma::setB(double v) {
    if (!(v >= 0.0)) {
        errorText_ = "b must be >= 0";
        return 0;
    }
    b = v;
    return 1;
}

int Gamma::setRightTruncation(double v) {
    if (!(v > 0.0 && v < 1.0)) {
        errorText_ = "Truncation must be between 0 and 1";
        return 0;
    }
    rightTruncation = v;
    return 1;
}

// Data line: r, lambda, b, right truncation.
void Gamma::writeData(std::ostream& out) const {
    out << '\t' << r << '\t' << lambda << '\t' << b << '\t' << rightTruncation << '\n';
}

int Gamma::readData(std::istream& in) {
    double shape = 0.0, rate = 0.0, loc = 0.0, right = 0.0;
    if (!(in >> shape >> rate >> loc >> right)) return 0;
    r = shape;
    lambda = rate;
    b = loc;
    rightTruncation = right;
    gammaOfR = std::exp(lnGamma(r));
    return 1;
}

} // namespace tarvex
