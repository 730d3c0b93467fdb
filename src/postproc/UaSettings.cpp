#include "postproc/UaSettings.h"

#include "postproc/UaStats.h"

namespace tarvex {

namespace {

struct Window {
    double lower, upper;
};

template <std::size_t N>
int choiceOf(double level, const Window (&windows)[N]) {
    for (std::size_t k = 0; k < N; ++k)
        if (level > windows[k].lower && level < windows[k].upper) return static_cast<int>(k);
    return -1;
}

}  // namespace

int tchebyLevelChoice(double level) {
    static constexpr Window windows[] = {{0.74, 0.76},   {0.89, 0.91},   {0.94, 0.96},    {0.974, 0.976},
                                         {0.989, 0.991}, {0.994, 0.996}, {0.9994, 0.9996}};
    return choiceOf(level, windows);
}

int kolmogorovLevelChoice(double level) {
    static constexpr Window windows[] = {{0.89, 0.91}, {0.94, 0.96}, {0.979, 0.981}, {0.989, 0.991}};
    return choiceOf(level, windows);
}

bool logScaleAvailable(const UaStats& stats) {
    for (int32_t c = 0; c < stats.variableCount; ++c)
        if (stats.minimum(c) < 0.0) return false;
    return true;
}

}  // namespace tarvex
