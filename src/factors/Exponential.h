#pragma once
#include "factors/TruncatedDistribution.h"

namespace tarvex {

// Exponential law of rate `lambda` shifted to start at `b`.
class Exponential : public TruncatedDistribution {
public:
    Exponential();
    Exponential(const Exponential& other);

    int getType() const override { return kExponential; }
    std::unique_ptr<Factor> clone() const override { return std::make_unique<Exponential>(*this); }

    double mean() const override { return 1.0 / lambda + b; }
    double stdDev() const override { return 1.0 / lambda; }
    double cumulative(double x) const override;
    double density(double x) const override;

    double getLambda() const { return lambda; }
    double getB() const { return b; }
    [[nodiscard]] int setLambda(double v);
    [[nodiscard]] int setB(double v);
    // Unlike the inherited rule, this one tests the new value: 0 < v < 1.
    [[nodiscard]] int setRightTruncation(double v) override;

protected:
    void writeData(std::ostream& out) const override;
    [[nodiscard]] int readData(std::istream& in) override;

private:
    double lambda = 1.0;
    double b = 0.0;
};

} // namespace tarvex
