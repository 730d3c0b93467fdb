#include "factors/Triangular.h"

#include <cmath>
#include <istream>
#include <ostream>

namespace tarvex {

Triangular::Triangular() {
    setTypeName("Triangular");
    setDefaultName("nonameTriang");
}

Triangular::Triangular(const Triangular& other)
    : Distribution(other), alfa(other.alfa), beta(other.beta), gamma(other.gamma) {
    setTypeName("Triangular");
    updateDerived();
}

void Triangular::updateDerived() {
    height = 2.0 / (gamma - alfa);
    areaLeft = (beta - alfa) * height / 2.0;
}

// The density is s1 (x - left) left of the mode and height + s2 (x - mode)
// right of it; each branch is integrated in closed form.
double Triangular::moment(int k) const {
    const double left = alfa, mode = beta, right = gamma;
    const double s1 = height / (mode - left);
    const double s2 = -height / (right - mode);
    const double c = height - s2 * mode;  // constant term of the right branch
    if (k == 1) {
        return (s1 * (std::pow(mode, 3) - std::pow(left, 3)) + s2 * (std::pow(right, 3) - std::pow(mode, 3))) / 3.0 +
               (c * (right * right - mode * mode) - s1 * left * (mode * mode - left * left)) / 2.0;
    }
    return (s1 * (std::pow(mode, 4) - std::pow(left, 4)) + s2 * (std::pow(right, 4) - std::pow(mode, 4))) / 4.0 +
           (c * (std::pow(right, 3) - std::pow(mode, 3)) - s1 * left * (std::pow(mode, 3) - std::pow(left, 3))) / 3.0;
}

double Triangular::mean() const {
    return moment(1);
}

double Triangular::stdDev() const {
    const double m = moment(1);
    return std::sqrt(moment(2) - m * m);
}

double Triangular::cumulative(double x) const {
    if (x > gamma) return 1.0;
    if (x < alfa) return 0.0;
    if (x > beta) return (x - beta) * (density(x) + height) / 2.0 + areaLeft;
    return (x - alfa) * density(x) / 2.0;
}

double Triangular::density(double x) const {
    if (x < alfa || x > gamma) return 0.0;
    if (x > beta) return 2.0 * (gamma - x) / ((gamma - alfa) * (gamma - beta));
    return 2.0 * (x - alfa) / ((gamma - alfa) * (beta - alfa));
}

int Triangular::checkParameters(double left, double mode, double right, std::string& text) {
    if (!(left < mode && mode < right)) {
        text = "Wrong values assigned to the distribution definition interval: check alfa beta and gamma";
        return 0;
    }
    return 1;
}

int Triangular::setParameters(double left, double mode, double right) {
    if (!checkParameters(left, mode, right, errorText_)) return 0;
    alfa = left;
    beta = mode;
    gamma = right;
    updateDerived();
    return 1;
}

// Data line: left end, mode, right end.
void Triangular::writeData(std::ostream& out) const {
    out << '\t' << alfa << '\t' << beta << '\t' << gamma << '\n';
}

// Three points out of order are not a broken file: the factor keeps its
// former points, says why in errorText, and the reading goes on.
int Triangular::readData(std::istream& in) {
    double left = 0.0, mode = 0.0, right = 0.0;
    if (!(in >> left >> mode >> right)) return 0;
    (void)setParameters(left, mode, right);
    return 1;
}

} // namespace tarvex
