#include "postproc/StudentTable.h"

#include <cmath>

namespace tarvex {

namespace {

constexpr int kRows = 34;
constexpr int kLevels = 7;

// Rows: df 1 to 30, then 40, 60, 120, infinity.
constexpr double kTable[kRows][kLevels] = {
    {1.000, 3.078, 6.314, 12.706, 31.821, 63.657, 636.619},
    {0.816, 1.886, 2.920, 4.303, 6.965, 9.925, 31.598},
    {0.765, 1.638, 2.353, 3.182, 4.541, 5.841, 12.941},
    {0.741, 1.533, 2.132, 2.776, 3.747, 4.604, 8.610},
    {0.727, 1.476, 2.015, 2.571, 3.365, 4.032, 6.859},
    {0.718, 1.440, 1.943, 2.447, 3.143, 3.707, 5.959},
    {0.711, 1.415, 1.895, 2.365, 2.998, 3.499, 5.405},
    {0.706, 1.397, 1.860, 2.306, 2.896, 3.355, 5.041},
    {0.703, 1.383, 1.833, 2.262, 2.821, 3.250, 4.781},
    {0.700, 1.372, 1.812, 2.228, 2.764, 3.169, 4.587},
    {0.697, 1.363, 1.796, 2.201, 2.718, 3.106, 4.437},
    {0.695, 1.356, 1.782, 2.189, 2.681, 3.055, 4.318},
    {0.694, 1.350, 1.771, 2.160, 2.650, 3.012, 4.221},
    {0.692, 1.345, 1.761, 2.145, 2.624, 2.977, 4.140},
    {0.691, 1.341, 1.753, 2.131, 2.602, 2.947, 4.073},
    {0.690, 1.337, 1.746, 2.120, 2.583, 2.921, 4.015},
    {0.689, 1.333, 1.740, 2.110, 2.567, 2.898, 3.965},
    {0.688, 1.330, 1.734, 2.101, 2.552, 2.878, 3.922},
    {0.688, 1.328, 1.729, 2.093, 2.539, 2.861, 3.883},
    {0.687, 1.325, 1.725, 2.086, 2.528, 2.845, 3.850},
    {0.686, 1.323, 1.721, 2.080, 2.518, 2.831, 3.819},
    {0.686, 1.321, 1.717, 2.074, 2.508, 2.819, 3.792},
    {0.685, 1.319, 1.714, 2.069, 2.500, 2.807, 3.767},
    {0.685, 1.318, 1.711, 2.064, 2.492, 2.797, 3.745},
    {0.684, 1.316, 1.708, 2.060, 2.485, 2.787, 3.725},
    {0.684, 1.315, 1.706, 2.056, 2.479, 2.779, 3.707},
    {0.684, 1.314, 1.703, 2.052, 2.473, 2.771, 3.690},
    {0.683, 1.313, 1.701, 2.048, 2.467, 2.763, 3.674},
    {0.683, 1.311, 1.699, 2.045, 2.462, 2.756, 3.659},
    {0.683, 1.310, 1.697, 2.042, 2.457, 2.750, 3.646},
    {0.681, 1.303, 1.684, 2.021, 2.423, 2.704, 3.551},
    {0.679, 1.296, 1.671, 2.000, 2.390, 2.660, 3.460},
    {0.677, 1.289, 1.658, 1.980, 2.358, 2.617, 3.373},
    {0.674, 1.282, 1.645, 1.960, 2.326, 2.576, 3.291},
};
constexpr int kRow40 = 30, kRow60 = 31, kRow120 = 32, kRowInfinity = 33;

struct Window {
    double lower, upper;
};

// Both limits of every window lie outside it.
bool inside(double c, const Window& w) { return c > w.lower && c < w.upper; }

}  // namespace

double studentQuantile(int32_t degreesOfFreedom, double confidence) {
    static constexpr Window windows[kLevels] = {
        {0.74, 0.76}, {0.89, 0.91}, {0.94, 0.96}, {0.97, 0.98}, {0.989, 0.991}, {0.9949, 0.9951}, {0.9994, 0.9996},
    };
    int column = -1;
    for (int k = 0; k < kLevels; ++k)
        if (inside(confidence, windows[k])) column = k;
    if (column < 0 || degreesOfFreedom < 1) return -1.0;

    auto mean = [column](int a, int b) { return (kTable[a][column] + kTable[b][column]) / 2.0; };
    if (degreesOfFreedom <= 30) return kTable[degreesOfFreedom - 1][column];
    if (degreesOfFreedom <= 40) return mean(29, kRow40);
    if (degreesOfFreedom <= 60) return mean(kRow40, kRow60);
    if (degreesOfFreedom <= 120) return mean(kRow60, kRow120);
    return kTable[kRowInfinity][column];
}

double kolmogorovHalfWidth(int32_t n, double confidence) {
    static constexpr struct {
        Window window;
        double constant;
    } levels[] = {
        {{0.795, 0.805}, 1.07}, {{0.895, 0.905}, 1.22}, {{0.945, 0.955}, 1.36},
        {{0.975, 0.985}, 1.52}, {{0.985, 0.995}, 1.63},
    };
    for (const auto& level : levels)
        if (inside(confidence, level.window)) return level.constant / std::sqrt(static_cast<double>(n));
    return -1.0;
}

}  // namespace tarvex
