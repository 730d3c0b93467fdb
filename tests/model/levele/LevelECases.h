#pragma once
// The four test cases of the Level E model and the reference values computed
// for them elsewhere: in 40-digit arithmetic (the doses, an oracle), and by a
// double-precision program of the same solution (the nuclides' shares, four
// digits).
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "model/levele/LevelEFactors.h"

namespace tarvex::levele::test {

// T kI kC v1 l1 RI1 RC1 v2 l2 RI2 RC2 W: the midpoint of the unit cube, a fast
// path, a slow path and a medium one.
inline std::array<FactorValues, 4> referenceCases() {
    return {{
        {550, std::pow(10.0, -2.5), std::pow(10.0, -5.5), 0.01, 300, 3, 16.5, std::pow(10.0, -1.5), 125, 3, 16.5, 1e6},
        {500, 5e-3, 5e-6, 0.08, 120, 1.2, 4, 0.08, 60, 1.2, 4, 2e5},
        {900, 2e-3, 2e-6, 2e-3, 450, 4.5, 25, 2e-2, 180, 4.5, 25, 5e6},
        {300, 8e-3, 8e-6, 1e-2, 250, 2, 10, 5e-2, 100, 2, 10, 1e6},
    }};
}

// One line of a reference file: the time and its numbers.
struct ReferenceRow {
    double time = 0.0;
    std::vector<double> values;
};

// The rows of each "# case c" block of a file in tests/model/levele/data.
inline std::vector<std::vector<ReferenceRow>> readReference(const std::string& name) {
    std::ifstream in(std::string(TARVEX_SOURCE_DIR) + "/tests/model/levele/data/" + name);
    EXPECT_TRUE(in) << name;
    std::vector<std::vector<ReferenceRow>> cases;
    std::string line;
    while (std::getline(in, line)) {
        if (line.rfind("# case", 0) == 0) {
            cases.emplace_back();
            continue;
        }
        if (line.empty() || line[0] == '#' || cases.empty()) continue;
        std::istringstream fields(line);
        ReferenceRow row;
        if (!(fields >> row.time)) continue;  // a column heading
        for (double x; fields >> x;) row.values.push_back(x);
        cases.back().push_back(row);
    }
    return cases;
}

inline double peakOf(const std::vector<ReferenceRow>& rows) {
    double peak = 0.0;
    for (const ReferenceRow& row : rows) peak = std::max(peak, row.values[0]);
    return peak;
}

// The tolerance the references hold to: 1e-10 of the run's peak plus 1e-6 of the value.
inline double tolerance(double reference, double peak) { return 1e-10 * peak + 1e-6 * std::fabs(reference); }

}  // namespace tarvex::levele::test
