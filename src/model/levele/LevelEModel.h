#pragma once
// The Level E model (OECD/NEA PSACOIN Level E, 1989): given the twelve factor
// values, the dose rates of I-129, Np-237, U-233 and Th-229 to a person drinking
// the stream's water, at the 26 output times. The Laplace-domain solution is
// inverted by the fixed Talbot contour with 32 nodes at each time.
//
// Values come as computed, noise included: about 1e-11 of a run's peak, of
// either sign, below which nothing is significant. Whoever writes them decides
// what to make of a negative.
#include <array>

#include "model/levele/LaplaceSolution.h"
#include "model/levele/LevelEConstants.h"
#include "model/levele/LevelEFactors.h"
#include "model/levele/TalbotInversion.h"

namespace tarvex::levele {

using NuclideDoses = std::array<double, kNuclideCount>;

struct LevelEDoses {
    // Sv/yr, by output time (kTimes) and nuclide.
    std::array<NuclideDoses, kTimeCount> byNuclide{};
    // The sum over the four nuclides.
    double total(int time) const;
};

class LevelEModel {
public:
    LevelEModel() = default;

    // The dose rates at the 26 output times. The values are not checked:
    // valueProblem() says which ones the model cannot take.
    LevelEDoses run(const FactorValues& factors) const;

    // The dose rates at any time t (yr), 0 up to the containment time.
    NuclideDoses dosesAt(const LaplaceSolution& solution, double t) const;

private:
    TalbotInversion talbot_;
};

}  // namespace tarvex::levele
