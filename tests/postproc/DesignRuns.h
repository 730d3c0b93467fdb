#pragma once
// Samples of the program's own designs run through models evaluated here,
// and the analytic fractions they are checked against.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <numbers>
#include <string>
#include <vector>

#include "../sampling/SamplingFixtures.h"
#include "postproc/OutputTable.h"
#include "sampling/GenerationLoop.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex::test {

using Model = std::function<double(const double* x)>;

// Generates the design and fills `table` with one column per model, in run order.
inline void runModels(PrepConfiguration& prep, const std::vector<Model>& models, OutputTable& table) {
    ASSERT_EQ(runGeneration(prep, nullptr).result, kGenerationDone) << prep.errorText();
    ASSERT_EQ(table.allocate(int32_t(models.size())), 1);
    std::vector<double> x(static_cast<size_t>(prep.samples.columnCount())), y(models.size());
    for (int32_t r = 0; r < prep.samples.rowCount(); ++r) {
        ASSERT_EQ(prep.samples.getRow(r, x.data()), 1);
        for (size_t m = 0; m < models.size(); ++m) y[m] = models[m](x.data());
        ASSERT_GT(table.addRow(y.data()), 0);
    }
}

// Ishigami's sin x1 + a sin^2 x2 + b x3^4 sin x1 on [-pi, pi]^3, a = 7,
// b = 0.1: V1 = (1 + b pi^4 / 5)^2 / 2, V2 = a^2 / 8, V13 = b^2 pi^8 (1/18 - 1/50).
struct Ishigami {
    static constexpr double a = 7.0, b = 0.1, pi4 = std::numbers::pi * std::numbers::pi * std::numbers::pi * std::numbers::pi;
    static double value(double x1, double x2, double x3) {
        return std::sin(x1) + a * std::sin(x2) * std::sin(x2) + b * x3 * x3 * x3 * x3 * std::sin(x1);
    }
    static constexpr double v1 = (1.0 + b * pi4 / 5.0) * (1.0 + b * pi4 / 5.0) / 2.0, v2 = a * a / 8.0,
                            v13 = b * b * pi4 * pi4 * (1.0 / 18.0 - 1.0 / 50.0), v = v1 + v2 + v13;
    static constexpr double first[3] = {v1 / v, v2 / v, 0.0};
    static constexpr double total[3] = {(v1 + v13) / v, v2 / v, v13 / v};
};

// Sobol's G function, prod (|4 x_i - 2| + a_i) / (1 + a_i) on [0, 1]^k:
// V_i = 1 / (3 (1 + a_i)^2), V = prod (1 + V_i) - 1, total V_i prod_{j != i} (1 + V_j).
struct GFunction {
    std::vector<double> a;
    double value(const double* x) const {
        double y = 1.0;
        for (size_t i = 0; i < a.size(); ++i) y *= (std::fabs(4.0 * x[i] - 2.0) + a[i]) / (1.0 + a[i]);
        return y;
    }
    double partial(size_t i) const { return 1.0 / (3.0 * (1.0 + a[i]) * (1.0 + a[i])); }
    double fraction(size_t i, bool total) const {
        double all = 1.0, with = partial(i);
        for (size_t j = 0; j < a.size(); ++j) {
            all *= 1.0 + partial(j);
            if (j != i && total) with *= 1.0 + partial(j);
        }
        return with / (all - 1.0);
    }
};

template <class Stats, class Getter>
std::vector<double> valuesOf(const Stats& stats, Getter get, int32_t variable) {
    std::vector<double> v(stats.records.size());
    EXPECT_EQ((stats.*get)(variable, v.data()), 1);
    return v;
}

}  // namespace tarvex::test
