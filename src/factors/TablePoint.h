#pragma once

namespace tarvex {

// One point of a factor's inverse cumulative table: the cumulative
// probability p reached at x.
struct TablePoint {
    double x = 0.0;
    double p = 0.0;
};

} // namespace tarvex
