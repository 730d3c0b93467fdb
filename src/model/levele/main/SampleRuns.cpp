#include "model/levele/main/SampleRuns.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>

#include "sampling/PrepConfiguration.h"

namespace tarvex::levele {

namespace {

std::string formatValue(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%g", value);
    return text;
}

}  // namespace

int SampleRuns::read(const std::string& path) {
    runs_.clear();
    {
        // The engine's reader says the same for a missing and a damaged file;
        // a user looking for a typo in the path wants to know which.
        std::ifstream probe(path, std::ios::binary);
        if (!probe) {
            errorText_ = "cannot open the sample file " + path + ": " + std::strerror(errno);
            return 0;
        }
    }
    PrepConfiguration prep;
    if (!prep.readSampleFile(path)) {
        errorText_ = prep.errorText() + " " + path;
        return 0;
    }

    std::array<int, kFactorCount> column{};
    std::string missing;
    int missingCount = 0;
    for (int f = 0; f < kFactorCount; ++f) {
        const std::string name(kFactorRanges[static_cast<std::size_t>(f)].name);
        column[static_cast<std::size_t>(f)] = prep.factors.findFactor(name);
        if (column[static_cast<std::size_t>(f)] < 0) {
            missing += (missingCount++ ? ", " : "") + name;
        }
    }
    if (missingCount > 0) {
        errorText_ = (missingCount == 1 ? "the sample has no factor named " : "the sample has no factors named ") +
                     missing;
        return 0;
    }
    sampValues& store = prep.samples;
    const int32_t rows = store.rowCount();
    if (rows < 1) {
        errorText_ = "the sample holds no runs";
        return 0;
    }

    runs_.resize(static_cast<std::size_t>(rows));
    for (int32_t r = 0; r < rows; ++r) {
        FactorValues& values = runs_[static_cast<std::size_t>(r)];
        for (int f = 0; f < kFactorCount; ++f) {
            double x = 0.0;
            const int c = column[static_cast<std::size_t>(f)];
            if (c >= store.columnCount() || !store.getValue(r, c, &x)) {
                errorText_ = "Error reading samples file " + path;
                runs_.clear();
                return 0;
            }
            const std::string_view problem = valueProblem(f, x);
            if (!problem.empty()) {
                errorText_ = "run " + std::to_string(r) + ", factor " +
                             std::string(kFactorRanges[static_cast<std::size_t>(f)].name) + ": the value " +
                             formatValue(x) + " " + std::string(problem);
                runs_.clear();
                return 0;
            }
            values[static_cast<std::size_t>(f)] = x;
        }
    }
    errorText_.clear();
    return 1;
}

std::vector<std::string> SampleRuns::rangeWarnings() const {
    std::vector<std::string> lines;
    for (int f = 0; f < kFactorCount; ++f) {
        std::size_t outside = 0, first = 0;
        for (std::size_t r = 0; r < runs_.size(); ++r) {
            if (insidePublishedRange(f, runs_[r][static_cast<std::size_t>(f)])) continue;
            if (outside++ == 0) first = r;
        }
        if (outside == 0) continue;
        const FactorRange& range = kFactorRanges[static_cast<std::size_t>(f)];
        lines.push_back("factor " + std::string(range.name) + " lies outside its published range " +
                        formatValue(range.low) + " to " + formatValue(range.high) + " in " +
                        std::to_string(outside) + (outside == 1 ? " run" : " runs") + " (first: run " +
                        std::to_string(first) + ", " + formatValue(runs_[first][static_cast<std::size_t>(f)]) +
                        "); computed all the same");
    }
    return lines;
}

}  // namespace tarvex::levele
