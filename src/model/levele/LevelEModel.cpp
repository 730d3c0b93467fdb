#include "model/levele/LevelEModel.h"

namespace tarvex::levele {

double LevelEDoses::total(int time) const {
    double sum = 0.0;
    for (double d : byNuclide[static_cast<std::size_t>(time)]) sum += d;
    return sum;
}

NuclideDoses LevelEModel::dosesAt(const LaplaceSolution& solution, double t) const {
    const double tau = t - solution.containmentTime();
    if (!(tau > 0.0)) return NuclideDoses{};
    return talbot_.invert<kNuclideCount>(
        [&solution](Complex s, NuclideTransforms& values) { solution.doseTransforms(s, values); }, tau);
}

LevelEDoses LevelEModel::run(const FactorValues& factors) const {
    const LaplaceSolution solution(factors);
    LevelEDoses doses;
    for (int i = 0; i < kTimeCount; ++i)
        doses.byNuclide[static_cast<std::size_t>(i)] = dosesAt(solution, kTimes[static_cast<std::size_t>(i)]);
    return doses;
}

}  // namespace tarvex::levele
