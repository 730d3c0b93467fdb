#pragma once
#include "factors/Distribution.h"
#include "factors/IntervalSequence.h"

namespace tarvex {

// Piecewise uniform law: weighted intervals in ascending order, touching or
// with gaps, each uniform inside.
class Uniform : public Distribution {
public:
    Uniform();
    // Takes every interval; a weight outside (0, 1] is not copied: that
    // interval keeps weight 1 and its own errorText says "Weight value error".
    Uniform(const Uniform& other);

    int getType() const override { return kUniform; }
    std::unique_ptr<Factor> clone() const override { return std::make_unique<Uniform>(*this); }

    double mean() const override;
    double stdDev() const override;
    double cumulative(double x) const override;
    double density(double x) const override;

    int count() const { return intervals.count(); }
    Interval* intervalAt(int i) const { return intervals.intervalAt(i); }
    void removeAt(int i) { intervals.removeAt(i); }
    void clear() { intervals.clear(); }
    // Appends an interval; refused past the size limit or when it starts
    // before the right end of the last one.
    int addInterval(std::unique_ptr<Interval> interval);
    int checkWeights() { return intervals.checkWeights(errorText); }

protected:
    void writeData(std::ostream& out) const override;
    int readData(std::istream& in) override;
    // A new, default interval of the kind this class stores.
    virtual std::unique_ptr<Interval> newInterval() const;
    // For LogUniform: no default interval, the caller fills the sequence.
    struct NoDefault {};
    explicit Uniform(NoDefault) {}
    Uniform(const Uniform& other, NoDefault) : Distribution(other) {}
    void copyIntervals(const Uniform& other, bool logIntervals);
    // Share of an interval's weight below x, for a <= x <= c.
    virtual double partialWeight(const Interval& iv, double x) const;
    // Density inside an interval.
    virtual double intervalDensity(const Interval& iv, double x) const;

    IntervalSequence intervals;
};

} // namespace tarvex
