#pragma once
// The Level E model solved in the Laplace domain, in the time tau = t - T since
// the containment failed: the delay is taken out by hand, since an inversion of
// e^(-sT) F(s) would have to follow an integrand that grows along the contour.
//
// Near field: after T each nuclide leaves the repository at its leach rate
// times its inventory, the chain still decaying and growing in. Before T the
// inventories only decay (Bateman), computed here in closed form.
//
// Geosphere: two layers in series, each a semi-infinite medium whose flux is
// taken at x = l, with advection, dispersion (d = l/10), retention and decay,
// the daughter growing in from the decay of its sorbed parent. For the flux-
// averaged concentration the flux inlet becomes a Dirichlet inlet, so that a
// layer maps the transform of its inflow onto that of its outflow:
//   g_n = R_n (s + lambda_n),  mu_n = -(2 g_n / v) / (1 + sqrt(1 + 4 d g_n / v))
//   iodine:  J_out = J_in e^(mu l)
//   chain:   J_out,i = sum_{j<=i} a_ij e^(mu_j l), a_ij = lambda_(i-1) R a_(i-1),j / (g_i - g_j)
//            for j < i, a_ii = J_in,i - sum_{j<i} a_ij.
// One retention factor for the whole chain in a layer makes g_i - g_j = R
// (lambda_i - lambda_j): never zero, and a_ij needs no complex division.
//
// Biosphere: dose rate = (w / W) sum_n beta_n J_n at the end of layer 2, Sv/yr.
#include <array>
#include <complex>

#include "model/levele/LevelEConstants.h"
#include "model/levele/LevelEFactors.h"

namespace tarvex::levele {

using Complex = std::complex<double>;
using NuclideTransforms = std::array<Complex, kNuclideCount>;

class LaplaceSolution {
public:
    explicit LaplaceSolution(const FactorValues& factors);

    // The transforms of the four nuclides' dose rates (Sv/yr) at s, the
    // release starting at tau = 0. Nothing is checked: s must stay off the
    // negative real axis and its poles.
    void doseTransforms(Complex s, NuclideTransforms& out) const;

    // Inventories (mol) when the containment fails.
    const std::array<double, kNuclideCount>& inventoryAtFailure() const { return inventory_; }

    double containmentTime() const { return containmentTime_; }

private:
    struct Layer {
        double velocity;
        double dispersion;                 // dispersion length, m
        double length;
        double iodineRetention;
        double chainRetention;
    };
    void passLayer(const Layer& layer, Complex s, NuclideTransforms& flux) const;

    double containmentTime_;
    double iodineLeachRate_;
    double chainLeachRate_;
    std::array<Layer, 2> layers_;
    double dilution_;  // w / W
    std::array<double, kNuclideCount> inventory_{};
};

}  // namespace tarvex::levele
