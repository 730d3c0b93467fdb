#pragma once
#include <string>

#include "factors/Distribution.h"

namespace tarvex {

// Beta law of shapes `alfa` and `beta` stretched onto [lower, upper].
class Beta : public Distribution {
public:
    Beta();
    Beta(const Beta& other);

    int getType() const override { return kBeta; }
    std::unique_ptr<Factor> clone() const override { return std::make_unique<Beta>(*this); }

    // range * alfa / (alfa + beta): the lower bound is not added. Long-standing
    // behaviour that saved results depend on; the table search copes with it.
    double mean() const override;
    double stdDev() const override;
    double cumulative(double x) const override;
    double density(double x) const override;

    double getAlfa() const { return alfa; }
    double getBeta() const { return beta; }
    double getLower() const { return lower; }
    double getUpper() const { return upper; }
    double getRange() const { return range; }
    double getBetaFunction() const { return betaFunction; }

    // The rule the definition panel and the file reader enforce, with its
    // texts: alfa > 0, beta > 0, upper > lower. Returns 0 with the text in
    // `text` for the first rule broken.
    [[nodiscard]] static int checkParameters(double alfa, double beta, double lower, double upper, std::string& text);
    // Checks, then stores all four and the derived range and B(alfa, beta);
    // on failure errorText is set and nothing changes.
    [[nodiscard]] int setParameters(double alfa, double beta, double lower, double upper);

protected:
    void writeData(std::ostream& out) const override;
    [[nodiscard]] int readData(std::istream& in) override;

private:
    void updateDerived();

    double alfa = 2.0;
    double beta = 2.0;
    double lower = 0.0;
    double upper = 1.0;
    double range = 1.0;
    double betaFunction = 1.0 / 6.0;
};

} // namespace tarvex
