#pragma once
#include "factors/TruncatedDistribution.h"

namespace tarvex {

// Weibull law of shape `beta` and scale `n`, shifted to start at `b`.
class Weibull : public TruncatedDistribution {
public:
    Weibull();
    Weibull(const Weibull& other);

    int getType() const override { return kWeibull; }
    std::unique_ptr<Factor> clone() const override { return std::make_unique<Weibull>(*this); }

    double mean() const override;
    double stdDev() const override;
    double cumulative(double x) const override;
    // Does not test x against b: below b it follows the formula wherever
    // the power is defined.
    double density(double x) const override;

    double getBeta() const { return beta; }
    double getN() const { return n; }
    double getB() const { return b; }
    [[nodiscard]] int setBeta(double v);
    [[nodiscard]] int setN(double v);
    [[nodiscard]] int setB(double v);

protected:
    void writeData(std::ostream& out) const override;
    [[nodiscard]] int readData(std::istream& in) override;

private:
    double beta = 1.0;
    double n = 1.0;
    double b = 0.0;
};

} // namespace tarvex
