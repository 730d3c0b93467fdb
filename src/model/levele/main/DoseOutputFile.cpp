#include "model/levele/main/DoseOutputFile.h"

#include <cmath>
#include <cstdio>
#include <ostream>

#include "common/AtomicFileWriter.h"

namespace tarvex::levele {

namespace {

constexpr const char* kHeader =
    "5\nDose\nDoseI129\nDoseNp237\nDoseU233\nDoseTh229\ntime = yes\n";

// Appends " %.10e" of the value, a negative one as 0.
int appendDose(char* at, std::size_t room, double value) {
    return std::snprintf(at, room, " %.10e", value > 0.0 ? value : 0.0);
}

}  // namespace

int DoseOutputFile::write(const std::string& path, const std::vector<FactorValues>& runs, const LevelEModel& model) {
    std::string computeError;
    const WriteOutcome outcome = writeFileAtomically(path, [&](std::ostream& out) {
        out << kHeader << runs.size() << '\n';
        char line[256];
        for (std::size_t r = 0; r < runs.size() && out; ++r) {
            const LevelEDoses doses = model.run(runs[r]);
            out << "RUN " << r << '\n' << kTimeCount << '\n';
            for (int i = 0; i < kTimeCount; ++i) {
                const NuclideDoses& byNuclide = doses.byNuclide[static_cast<std::size_t>(i)];
                const double total = doses.total(i);
                if (!std::isfinite(total)) {
                    computeError = "run " + std::to_string(r) + ": the dose at " +
                                   std::to_string(static_cast<long long>(kTimes[static_cast<std::size_t>(i)])) +
                                   " yr is not finite";
                    out.setstate(std::ios::failbit);
                    return;
                }
                int used = std::snprintf(line, sizeof line, "%g", kTimes[static_cast<std::size_t>(i)]);
                used += appendDose(line + used, sizeof line - static_cast<std::size_t>(used), total);
                for (double d : byNuclide)
                    used += appendDose(line + used, sizeof line - static_cast<std::size_t>(used), d);
                line[used++] = '\n';
                out.write(line, used);
            }
        }
    });
    if (outcome == WriteOutcome::Written) {
        errorText_.clear();
        return 1;
    }
    errorText_ = computeError.empty() ? "cannot write the output file " + path : computeError;
    return 0;
}

}  // namespace tarvex::levele
