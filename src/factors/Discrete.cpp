#include "factors/Discrete.h"

#include <cmath>
#include <istream>
#include <ostream>

namespace tarvex {

Discrete::Discrete() {
    setTypeName("Discrete");
    setDefaultName("nonameDisc");
    intervals.append(std::make_unique<Interval>(0.0, 1.0, 0.5));
    intervals.append(std::make_unique<Interval>(1.0, 2.0, 0.5));
}

Discrete::Discrete(const Discrete& other) : Distribution(other) {
    setTypeName("Discrete");
    for (const auto& src : other.intervals.items) {
        auto point = std::make_unique<Interval>();
        point->left = src->left;
        point->right = src->right;
        (void)point->setWeight(src->weight);  // a refused weight stays 1, the point says why
        intervals.append(std::move(point));
    }
}

double Discrete::mean() const {
    double m = 0.0;
    for (const auto& p : intervals.items) m += p->weight * p->left;
    return m;
}

double Discrete::stdDev() const {
    double m2 = 0.0;
    for (const auto& p : intervals.items) m2 += p->weight * p->left * p->left;
    const double m = mean();
    return std::sqrt(m2 - m * m);
}

double Discrete::cumulative(double x) const {
    double sum = 0.0;
    for (const auto& p : intervals.items) {
        if (p->left > x) break;
        sum += p->weight;
    }
    return sum;
}

double Discrete::density(double x) const {
    for (const auto& p : intervals.items) {
        if (p->left == x) return p->weight;
    }
    return 0.0;
}

double Discrete::discreteInverse(double u) const {
    const auto& items = intervals.items;
    if (items.empty()) return 0.0;
    std::size_t k = 0;
    double sum = items[0]->weight;
    while (!(u < sum)) {
        if (k + 1 == items.size()) break;
        ++k;
        sum += items[k]->weight;
    }
    return items[k]->left;
}

int Discrete::addPoint(std::unique_ptr<Interval> point) {
    if (intervals.items.size() > IntervalSequence::kMaxEntries) {
        errorText_ = "Too much intervals stored";
        return 0;
    }
    for (const auto& p : intervals.items) {
        if (p->left == point->left) {
            errorText_ = "The new point already exists";
            return 0;
        }
    }
    intervals.append(std::move(point));
    return 1;
}

// Count on the data line, then one line per point: value (left), right, weight.
void Discrete::writeData(std::ostream& out) const {
    intervals.write(out);
}

// The points are taken as they stand: no test of weights, order or values.
int Discrete::readData(std::istream& in) {
    return intervals.read(in, [] { return std::make_unique<Interval>(); });
}

} // namespace tarvex
