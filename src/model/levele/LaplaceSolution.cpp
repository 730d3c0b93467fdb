#include "model/levele/LaplaceSolution.h"

#include <cmath>

namespace tarvex::levele {

namespace {

// (e^(-aT) - e^(-bT)) / (b - a), the Bateman term of a parent a and its
// daughter b. The decay constants lie so close together against 1/T that the
// plain difference of exponentials would keep few digits.
double batemanTerm(double a, double b, double T) {
    return -std::exp(-a * T) * std::expm1(-(b - a) * T) / (b - a);
}

// The outflow exponent mu of one nuclide in a layer. 1 - sqrt(1 + z) would
// cancel for small |z| (small s, short dispersion): this form does not.
Complex outflowExponent(Complex g, double velocity, double dispersion) {
    const Complex z = 4.0 * dispersion * g / velocity;
    return -(2.0 * g / velocity) / (1.0 + std::sqrt(1.0 + z));
}

}  // namespace

LaplaceSolution::LaplaceSolution(const FactorValues& f)
    : containmentTime_(f[kContainmentTime]),
      iodineLeachRate_(f[kIodineLeachRate]),
      chainLeachRate_(f[kChainLeachRate]),
      layers_{{{f[kVelocity1], kDispersionFraction * f[kLength1], f[kLength1], f[kIodineRetention1],
                f[kChainRetention1]},
               {f[kVelocity2], kDispersionFraction * f[kLength2], f[kLength2], f[kIodineRetention2],
                f[kChainRetention2]}}},
      dilution_(kWaterIntake / f[kStreamFlow]) {
    // Before the containment fails the inventories only decay and grow in.
    const double T = containmentTime_;
    const auto& A0 = kInitialInventory;
    const auto& lam = kDecay;
    const double npU = batemanTerm(lam[kNp237], lam[kU233], T);
    const double uTh = batemanTerm(lam[kU233], lam[kTh229], T);
    // The three-member term sum_j e^(-lambda_j T) / prod_(m != j) (lambda_m -
    // lambda_j) is the second divided difference of e^(-xT): built from the
    // two first ones, it keeps its digits.
    const double npUTh = (npU - uTh) / (lam[kTh229] - lam[kNp237]);
    inventory_[kI129] = A0[kI129] * std::exp(-lam[kI129] * T);
    inventory_[kNp237] = A0[kNp237] * std::exp(-lam[kNp237] * T);
    inventory_[kU233] = A0[kU233] * std::exp(-lam[kU233] * T) + A0[kNp237] * lam[kNp237] * npU;
    inventory_[kTh229] = A0[kTh229] * std::exp(-lam[kTh229] * T) + A0[kU233] * lam[kU233] * uTh +
                         A0[kNp237] * lam[kNp237] * lam[kU233] * npUTh;
}

void LaplaceSolution::passLayer(const Layer& layer, Complex s, NuclideTransforms& flux) const {
    const auto& lam = kDecay;
    const double v = layer.velocity;
    const double d = layer.dispersion;
    const double l = layer.length;

    flux[kI129] *= std::exp(outflowExponent(layer.iodineRetention * (s + lam[kI129]), v, d) * l);

    const double R = layer.chainRetention;
    Complex e[3];
    for (int i = 0; i < 3; ++i) e[i] = std::exp(outflowExponent(R * (s + lam[kNp237 + i]), v, d) * l);
    // a_ij with the chain's members 0, 1, 2 = Np, U, Th. With g_i - g_j =
    // R (lambda_i - lambda_j) the retention cancels out of the ratios.
    const double lNp = lam[kNp237], lU = lam[kU233], lTh = lam[kTh229];
    const Complex a00 = flux[kNp237];
    const Complex a10 = lNp / (lU - lNp) * a00;
    const Complex a11 = flux[kU233] - a10;
    const Complex a20 = lU / (lTh - lNp) * a10;
    const Complex a21 = lU / (lTh - lU) * a11;
    const Complex a22 = flux[kTh229] - a20 - a21;
    flux[kNp237] = a00 * e[0];
    flux[kU233] = a10 * e[0] + a11 * e[1];
    flux[kTh229] = a20 * e[0] + a21 * e[1] + a22 * e[2];
}

void LaplaceSolution::doseTransforms(Complex s, NuclideTransforms& out) const {
    const auto& lam = kDecay;
    const double kC = chainLeachRate_;
    // Release rates out of the repository: leach rate times the inventory
    // left, the chain decaying and growing in while it leaches.
    out[kI129] = iodineLeachRate_ * inventory_[kI129] / (s + lam[kI129] + iodineLeachRate_);
    const Complex np = inventory_[kNp237] / (s + lam[kNp237] + kC);
    const Complex u = (inventory_[kU233] + lam[kNp237] * np) / (s + lam[kU233] + kC);
    const Complex th = (inventory_[kTh229] + lam[kU233] * u) / (s + lam[kTh229] + kC);
    out[kNp237] = kC * np;
    out[kU233] = kC * u;
    out[kTh229] = kC * th;

    passLayer(layers_[0], s, out);
    passLayer(layers_[1], s, out);

    for (std::size_t n = 0; n < kNuclideCount; ++n) out[n] *= dilution_ * kDoseFactor[n];
}

}  // namespace tarvex::levele
