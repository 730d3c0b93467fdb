// The output file of an external model, and the check of the model's files.
//
//   <number of variables>
//   one name per line
//   time = yes | no
//   <number of runs>
//   per run, without a time axis: the values of the variables
//   per run, with a time axis: a line "RUN <n>" (runs count from 0), the
//   number of time points, and per time point the time and the values.
//
// Stricter than the format help the user reads in two places, which existing
// models rely on: a "RUN" line is refused without a time axis, and a time
// value may not be written as "t = <value>".
#include <cstdio>
#include <fstream>
#include <locale>
#include <new>
#include <sstream>
#include <unistd.h>

#include "model/DataStream.h"
#include "model/MessageSink.h"
#include "model/ModelConfiguration.h"
#include "model/NameCharacters.h"
#include "common/TextLines.h"

namespace tarvex {

namespace {

// Characters of a name that become "_"; the blank included.
constexpr std::string_view kSpecialCharacters = " /*-+()|!£$&=?'^[]#@ç,;.:<>\\\"";

constexpr std::size_t kNameLine = 255;
constexpr std::size_t kShortLine = 19;

std::string formatted(const char* format, const std::string& a, const std::string& b = std::string()) {
    const int n = std::snprintf(nullptr, 0, format, a.c_str(), b.c_str());
    std::string text(static_cast<std::size_t>(n > 0 ? n : 0) + 1, '\0');
    std::snprintf(text.data(), text.size(), format, a.c_str(), b.c_str());
    text.resize(text.size() - 1);
    return text;
}

} // namespace

// Running out of memory on a hostile file is a failed read, like any other.
int ModelConfiguration::readModelOutput(MessageSink& messages) try {
    internalModel_.reset();
    clearResults();
    std::ifstream in(outputFile_);
    if (!in) return 0;
    in.imbue(std::locale::classic());

    // On a failure, keep what was read in whole runs: the names, the runs
    // complete in the data file and their times.
    DataStream data(dataFile_, "wb");
    if (!data) return 0;
    int32_t runsWritten = 0;
    auto failed = [&]() {
        (void)data.close();  // failing already
        runCount_ = runsWritten;
        // Bytes left behind the complete runs are never read.
        (void)truncateDataFile(runTimes_.pointsBefore(runsWritten) * outputCount() * static_cast<int64_t>(sizeof(double)));
        timeMode_ = 0;
        return 0;
    };

    std::string line;
    int32_t variables = 0;
    in >> variables;
    if (!takeLine(in, line, kShortLine) || variables < 1) return failed();
    for (int32_t k = 0; k < variables; ++k) {
        if (!takeLine(in, line, kNameLine)) return failed();
        std::string name = line.substr(0, line.find(' '));
        if (name.empty()) return failed();
        if (name[0] >= '0' && name[0] <= '9') {
            messages.error("Error", formatted("Incorrect model variable name: %s", name));
            return failed();
        }
        if (containsCharacterOf(name, kSpecialCharacters)) {
            const std::string changed = replaceCharactersOf(name, kSpecialCharacters, '_');
            messages.warning("Warning", formatted("The model variable %s will be modified in %s", name, changed));
            name = changed;
        }
        outputNames_.push_back(name);
    }

    timeMode_ = 0;
    if (!takeThrough(in, '=', kShortLine) || !takeLine(in, line, kShortLine)) return failed();
    {
        std::istringstream words(line);
        std::string word;
        // Exactly "yes": "Yes" is no time axis.
        if (words >> word && word == "yes") timeMode_ = 1;
    }
    long runs = 0;
    in >> runs;
    if (!takeLine(in, line, kShortLine) || runs < 1 || runs > INT32_MAX) return failed();
    runCount_ = static_cast<int32_t>(runs);

    std::vector<double> values(static_cast<std::size_t>(variables));
    if (timeMode_ != 1) {
        const double noTime = 0.0;
        for (int32_t r = 0; r < runCount_; ++r) {
            for (double& v : values) in >> v;
            if (!takeLine(in, line, kShortLine)) return failed();
            if (!data.write(values.data(), values.size())) return failed();
            runTimes_.append(&noTime, 1);
            ++runsWritten;
        }
    } else {
        std::vector<double> times;
        bool sameGrid = true;
        std::vector<double> previous;
        for (int32_t r = 0; r < runCount_; ++r) {
            if (!takeLine(in, line, kShortLine)) return failed();
            char word[kShortLine + 1];
            long number = -1;
            if (std::sscanf(line.c_str(), "%19s %ld", word, &number) != 2 || number != r) return failed();
            int32_t points = 0;
            // A time point holds at least two numbers, a byte each.
            if (!(in >> points) || points < 1 || !countFitsInput(in, points, 2)) return failed();
            // A run is written to the data file only once it is complete.
            // Its buffers grow with what is read: the count is only a claim.
            times.clear();
            std::vector<double> runValues;
            for (int32_t t = 0; t < points; ++t) {
                double time = 0.0;
                in >> time;
                times.push_back(time);
                for (double& v : values) in >> v;
                if (!takeLine(in, line, kShortLine)) return failed();
                runValues.insert(runValues.end(), values.begin(), values.end());
            }
            if (!data.write(runValues.data(), runValues.size())) return failed();
            runTimes_.append(times.data(), points);
            ++runsWritten;
            // Exact comparison of the grids: a single differing time makes
            // the runs' grids different.
            if (r > 0 && times != previous) sameGrid = false;
            previous = times;
        }
        timeMode_ = sameGrid ? 3 : 2;
    }
    if (!data.close()) return failed();
    return 1;
} catch (const std::bad_alloc&) {
    clearResults();
    return 0;
}

int checkModelFiles(const std::string& executable, const std::string& outputFile, int mode, int spreadsheet) {
    if (mode == 2) return !outputFile.empty() && ::access(outputFile.c_str(), R_OK) == 0 ? 1 : 0;
    if (mode == 1) {
        if (spreadsheet || executable == "Excel Application") return 1;
        return !executable.empty() && ::access(executable.c_str(), R_OK) == 0 ? 1 : 0;
    }
    return 0;
}

} // namespace tarvex
