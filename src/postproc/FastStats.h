#pragma once
// Variance fractions of the Fourier Amplitude Sensitivity Test from the
// search-curve design of FastSampler (Cukier et al., J. Chem. Phys. 59, 1973;
// extended test: Saltelli, Tarantola and Chan, Technometrics 41, 1999), by a
// direct Fourier sum over each curve rather than a fast transform.
//
// For a centred curve d of n runs, the spectrum at frequency w is
//   S(w) = 2 ((A / n)^2 + (B / n)^2),
// A and B the cosine and sine sums folded about the curve's middle run, over
// the angles s w 6.283185307179586 / n, all in extended precision. With D
// the curve's variance:
//  mode 0 (classic): per factor, slot 0 = (S(f) + ... + S(4f)) / D at its
//    frequency f over runs 0 .. n - 1; slot 1 = 0;
//  modes 1 and 2 (extended, on groups): per factor or group, its block of R
//    curves at omegaMax M, each centred by its own mean: slot 0 = H / D with
//    H the four harmonics of M, slot 1 = 1 - L / D with L the spectrum over
//    1 .. M / 2, where only the other factors' low frequencies lie; H, L and
//    D summed over the curves.
// Four harmonics and the band of the complementary frequencies leave a bias
// of a few hundredths on non-linear models whatever the sample size.
#include <cstdint>
#include <memory>

#include "postproc/SensitivityStats.h"

namespace tarvex {

inline constexpr const char* kFastNotFastText = "The sample was not made by the FAST design";
inline constexpr const char* kFastNoTableText = "The FAST design has no block table: generate the sample again";
inline constexpr const char* kFastBadBlockText = "The FAST block table holds a block that cannot be analysed";

class FastStats : public SensitivityStats {
public:
    FastStats() : SensitivityStats(2) {}

    [[nodiscard]] int compute(PrepConfiguration& configuration, OutputTable& outputs) override;
    std::unique_ptr<SensitivityStats> clone() const override { return std::make_unique<FastStats>(*this); }
    // The first order sheet; the total order sheet too unless the design is
    // the classic test.
    void writeTable(std::ostream& out, const ResultTableRequest& request) const override;

    // One double per record; 1, or 0 when nothing is computed or the
    // variable is out of range.
    [[nodiscard]] int firstOrder(int32_t variable, double* values) const { return slotValues(0, variable, values); }
    [[nodiscard]] int totalOrder(int32_t variable, double* values) const { return slotValues(1, variable, values); }

    // Records: one per factor in modes 0 and 1; in mode 2 the groups, then
    // the factors in no group.
    int32_t recordCount = 0;
    // The design's analysisMode at the last compute. The file does not hold
    // it: an object read back has -1 until its caller sets it from the
    // design, and then writes both sheets.
    int32_t analysisMode = -1;

protected:
    void writeHeader(std::ostream& out) const override;
    void readHeader(std::istream& in) override;
    int32_t recordsInFile() const override { return recordCount; }
    int32_t slotCount(const IndexRecord&) const override { return 2; }
};

}  // namespace tarvex
