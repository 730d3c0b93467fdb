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
    // Stores the weight when it lies in (0, 1]; otherwise says "Weight value
    // error" and keeps the one it had.
    [[nodiscard]] int setWeight(double w);

    const std::string& errorText() const { return errorText_; }

    double left = 0.0;
    double right = 1.0;
    double weight = 1.0;

protected:
    // LogInterval says here why it refused its bounds.
    std::string errorText_;
};

// An interval of a log-uniform factor: both bounds must be positive.
class LogInterval : public Interval {
public:
    LogInterval() : Interval(1.0, std::exp(1.0), 1.0) {}
    LogInterval(double l, double r, double w) : Interval(l, r, w) {}

    [[nodiscard]] int setBounds(double l, double r) override;
};

} // namespace tarvex
