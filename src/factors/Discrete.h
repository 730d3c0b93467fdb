#pragma once
#include "factors/Distribution.h"
#include "factors/IntervalSequence.h"

namespace tarvex {

// Finitely many values with weights. Each point is an Interval whose `left`
// is the value; points are kept in the order given (ascending by the caller).
class Discrete : public Distribution {
public:
    Discrete();
    // Takes every point; a weight outside (0, 1] is not copied: that point
    // keeps weight 1 and its own errorText says "Weight value error".
    Discrete(const Discrete& other);

    int getType() const override { return kDiscrete; }
    std::unique_ptr<Factor> clone() const override { return std::make_unique<Discrete>(*this); }

    double mean() const override;
    double stdDev() const override;
    double cumulative(double x) const override;
    // The weight of the first point equal to x, else 0.
    double density(double x) const override;
    // Walks the running sum of weights until u is below it: u equal to a
    // running sum moves on to the next point. u at or above the total weight
    // gives the last point.
    virtual double discreteInverse(double u) const;

    int count() const { return intervals.count(); }
    Interval* intervalAt(int i) const { return intervals.intervalAt(i); }
    void removeAt(int i) { intervals.removeAt(i); }
    void clear() { intervals.clear(); }
    // Appends a point; refused past the size limit or when a point with the
    // same value exists.
    [[nodiscard]] int addPoint(std::unique_ptr<Interval> point);
    [[nodiscard]] int checkWeights() { return intervals.checkWeights(errorText_); }

protected:
    void writeData(std::ostream& out) const override;
    [[nodiscard]] int readData(std::istream& in) override;

private:
    IntervalSequence intervals;
};

} // namespace tarvex
