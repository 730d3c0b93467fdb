#pragma once
// The factor values of every run of a sample file, found by factor name.
//
// The file is the pre-processor's sample file, read with the engine's own
// reader: columns may stand in any order, either store order is fine, and
// columns of other factors are left alone.
#include <string>
#include <vector>

#include "model/levele/LevelEFactors.h"

namespace tarvex::levele {

class SampleRuns {
public:
    // Reads `path`. Returns 1, or 0 with errorText() saying why: the file cannot
    // be opened or read, a factor is missing (all missing ones named), the
    // sample holds no run, or a value cannot be used (its run, counted from 0
    // as in the output file, and its factor named). The reader moves the
    // process's current directory to the one recorded in the file: resolve
    // every relative path before.
    [[nodiscard]] int read(const std::string& path);

    const std::vector<FactorValues>& runs() const { return runs_; }
    const std::string& errorText() const { return errorText_; }

    // One line per factor with a value outside its published range: how many
    // runs, and the first of them. Such values are computed all the same.
    std::vector<std::string> rangeWarnings() const;

private:
    std::vector<FactorValues> runs_;
    std::string errorText_;
};

}  // namespace tarvex::levele
