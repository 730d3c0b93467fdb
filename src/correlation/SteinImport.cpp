// Importing a Stein sample into a FactorList.
//
// Stein file, text:
//   R, the number of rows (at least 1)
//   C, the number of columns (at least 0); the rest of its line is skipped
//   C lines, each a factor name of at most 255 characters
//   R rows of C numbers in free white-space format
#include <algorithm>
#include <cstdio>
#include <fstream>

#include "correlation/FactorList.h"
#include "factors/FactorName.h"
#include "factors/Interval.h"
#include "common/TextLines.h"
#include "factors/Uniform.h"

namespace tarvex {

namespace {

constexpr const char* kNoFactorsText = "Error loading stein file. No factors to import.";
constexpr const char* kCountText =
    "Error loading stein file. The number of imported factors is different from the loaded configuration.";
constexpr const char* kCorruptText = "Error loading stein file. Current data may be inconsistent or corrupt.";
constexpr const char* kNameText = "Error loading stein file. ";

// Names are read by a line read into 256 bytes.
constexpr std::size_t kSteinNameLineBytes = 256;

// A name may not be empty nor begin with a digit or a forbidden character.
bool acceptableSteinName(const std::string& name) {
    if (name.empty()) return false;
    const unsigned char first = static_cast<unsigned char>(name[0]);
    return !(first >= '0' && first <= '9') && !isForbiddenNameCharacter(first);
}

// The empirical distribution of one column: an interval between each pair of
// successive distinct sorted values, weighted by the share of the sample the
// step stands for. Returns 0 for a column that makes no interval at all (one
// value only, or a single row).
int buildEmpirical(Uniform& factor, std::vector<double> values) {
    std::sort(values.begin(), values.end());
    factor.clear();
    const double steps = static_cast<double>(values.size()) - 1.0;
    int made = 0;
    long c = 1;
    Interval* last = nullptr;
    for (std::size_t k = 1; k < values.size(); ++k) {
        if (values[k] == values[k - 1]) {
            ++c;
            if (k + 1 == values.size()) {
                if (!last) return 0;
                // A refused weight stays as it was; the interval says why.
                (void)last->setWeight(last->weight + static_cast<double>(c - 1) / steps);
            }
            continue;
        }
        auto iv = std::make_unique<Interval>(values[k - 1], values[k], 1.0);
        (void)iv->setWeight(static_cast<double>(c) / steps);
        Interval* raw = iv.get();
        if (factor.addInterval(std::move(iv))) last = raw;
        ++made;
        c = 1;
    }
    return made > 0 ? 1 : 0;
}

} // namespace

int FactorList::importStein(const std::string& fileName, int mode) {
    std::ifstream in(fileName);
    int32_t rows = 0, columns = 0;
    if (!in || !(in >> rows) || rows < 1) {
        errorText_ = kNoFactorsText;
        return 0;
    }
    if (!(in >> columns) || columns < 0) {
        errorText_ = kNoFactorsText;
        return 0;
    }
    if (mode != 0 && factorCount() > 0 && columns != factorCount()) {
        errorText_ = kCountText;
        return 0;
    }
    skipLine(in);
    if (mode == 1) clear();

    for (int32_t c = 0; c < columns; ++c) {
        std::string name;
        if (!readLineInBuffer(in, name, kSteinNameLineBytes) || !acceptableSteinName(name)) {
            if (mode == 1) computeFactorOrder();
            errorText_ = kCorruptText;
            return 0;
        }
        if (mode == 1) {
            auto factor = std::make_unique<Uniform>();
            // A name the factor cannot take would be saved into a factor
            // file that no longer loads.
            if (!factor->setName(name)) {
                computeFactorOrder();
                errorText_ = std::string(kNameText) + factor->errorText();
                return 0;
            }
            // The sampling order is made once below: made after every column,
            // a wide file cost time in the square of its columns.
            appendFactor(std::move(factor));
        }
    }
    if (mode == 1) computeFactorOrder();
    steinFileName = fileName;
    modified = 1;

    std::vector<double> values;
    const int64_t total = static_cast<int64_t>(rows) * columns;
    for (int64_t k = 0; k < total; ++k) {
        double v = 0.0;
        if (!(in >> v)) {
            errorText_ = kCorruptText;
            return 0;
        }
        values.push_back(v);
    }
    steinInfo.assign(rows, columns, std::move(values));

    if (mode != 1) {
        correlationMode = kSteinCorrelation;
        return 1;
    }
    for (int32_t c = 0; c < columns; ++c) {
        auto* uniform = dynamic_cast<Uniform*>(getFactor(c));
        if (!uniform) continue;
        if (!buildEmpirical(*uniform, steinInfo.column(c))) {
            char text[160];
            std::snprintf(text, sizeof text,
                          "Error loading stein file. Column %d holds a single value: no distribution can be made of it.",
                          c + 1);
            errorText_ = text;
            return 0;
        }
    }
    return 1;
}

} // namespace tarvex
