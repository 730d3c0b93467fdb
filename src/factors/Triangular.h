#pragma once
#include <string>

#include "factors/Distribution.h"

namespace tarvex {

// Triangular law on [alfa, gamma] with its mode at beta.
class Triangular : public Distribution {
public:
    Triangular();
    Triangular(const Triangular& other);

    int getType() const override { return kTriangular; }
    std::unique_ptr<Factor> clone() const override { return std::make_unique<Triangular>(*this); }

    double mean() const override;
    double stdDev() const override;
    double cumulative(double x) const override;
    double density(double x) const override;

    double getAlfa() const { return alfa; }
    double getBeta() const { return beta; }
    double getGamma() const { return gamma; }
    double getAreaLeft() const { return areaLeft; }
    double getHeight() const { return height; }

    // left < mode < right, with the panels' and the reader's text.
    [[nodiscard]] static int checkParameters(double left, double mode, double right, std::string& text);
    // Checks, then stores the three points and the derived height and area
    // left of the mode; on failure errorText is set and nothing changes.
    [[nodiscard]] int setParameters(double left, double mode, double right);

protected:
    void writeData(std::ostream& out) const override;
    [[nodiscard]] int readData(std::istream& in) override;

private:
    void updateDerived();
    // Integral of x^k f(x) over the support, k = 1 or 2.
    double moment(int k) const;

    double alfa = 0.0;
    double beta = 1.0;
    double gamma = 2.0;
    double areaLeft = 0.5;
    double height = 1.0;
};

} // namespace tarvex
