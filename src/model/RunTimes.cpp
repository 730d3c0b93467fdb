#include "model/RunTimes.h"

#include <algorithm>
#include <cstring>

namespace tarvex {

namespace {
// Exact comparison, so that 0.0 and -0.0 or two NaN payloads count as what they are.
// Runs without time points hold no array at all: memcmp must not see their null pointers.
bool sameTimes(const double* a, const double* b, std::size_t n) {
    return n == 0 || std::memcmp(a, b, n * sizeof(double)) == 0;
}
} // namespace

void RunTimes::clear() {
    runs_ = 0;
    uniform_ = true;
    grid_.clear();
    flat_.clear();
    start_.clear();
}

void RunTimes::assignUniform(int32_t runs, const std::vector<double>& grid) {
    clear();
    runs_ = std::max(runs, 0);
    grid_ = grid;
}

void RunTimes::append(const double* times, int32_t count) {
    const auto n = static_cast<std::size_t>(std::max(count, 0));
    if (uniform_) {
        if (runs_ == 0) {
            grid_.assign(times, times + n);
            runs_ = 1;
            return;
        }
        if (n == grid_.size() && sameTimes(times, grid_.data(), n)) {
            ++runs_;
            return;
        }
        // The first run that differs: spell out the runs so far.
        flat_.clear();
        start_.assign(1, 0);
        for (int32_t r = 0; r < runs_; ++r) {
            flat_.insert(flat_.end(), grid_.begin(), grid_.end());
            start_.push_back(static_cast<int64_t>(flat_.size()));
        }
        grid_.clear();
        uniform_ = false;
    }
    flat_.insert(flat_.end(), times, times + n);
    start_.push_back(static_cast<int64_t>(flat_.size()));
    ++runs_;
}

int32_t RunTimes::count(int32_t run) const {
    if (run < 0 || run >= runs_) return 0;
    if (uniform_) return static_cast<int32_t>(grid_.size());
    return static_cast<int32_t>(start_[static_cast<std::size_t>(run) + 1] - start_[static_cast<std::size_t>(run)]);
}

const double* RunTimes::times(int32_t run) const {
    if (run < 0 || run >= runs_) return nullptr;
    if (uniform_) return grid_.data();
    return flat_.data() + start_[static_cast<std::size_t>(run)];
}

int64_t RunTimes::pointsBefore(int32_t run) const {
    if (run <= 0) return 0;
    if (run > runs_) run = runs_;
    if (uniform_) return static_cast<int64_t>(run) * static_cast<int64_t>(grid_.size());
    return start_[static_cast<std::size_t>(run)];
}

bool RunTimes::operator==(const RunTimes& other) const {
    if (runs_ != other.runs_) return false;
    for (int32_t r = 0; r < runs_; ++r) {
        const int32_t n = count(r);
        if (n != other.count(r) || !sameTimes(times(r), other.times(r), static_cast<std::size_t>(n))) return false;
    }
    return true;
}

} // namespace tarvex
