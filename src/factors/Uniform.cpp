#include "factors/Uniform.h"

#include <cmath>
#include <istream>
#include <ostream>

namespace tarvex {

Uniform::Uniform() {
    setTypeName("Uniform");
    setDefaultName("nonameUnif");
    intervals.append(std::make_unique<Interval>());
}

Uniform::Uniform(const Uniform& other) : Distribution(other) {
    setTypeName("Uniform");
    copyIntervals(other, false);
}

void Uniform::copyIntervals(const Uniform& other, bool logIntervals) {
    for (const auto& src : other.intervals.items) {
        std::unique_ptr<Interval> iv = logIntervals ? std::make_unique<LogInterval>() : std::make_unique<Interval>();
        iv->left = src->left;
        iv->right = src->right;
        (void)iv->setWeight(src->weight);  // a refused weight stays 1, the interval says why
        intervals.append(std::move(iv));
    }
}

double Uniform::mean() const {
    double m = 0.0;
    for (const auto& iv : intervals.items) m += (iv->left + iv->right) / 2.0 * iv->weight;
    return m;
}

double Uniform::stdDev() const {
    double m2 = 0.0;
    for (const auto& iv : intervals.items) {
        const double a = iv->left, c = iv->right;
        m2 += (c * c * c - a * a * a) * iv->weight / (3.0 * (c - a));
    }
    const double m = mean();
    return std::sqrt(m2 - m * m);
}

double Uniform::partialWeight(const Interval& iv, double x) const {
    return linearShare(iv, x);
}

double Uniform::intervalDensity(const Interval& iv, double) const {
    return iv.weight / (iv.right - iv.left);
}

double Uniform::cumulative(double x) const {
    const auto& items = intervals.items;
    return cumulativeOver(
        items.size(), [&items](std::size_t k) -> const Interval& { return *items[k]; },
        [this](const Interval& iv, double at) { return partialWeight(iv, at); }, x);
}

void Uniform::inverseMany(double* values, int64_t count) const {
    searchIntervals([](const auto& iv, double x) { return linearShare(iv, x); }, values, count);
}

double Uniform::density(double x) const {
    for (const auto& iv : intervals.items) {
        if (!(iv->left <= x)) break;
        if (x <= iv->right) return intervalDensity(*iv, x);
    }
    return 0.0;
}

int Uniform::addInterval(std::unique_ptr<Interval> interval) {
    if (intervals.items.size() > IntervalSequence::kMaxEntries) {
        errorText_ = "Too much intervals stored";
        return 0;
    }
    if (!intervals.items.empty() && interval->left < intervals.items.back()->right) {
        errorText_ = "Interval to insert overloads previous intervals stored";
        return 0;
    }
    intervals.append(std::move(interval));
    return 1;
}

std::unique_ptr<Interval> Uniform::newInterval() const {
    return std::make_unique<Interval>();
}

// Count on the data line, then one line per interval: left, right, weight.
void Uniform::writeData(std::ostream& out) const {
    intervals.write(out);
}

// The intervals are taken as they stand: no test of weights, order or bounds.
int Uniform::readData(std::istream& in) {
    return intervals.read(in, [this] { return newInterval(); });
}

} // namespace tarvex
