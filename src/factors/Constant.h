#pragma once
#include "factors/Factor.h"

namespace tarvex {

// A factor that takes the same value in every sample row.
class Constant : public Factor {
public:
    Constant() {
        setTypeName("Constant");
        setDefaultName("nonameConst");
    }
    Constant(const Constant& other) : Factor(other), value(other.value) { setTypeName("Constant"); }

    int getType() const override { return kConstant; }
    std::unique_ptr<Factor> clone() const override { return std::make_unique<Constant>(*this); }

    double value = 1.0;

protected:
    void writeData(std::ostream& out) const override;
    [[nodiscard]] int readData(std::istream& in) override;
};

} // namespace tarvex
