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
    void inverseMany(double* values, int64_t count) const override;

    int count() const { return intervals.count(); }
    Interval* intervalAt(int i) const { return intervals.intervalAt(i); }
    void removeAt(int i) { intervals.removeAt(i); }
    void clear() { intervals.clear(); }
    // Appends an interval; refused past the size limit or when it starts
    // before the right end of the last one.
    [[nodiscard]] int addInterval(std::unique_ptr<Interval> interval);
    [[nodiscard]] int checkWeights() { return intervals.checkWeights(errorText_); }

protected:
    void writeData(std::ostream& out) const override;
    [[nodiscard]] int readData(std::istream& in) override;
    // A new, default interval of the kind this class stores.
    virtual std::unique_ptr<Interval> newInterval() const;
    // For LogUniform: no default interval, the caller fills the sequence.
    struct NoDefault {};
    explicit Uniform(NoDefault) {}
    Uniform(const Uniform& other, NoDefault) : Distribution(other) {}
    void copyIntervals(const Uniform& other, bool logIntervals);
    // Share of an interval's weight below x, for a <= x <= c.
    virtual double partialWeight(const Interval& iv, double x) const;
    template <class Bounds>
    static double linearShare(const Bounds& iv, double x) {
        return (x - iv.left) * iv.weight / (iv.right - iv.left);
    }

    // P(X <= x) over the intervals get(0) ... get(count - 1): the whole
    // weights of those below x, then the share of the one that holds it.
    template <class Get, class Share>
    static double cumulativeOver(std::size_t count, const Get& get, const Share& share, double x) {
        double sum = 0.0;
        std::size_t k = 0;
        while (k < count && get(k).right < x) sum += get(k++).weight;
        if (k < count && get(k).left <= x && x <= get(k).right) sum += share(get(k), x);
        return sum;
    }

    // inverseMany over a flat copy of the intervals, with `share` the
    // class's partialWeight.
    template <class Share>
    void searchIntervals(const Share& share, double* values, int64_t count) const {
        struct Span {
            double left, right, weight;
        };
        std::vector<Span> spans;
        spans.reserve(intervals.items.size());
        for (const auto& iv : intervals.items) spans.push_back({iv->left, iv->right, iv->weight});
        const Span* first = spans.data();
        const std::size_t n = spans.size();
        auto cumulativeOfSpans = [first, n, &share](double x) {
            return cumulativeOver(n, [first](std::size_t k) -> const Span& { return first[k]; }, share, x);
        };
        InverseSearch::many(table_, inverseRule(), cumulativeOfSpans, values, count);
    }
    // Density inside an interval.
    virtual double intervalDensity(const Interval& iv, double x) const;

    IntervalSequence intervals;
};

} // namespace tarvex
