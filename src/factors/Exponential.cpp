#include "factors/Exponential.h"

#include <cmath>
#include <istream>
#include <ostream>

namespace tarvex {

Exponential::Exponential() {
    setTypeName("Exponential");
    setDefaultName("nonameExpo");
    leftTruncation = 0.0;
}

Exponential::Exponential(const Exponential& other)
    : TruncatedDistribution(other), lambda(other.lambda), b(other.b) {
    setTypeName("Exponential");
}

double Exponential::cumulative(double x) const {
    if (x < b) return 0.0;
    return 1.0 - std::exp(-(x - b) * lambda);
}

double Exponential::density(double x) const {
    if (x < b) return 0.0;
    return lambda * std::exp(-(x - b) * lambda);
}

int Exponential::setLambda(double v) {
    if (!(v > 0.0)) {
        errorText_ = "Lambda must be > 0";
        return 0;
    }
    lambda = v;
    return 1;
}

int Exponential::setB(double v) {
    if (!(v >= 0.0)) {
        errorText_ = "b must be >= 0";
        return 0;
    }
    b = v;
    return 1;
}

int Exponential::setRightTruncation(double v) {
    if (!(v > 0.0 && v < 1.0)) {
        errorText_ = "Truncation must be between 0 and 1";
        return 0;
    }
    rightTruncation = v;
    return 1;
}

// Data line: lambda, b, right truncation.
void Exponential::writeData(std::ostream& out) const {
    out << '\t' << lambda << '\t' << b << '\t' << rightTruncation << '\n';
}

int Exponential::readData(std::istream& in) {
    double l = 0.0, loc = 0.0, right = 0.0;
    if (!(in >> l >> loc >> right)) return 0;
    lambda = l;
    b = loc;
    rightTruncation = right;
    return 1;
}

} // namespace tarvex
