#pragma once
// Elementary effects of the Morris design (Morris, "Factorial sampling plans
// for preliminary computational experiments", Technometrics 33, 1991; the
// mean of absolute effects mu* after Campolongo, Cariboni and Saltelli,
// Environmental Modelling & Software 22, 2007).
//
// Per analysed variable and per uncertain factor, over the r trajectories of
// the design: the effect of a step is |2.0 (y[i-1] - y[i])|, the factor 2.0
// fixed whatever the design's jump (a jump of d levels of p moves a factor by
// d / p in probability, so for even p the effect is |dy| / 0.5). Slot 0,
// "Morris Index", is |s / r| with s the sum of the factor's r effects; slot 1,
// "Sigma", is sqrt((r t - s^2) / ((r - 1) r)) with t the sum of their squares,
// the sample standard deviation of the effects. A factor that never changes
// the output has both slots 0.0; constants and relations keep 0.0.
//
// The effects go to a table of r columns, one per trajectory: the column
// advances at every run whose changedFactor is negative (a trajectory's first
// run), and a run that changed factor c writes row c. Runs outside the table
// (a factor number beyond the uncertain factors, a trajectory beyond r, a run
// before the first trajectory) write nothing; a table of outputs shorter than
// the design is read as far as it goes. Effects that never were written count
// as 0.0, and s and t are still divided by r.
//
// One trajectory (r = 1) leaves no spread to estimate: slot 1 is then
// 0.0 / 0.0, NaN, which the file writes as "nan" and the table shows as
// "nan". With equal effects the formula's difference r t - s^2 can round to a
// tiny negative number, whose root is NaN too.
#include <cstdint>
#include <memory>

#include "postproc/SensitivityStats.h"

namespace tarvex {

inline constexpr const char* kMorrisTableTitle = "Morris indexes\n";
inline constexpr const char* kMorrisIndexHeading = "Morris Index";
inline constexpr const char* kMorrisSigmaHeading = "Sigma";
inline constexpr const char* kNotMorrisDesignText = "The sample was not made by the Morris design.";

class MorrisStats : public SensitivityStats {
public:
    static constexpr int32_t kTypeId = 1;
    static constexpr int32_t kSlots = 2;

    MorrisStats() : SensitivityStats(kTypeId) {}

    // 1, or 0 with errorText: a sample of another design, or more analysed
    // variables than the output table holds.
    [[nodiscard]] int compute(PrepConfiguration& configuration, OutputTable& outputs) override;
    std::unique_ptr<SensitivityStats> clone() const override { return std::make_unique<MorrisStats>(*this); }
    // "Morris indexes", then a sheet of two columns per variable, "Morris
    // Index" and "Sigma".
    void writeTable(std::ostream& out, const ResultTableRequest& request) const override;

    // Slot 0 ("Morris Index") and slot 1 ("Sigma") of every record for a
    // variable, into a caller-owned array of one double per record. 1, or 0
    // when nothing is computed or the variable is out of range.
    [[nodiscard]] int morrisIndex(int32_t variable, double* values) const { return slotValues(0, variable, values); }
    [[nodiscard]] int sigma(int32_t variable, double* values) const { return slotValues(1, variable, values); }

protected:
    int32_t slotCount(const IndexRecord&) const override { return kSlots; }
};

}  // namespace tarvex
