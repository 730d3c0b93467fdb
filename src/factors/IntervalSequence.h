#pragma once
// The owned, ordered intervals of a Discrete, Uniform or LogUniform factor,
// with the operations their panels use.
#include <functional>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "factors/Interval.h"

namespace tarvex {

class IntervalSequence {
public:
    // A sequence accepts entries while it holds at most this many, so the
    // 10002nd entry is the first one refused.
    static constexpr std::size_t kMaxEntries = 10000;

    int count() const { return static_cast<int>(items.size()); }
    // Null when i is outside the sequence.
    Interval* intervalAt(int i) const;
    // Does nothing when i is outside the sequence.
    void removeAt(int i);
    void clear() { items.clear(); }
    void append(std::unique_ptr<Interval> interval) { items.push_back(std::move(interval)); }
    // Sum of weights within 1e-13 of 1; otherwise 0 with the panels' text.
    [[nodiscard]] int checkWeights(std::string& text) const;

    // The record body shared by the factors that hold intervals: the count on the
    // data line, then one line per entry with left, right and weight.
    void write(std::ostream& out) const;
    // Entries are taken as they stand: no test of weights, order or bounds. A
    // count below 1 sets the stream's failure. `make` gives the entry's class.
    [[nodiscard]] int read(std::istream& in, const std::function<std::unique_ptr<Interval>()>& make);

    std::vector<std::unique_ptr<Interval>> items;
};

} // namespace tarvex
