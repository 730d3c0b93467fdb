#pragma once
// A factor with a probability distribution, sampled by mapping a uniform
// number through its inverse cumulative distribution.
//
// The inverse works from a table of 101 points (lower end, the 99 percentiles,
// upper end) built once per column by prepareInverse from nothing but mean,
// stdDev and cumulative; each inverse then bisects inside one percentile cell,
// about a dozen cumulative calls per row instead of a full root search.
#include <cstdint>
#include <vector>

#include "factors/Factor.h"
#include "factors/InverseSearch.h"
#include "factors/TablePoint.h"

namespace tarvex {

class Distribution : public Factor {
public:
    Distribution() = default;
    // The copy starts with an empty table.
    Distribution(const Distribution& other) : Factor(other) {}

    // Appends the 101 table points (the table is not emptied first: pair each
    // call with clearTable). Returns 0 when a search fails to converge.
    [[nodiscard]] virtual int prepareInverse();
    virtual double mean() const = 0;
    virtual double stdDev() const = 0;
    // P(X <= x); -1.0 when the underlying numeric routine refuses its arguments.
    virtual double cumulative(double x) const = 0;
    // Factor value for u in (0,1); needs a prepared table.
    virtual double inverse(double u) const;
    // inverse of each value, in place, with the same results; several
    // searches run interleaved. A class whose cumulative has a closed form
    // runs them on an inlined copy of it.
    virtual void inverseMany(double* values, int64_t count) const;
    // Density at x (for a discrete factor, the mass of the point).
    virtual double density(double x) const = 0;

    void clearTable() { table_.clear(); }
    // Empty, or the 101 points inverse searches in.
    const std::vector<TablePoint>& table() const { return table_; }

protected:
    std::vector<TablePoint> table_;

    // How inverse maps u, picks its table cell and ends its search.
    virtual InverseRule inverseRule() const { return InverseRule{}; }
};

} // namespace tarvex
