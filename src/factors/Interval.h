#pragma once
// One interval of a piecewise uniform factor, or one point of a discrete
// factor (its `left` being the value of the point).
#include <cmath>
#include <string>

namespace tarvex {

class Interval {
public:
    Interval() = default;
    Interval(double l, double r, double w) : left(l), right(r), weight(w) {}
    Interval(const Interval&) = default;
    Interval& operator=(const Interval&) = default;
    virtual ~Interval() = default;

    // Stores the bounds when left < right; otherwise sets errorText and
    // leaves them.
    [[nodiscard]] virtual int setBounds(double l, double r);

    double left = 0.0;
    double right = 1.0;
    double weight = 1.0;
    std::string errorText;
};

// An interval of a log-uniform factor: both bounds must be positive.
class LogInterval : public Interval {
public:
    LogInterval() : Interval(1.0, std::exp(1.0), 1.0) {}
    LogInterval(double l, double r, double w) : Interval(l, r, w) {}

    [[nodiscard]] int setBounds(double l, double r) override;
};

} // namespace tarvex
