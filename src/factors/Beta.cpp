#include "factors/Beta.h"

#include <cmath>
#include <istream>
#include <ostream>

#include "factors/NumericLibrary.h"

namespace tarvex {

Beta::Beta() {
    setTypeName("Beta");
    setDefaultName("nonameBeta");
    updateDerived();
}

Beta::Beta(const Beta& other)
    : Distribution(other), alfa(other.alfa), beta(other.beta), lower(other.lower), upper(other.upper) {
    setTypeName("Beta");
    updateDerived();
}

void Beta::updateDerived() {
    range = upper - lower;
    betaFunction = std::exp(lnBeta(alfa, beta));
}

double Beta::mean() const {
    return range * alfa / (alfa + beta);
}

double Beta::stdDev() const {
    const double s = alfa + beta;
    return std::sqrt(alfa * beta * range * range / ((s + 1.0) * s * s));
}

double Beta::cumulative(double x) const {
    if (x > upper) return 1.0;
    if (x < lower) return 0.0;
    int which = 1, status = 0;
    double p = 0.0, q = 0.0, bound = 0.0, a = alfa, b = beta;
    double z = (x - lower) / range;
    double y = 1.0 - z;
    cdfBeta(which, p, q, z, y, a, b, status, bound);
    return status == 0 ? p : -1.0;
}

double Beta::density(double x) const {
    if (x < lower || x > upper) return 0.0;
    const double z = (x - lower) / range;
    return std::pow(1.0 - z, beta - 1.0) * std::pow(z, alfa - 1.0) / (betaFunction * range);
}

int Beta::checkParameters(double a, double b, double lo, double up, std::string& text) {
    if (!(a > 0.0)) {
        text = "Wrong negative value assigned to Alfa";
        return 0;
    }
    if (!(b > 0.0)) {
        text = "Wrong negative value assigned to Beta";
        return 0;
    }
    if (!(up > lo)) {
        text = "Negative or null definition interval: check a and b";
        return 0;
    }
    return 1;
}

int Beta::setParameters(double a, double b, double lo, double up) {
    if (!checkParameters(a, b, lo, up, errorText_)) return 0;
    alfa = a;
    beta = b;
    lower = lo;
    upper = up;
    updateDerived();
    return 1;
}

// Data line: alfa, beta, lower, upper. The derived range and B(alfa, beta)
// follow what was read.
void Beta::writeData(std::ostream& out) const {
    out << '\t' << alfa << '\t' << beta << '\t' << lower << '\t' << upper << '\n';
}

int Beta::readData(std::istream& in) {
    double a = 0.0, b = 0.0, lo = 0.0, up = 0.0;
    if (!(in >> a >> b >> lo >> up)) return 0;
    alfa = a;
    beta = b;
    lower = lo;
    upper = up;
    updateDerived();
    return 1;
}

} // namespace tarvex
