#pragma once
#include "factors/TruncatedDistribution.h"

namespace tarvex {

// Gamma law of shape `r` and rate `lambda`, shifted to start at `b`.
class Gamma : public TruncatedDistribution {
public:
    Gamma();
    Gamma(const Gamma& other);

    int getType() const override { return kGamma; }
    std::unique_ptr<Factor> clone() const override { return std::make_unique<Gamma>(*this); }

    double mean() const override { return r / lambda + b; }
    double stdDev() const override;
    double cumulative(double x) const override;
    double density(double x) const override;

    double getR() const { return r; }
    double getLambda() const { return lambda; }
    double getB() const { return b; }
    double getGammaOfR() const { return gammaOfR; }
    [[nodiscard]] int setR(double v);
    // Zero is refused although the text says ">= 0".
    [[nodiscard]] int setLambda(double v);
    [[nodiscard]] int setB(double v);
    // Tests the new value: 0 < v < 1.
    [[nodiscard]] int setRightTruncation(double v) override;

protected:
    void writeData(std::ostream& out) const override;
    [[nodiscard]] int readData(std::istream& in) override;

private:
    double r = 1.0;
    double lambda = 1.0;
    double b = 0.0;
    double gammaOfR = 1.0;  // Gamma(r), kept with r
};

} // namespace tarvex
