#pragma once
// Fixed samples: the user types every run. The values are final factor
// values, not design-space numbers, so the value pass leaves them as they
// are. The sampler keeps them in a store of its own, one column per factor,
// and a generation hands that store over whole.
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "sampling/Sampler.h"
#include "sampling/sampValues.h"

namespace tarvex {

inline constexpr const char* kNoInverseText = "I cannot calculate the inverse cumulative of factor";

class FixedSampler : public Sampler {
public:
    FixedSampler();
    FixedSampler(const FixedSampler& other);

    // Hands the typed rows to `store`: 50 whatever the target.
    [[nodiscard]] float generate(float targetPercent, sampValues& store, FactorList& factors) override;
    // Sets the count and makes the rows' store that wide, empty (a count
    // below 1 leaves it empty and without columns, with the store's text).
    [[nodiscard]] int setNumFactors(int32_t count) override;
    std::unique_ptr<Sampler> clone() const override { return std::make_unique<FixedSampler>(*this); }
    void readItems(std::istream& in) override;

    void clearRows();
    // Appends one run of numFactors values.
    [[nodiscard]] int addRow(const double* row);
    // Run i, or empty when i is not below the row count.
    std::vector<double> copyRow(int32_t i);
    const sampValues& values() const { return values_; }

    // The row the panel starts from when no run is typed yet, in list order:
    // a constant's value, a stochastic factor's inverse cumulative at 0.5,
    // and, evaluated last, a relation's value on a row where every
    // stochastic factor stands at its mean. 0 when a factor's inverse table
    // cannot be made, with errorText "I cannot calculate the inverse
    // cumulative of factor <number from 1>".
    [[nodiscard]] static int startingRow(FactorList& factors, std::vector<double>& row, std::string& errorText);

protected:
    void writeItems(std::ostream& out) const override;

private:
    sampValues values_;
};

}  // namespace tarvex
