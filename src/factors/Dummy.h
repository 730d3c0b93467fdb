#pragma once
#include <string>

#include "factors/Distribution.h"

namespace tarvex {

// Stands for a column of an imported sample that has no distribution: every
// distribution operation yields 0.0 and the table needs no preparation.
class Dummy : public Distribution {
public:
    Dummy() {
        setTypeName("Dummy");
        setDefaultName("nonameDummy");
    }
    // A column of an imported sample keeps the label its file gives it. A
    // list that holds Dummy factors is never read back from a factor file,
    // so the label need not be a name that file could hold.
    explicit Dummy(const std::string& label) : Dummy() { setDefaultName(label); }
    Dummy(const Dummy& other) : Distribution(other) { setTypeName("Dummy"); }

    int getType() const override { return kDummy; }
    std::unique_ptr<Factor> clone() const override { return std::make_unique<Dummy>(*this); }

    [[nodiscard]] int prepareInverse() override { return 1; }
    double mean() const override { return 0.0; }
    double stdDev() const override { return 0.0; }
    double cumulative(double) const override { return 0.0; }
    double inverse(double) const override { return 0.0; }
    void inverseMany(double* values, int64_t count) const override {
        for (int64_t i = 0; i < count; ++i) values[i] = 0.0;
    }
    double density(double) const override { return 0.0; }
};

} // namespace tarvex
