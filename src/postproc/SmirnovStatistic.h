#pragma once
// The Smirnov measure of a factor for one output: the two-sample
// Kolmogorov-Smirnov distance (Smirnov, "On the estimation of the discrepancy
// between empirical curves of distribution for two independent samples",
// Bull. Math. Univ. Moscou 2, 1939) between the factor's ranks in the runs
// whose output falls in the top tenth and its ranks in the other runs. A
// distance near 0 says that the factor does not tell the high outputs from
// the rest; 1 says that it separates them completely. The top tenth is fixed,
// not a user's setting.
//
// Works on rank tables (ranks 1 to N, each once per column), so the two
// subsets never share a value and the distance needs no rule for ties.
#include <cstdint>
#include <vector>

namespace tarvex {

class SmirnovStatistic {
public:
    // For tables of `runs` rows: a run is high when its output rank is above
    // trunc(0.9 * runs).
    explicit SmirnovStatistic(int32_t runs);

    int32_t threshold() const { return threshold_; }

    // D for one factor and one output, given each run's rank (1-based) in the
    // factor's column and in the output's; -1.0 when either subset is empty.
    double distance(const int32_t* factorRanks, const int32_t* outputRanks);

    // The distance between two subsets sorted ascending, by the merge walk:
    // exactly highCount + lowCount steps, each taking the smaller head (the
    // low subset's on equal heads) and measuring the gap between the two
    // empirical distributions after it. -1.0 when either subset is empty.
    static double walk(const int32_t* high, int32_t highCount, const int32_t* low, int32_t lowCount);

private:
    int32_t runs_;
    int32_t threshold_;
    // The two subsets, and which subset holds each factor rank.
    std::vector<int32_t> high_, low_;
    std::vector<int8_t> byRank_;
};

}  // namespace tarvex
