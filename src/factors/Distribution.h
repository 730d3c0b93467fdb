#pragma once
// A factor with a probability distribution, sampled by mapping a uniform
// number through its inverse cumulative distribution.
//
// The inverse works from a table of 101 points (lower end, the 99 percentiles,
// upper end) built once per column by prepareInverse from nothing but mean,
// stdDev and cumulative; each inverse then bisects inside one percentile cell,
// about a dozen cumulative calls per row instead of a full root search.
#include <vector>

#include "factors/Factor.h"
#include "factors/TablePoint.h"

namespace tarvex {

class Distribution : public Factor {
public:
    Distribution() = default;
    // The copy starts with an empty table.
    Distribution(const Distribution& other) : Factor(other) {}

    // Appends the 101 table points (the table is not emptied first: pair each
    // call with clearTable). Returns 0 when a search fails to converge.
    virtual int prepareInverse();
    virtual double mean() const = 0;
    virtual double stdDev() const = 0;
    // P(X <= x); -1.0 when the underlying numeric routine refuses its arguments.
    virtual double cumulative(double x) const = 0;
    // Factor value for u in (0,1); needs a prepared table.
    virtual double inverse(double u) const;
    // Density at x (for a discrete factor, the mass of the point).
    virtual double density(double x) const = 0;

    void clearTable() { table.clear(); }

    std::vector<TablePoint> table;

protected:
    // Bisects between two table points towards the x whose cumulative is u,
    // the tolerance following the lower point; at most maxPasses passes when
    // maxPasses >= 0, otherwise until the tolerance is met or the interval
    // cannot be split any further.
    double bisect(TablePoint lo, TablePoint hi, double u, double relTol, int maxPasses) const;
};

} // namespace tarvex
