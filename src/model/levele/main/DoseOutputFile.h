#pragma once
// The model output file of a Level E run over a sample, in the form the model
// execution reads back from an external model:
//
//   5 / Dose / DoseI129 / DoseNp237 / DoseU233 / DoseTh229   (one item a line)
//   time = yes
//   <runs>
//   RUN <r>          from 0, once per run
//   26
//   <time> <Dose> <DoseI129> <DoseNp237> <DoseU233> <DoseTh229>   26 lines
//
// Dose rates in Sv/yr with "%.10e": they span some eighty decades. A value
// below zero is noise of the inversion, far under the run's peak, and is
// written as 0 so that logarithmic plots and regressions on logarithms work.
#include <string>
#include <vector>

#include "model/levele/LevelEFactors.h"
#include "model/levele/LevelEModel.h"

namespace tarvex::levele {

class DoseOutputFile {
public:
    // Computes every run and writes `path` through a new file renamed over it,
    // so that a failure leaves the former file as it was. Returns 1, or 0 with
    // errorText().
    [[nodiscard]] int write(const std::string& path, const std::vector<FactorValues>& runs, const LevelEModel& model);

    const std::string& errorText() const { return errorText_; }

private:
    std::string errorText_;
};

}  // namespace tarvex::levele
