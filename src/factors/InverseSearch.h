#pragma once
// The search behind every continuous inverse: pick the percentile cell of the
// 101-point table that holds u, then bisect inside it on the cumulative.
//
// Written once, over any cumulative callable, so that the one-cell inverse and
// the column pass run the very same arithmetic. A class whose cumulative has a
// cheap closed form hands in an inlined, non-virtual one (the same function its
// virtual cumulative calls, so the same bits). The column pass keeps several
// searches in flight: the passes of one search each wait on the last, while
// independent searches overlap in the processor, and the bracket update is a
// select rather than a branch that would be mispredicted every other pass.
#include <bit>
#include <cmath>
#include <cstdint>
#include <vector>

#include "factors/TablePoint.h"

namespace tarvex {

// How the cell is chosen and when its bisection stops.
struct InverseRule {
    // u is mapped to scale * u + offset before the lookup (truncation).
    double scale = 1.0;
    double offset = 0.0;
    double relTol = 1e-11;
    // At most this many passes; below 0, until the tolerance is met or the
    // bracket cannot be split any further.
    int maxPasses = 1001;
    // Answer the lower table point outright when u lies within the tolerance
    // of its probability.
    bool lowerShortcut = true;
};

// One bisection in progress.
class InverseSearch {
public:
    // Sets up the search of u; false when the answer is known without one
    // (then in `answer`).
    bool start(const std::vector<TablePoint>& table, const InverseRule& rule, double u, double& answer) {
        if (table.size() < 101) {  // not prepared: nothing to map through
            answer = 0.0;
            return false;
        }
        const double v = rule.scale * u + rule.offset;
        const double scaled = v * 100.0;
        if (scaled >= 100.0) {
            answer = table[100].x;
            return false;
        }
        const int i = scaled > 0.0 ? static_cast<int>(scaled) : 0;
        ends_[0] = table[size_t(i)];
        ends_[1] = table[size_t(i) + 1];
        if (rule.lowerShortcut && std::fabs(ends_[0].p - v) < std::fabs(ends_[0].p) * rule.relTol) {
            answer = ends_[0].x;
            return false;
        }
        u_ = v;
        passes_ = 0;
        return true;
    }

    // One pass; false once the search has ended.
    template <class Cumulative>
    bool step(const Cumulative& cumulative, const InverseRule& rule) {
        const TablePoint lo = ends_[0];
        const TablePoint hi = ends_[1];
        if (!(std::fabs(lo.p - hi.p) > std::fabs(lo.p) * rule.relTol)) return false;
        if (rule.maxPasses >= 0 && passes_ >= rule.maxPasses) return false;
        const double m = (lo.x + hi.x) / 2.0;
        // No double strictly between the ends: the bracket cannot move any
        // more, and every further pass would repeat this one.
        if (rule.maxPasses < 0 && !(m > lo.x && m < hi.x)) return false;
        const double pm = cumulative(m);
        // Both ends are rewritten through a bit mask: a branch here would be
        // mispredicted every other pass, and a store to an end picked by index
        // would leave its address unknown until the comparison, holding up the
        // loads of the other searches in flight.
        const uint64_t below = uint64_t(0) - uint64_t(pm <= u_);
        ends_[0] = {pick(below, m, lo.x), pick(below, pm, lo.p)};
        ends_[1] = {pick(below, hi.x, m), pick(below, hi.p, pm)};
        ++passes_;
        return true;
    }

    double answer() const { return (ends_[0].x + ends_[1].x) / 2.0; }

    // The inverse of one u.
    template <class Cumulative>
    static double one(const std::vector<TablePoint>& table, const InverseRule& rule, const Cumulative& cumulative,
                      double u) {
        InverseSearch search;
        double answer = 0.0;
        if (!search.start(table, rule, u, answer)) return answer;
        while (search.step(cumulative, rule)) {
        }
        return search.answer();
    }

    // The inverse of each value, in place; the same results as `one` on each.
    template <class Cumulative>
    static void many(const std::vector<TablePoint>& table, const InverseRule& rule, const Cumulative& cumulative,
                     double* values, int64_t count) {
        constexpr int kLanes = 4;
        InverseSearch lane[kLanes];
        int64_t cell[kLanes];
        int64_t next = 0;
        // Loads the next cell that needs a search into lane k; false when
        // none is left.
        auto load = [&](int k) {
            while (next < count) {
                const int64_t c = next++;
                double answer = 0.0;
                if (lane[k].start(table, rule, values[c], answer)) {
                    cell[k] = c;
                    return true;
                }
                values[c] = answer;
            }
            return false;
        };
        int active = 0;
        while (active < kLanes && load(active)) ++active;
        while (active > 0) {
            for (int k = 0; k < active;) {
                if (lane[k].step(cumulative, rule)) {
                    ++k;
                    continue;
                }
                values[cell[k]] = lane[k].answer();
                if (!load(k)) {
                    // Close the gap with the last lane in flight.
                    --active;
                    lane[k] = lane[active];
                    cell[k] = cell[active];
                }
            }
        }
    }

private:
    // a where the mask is set, b elsewhere.
    static double pick(uint64_t mask, double a, double b) {
        return std::bit_cast<double>((std::bit_cast<uint64_t>(a) & mask) | (std::bit_cast<uint64_t>(b) & ~mask));
    }

    TablePoint ends_[2];  // lower and upper end of the bracket
    double u_ = 0.0;
    int passes_ = 0;
};

} // namespace tarvex
