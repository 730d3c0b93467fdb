#pragma once
// Special functions under the factor family: normal, gamma and beta
// distribution functions with the DCDFLIB calling conventions (every argument
// by reference, a selector `which`, a status and the violated bound), and the
// logarithms of the gamma and beta functions.
//
// Only the forward mode (which == 1: p and q from x and the parameters) is
// provided. A `which` below 1 is refused with status -1 and bound 1.0, any
// other value with status -1 and bound 4.0, the parameter-search modes 2 to 4
// of the published library included. When a check fails, p and q are left as
// they were.
//
// Not re-entrant in the published library; these versions keep no state.
//
// normalTails, the standard normal law under cdfNormal, is in NormalTails.h.
#include "factors/NormalTails.h"

namespace tarvex {

// P(X <= x) for a normal law of the given mean and standard deviation.
// Checks: sd > 0 (status -6, bound 0).
void cdfNormal(int& which, double& p, double& q, double& x, double& mean, double& sd,
               int& status, double& bound);

// Gamma law of the given shape whose `scale` is a rate: p = P(shape, x*scale).
// Checks in order: x >= 0 (-4), shape > 0 (-5), scale > 0 (-6), bound 0.
void cdfGamma(int& which, double& p, double& q, double& x, double& shape, double& scale,
              int& status, double& bound);

// Beta law: p = I_x(a, b), with y = 1 - x passed alongside.
// Checks in order: 0 <= x <= 1 (-4), 0 <= y <= 1 (-5), a > 0 (-6), b > 0 (-7),
// the bound being 0 below the range and 1 above; then |x + y - 1| <= 3 eps
// (status 4, bound 0 when x + y < 1, else 1).
void cdfBeta(int& which, double& p, double& q, double& x, double& y, double& a, double& b,
             int& status, double& bound);

// ln Gamma(a) for a > 0.
double lnGamma(const double* a);
double lnGamma(double a);

// ln B(a, b) for a, b > 0, accurate also where B itself underflows.
double lnBeta(const double* a, const double* b);
double lnBeta(double a, double b);

} // namespace tarvex
