#pragma once
// Importance measures of the replicated Latin hypercube (McKay, "Evaluating
// prediction uncertainty", NUREG/CR-6311, 1995): the share of an output's
// variance explained by each factor, from the means of the output over the
// runs that share one of the factor's L values. The design gives, for a
// factor and a value, the R runs (one per replicate) that used it.
//
// Per analysed variable, with N the design's run count:
//   m = sum y / N,  W = sum (y - m)^2 / N
//   c[l] = sum of y over the R runs of level l / R
//   U = sum over l of (c[l] - m)^2 / L
//   G = sum over l and its runs of (y - c[l])^2
//   slot 0 = (U - G / (R R L)) / W
// U is the variance of the conditional means; G / (R R L) takes out most of
// the part of it that comes from averaging only R runs (the rest, of order
// Var / R^2, stays), so the measure can come out negative. R R L is formed
// in 32-bit integers and wraps as they do. A constant output (W = 0.0) gives
// 0.0 / 0.0 or an infinite value, which the file writes and reads back and
// the table shows as "nan" or "inf". Constants and relations keep 0.0.
//
// A design without run lists (none made, or made for other sizes) ends
// compute at once: result 1, nothing computed, no records, so that no
// indexes are shown.
#include <cstdint>
#include <memory>

#include "postproc/SensitivityStats.h"

namespace tarvex {

inline constexpr const char* kImportanceTableTitle = "Importance indicators\n";
inline constexpr const char* kNotRepLatinDesignText = "The sample was not made by the replicated Latin hypercube.";
// "%d" the runs of the output table, then those of the design.
inline constexpr const char* kImportanceRunsFormat = "The output table holds %d runs; the design has %d.";
// "%d" a run number of the design's level lists, then its run count.
inline constexpr const char* kImportanceRunListFormat =
    "The design's level lists name run %d, outside its %d runs.";

class ImportanceStats : public SensitivityStats {
public:
    static constexpr int32_t kTypeId = 3;

    ImportanceStats() : SensitivityStats(kTypeId) {}

    // 1, or 0 with errorText: a sample of another design, a table of outputs
    // that does not cover the design's runs, level lists that name runs the
    // design does not have, more analysed variables than the table holds.
    [[nodiscard]] int compute(PrepConfiguration& configuration, OutputTable& outputs) override;
    std::unique_ptr<SensitivityStats> clone() const override { return std::make_unique<ImportanceStats>(*this); }
    // "Importance indicators", then the sheet of the measure.
    void writeTable(std::ostream& out, const ResultTableRequest& request) const override;

    // The measure of every record for a variable, into a caller-owned array
    // of one double per record. 1, or 0 when nothing is computed or the
    // variable is out of range.
    [[nodiscard]] int importance(int32_t variable, double* values) const { return slotValues(0, variable, values); }

protected:
    int32_t slotCount(const IndexRecord&) const override { return 1; }
};

}  // namespace tarvex
