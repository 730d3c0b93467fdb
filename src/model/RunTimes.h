#pragma once
// The time points of every run of a model. Runs usually share one grid (an
// internal model gives each run the single time 0.0), and then the grid is
// kept once, so that a run of many millions of rows costs no memory per run.
#include <cstdint>
#include <vector>

namespace tarvex {

class RunTimes {
public:
    void clear();
    // `runs` runs, each with the time points of `grid`.
    void assignUniform(int32_t runs, const std::vector<double>& grid);
    // Appends one run with `count` time points.
    void append(const double* times, int32_t count);

    int32_t runCount() const { return runs_; }
    int32_t count(int32_t run) const;
    const double* times(int32_t run) const;
    // Time points of the runs before `run` (run may be runCount()).
    int64_t pointsBefore(int32_t run) const;
    // Whether every run has the same times as the first (false for none).
    bool uniform() const { return runs_ > 0 && uniform_; }

    bool operator==(const RunTimes& other) const;

private:
    int32_t runs_ = 0;
    bool uniform_ = true;
    std::vector<double> grid_;      // while uniform: the shared times
    std::vector<double> flat_;      // otherwise: all times, run after run
    std::vector<int64_t> start_;    // otherwise: runs_ + 1 offsets into flat_
};

} // namespace tarvex
