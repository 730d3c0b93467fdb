#pragma once
// Correlation matrix and four moments per column of a finished sample.
#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

namespace tarvex {

class sampValues;

// Per column, with n rows:
//   mean     = sum(x) / (n - 1)                (n - 1, not n: stored samples carry it)
//   stdDev   = sqrt(sum((x - mean)^2) / (n - 1))
//   skewness = sum((x - mean)^3) / ((n - 1) stdDev^3)
//   kurtosis = sum((x - mean)^4) / ((n - 1) stdDev^4) - 3
// Pearson correlation of columns i, j:
//   sum((xi - mean_i)(xj - mean_j)) / ((n - 1) stdDev_i stdDev_j),
//   0 when either standard deviation is 0, 1 on the diagonal.
// With fewer than two rows the divisor n - 1 would be 0 or negative; it is
// taken as 1 there. A column with standard deviation 0 has skewness and
// kurtosis 0, like its correlations, rather than 0/0.
class SampleStatistics {
public:
    SampleStatistics() = default;
    explicit SampleStatistics(sampValues& store) { (void)compute(store); }  // a failure leaves them empty

    // Replaces the statistics with those of `store` (a row pass, twice).
    [[nodiscard]] int compute(sampValues& store);

    int32_t size() const { return size_; }
    bool empty() const { return !present_; }
    const std::string& errorText() const { return errorText_; }

    // All accessors return -10.0 for an index out of range and while nothing
    // has been computed or read.
    double correlation(int32_t i, int32_t j) const;
    double mean(int32_t column) const { return moment(column, 0); }
    double stdDev(int32_t column) const { return moment(column, 1); }
    double skewness(int32_t column) const { return moment(column, 2); }
    double kurtosis(int32_t column) const { return moment(column, 3); }
    // k: 0 mean, 1 stdDev, 2 skewness, 3 kurtosis.
    double moment(int32_t column, int32_t k) const;

    // Text form: size, newline; the correlation rows, then one row of four
    // moments per column; each number (in the stream's own format) followed by
    // a tab, each row by a newline.
    void write(std::ostream& out) const;
    // Reads the text form; a failure sets the stream's failure and leaves the
    // statistics empty.
    void read(std::istream& in);

private:
    void reset();

    int32_t size_ = 0;
    bool present_ = false;
    std::vector<double> correlation_;  // size x size
    std::vector<double> moments_;      // size x 4
    std::string errorText_ = "No errors";
};

std::ostream& operator<<(std::ostream& out, const SampleStatistics& statistics);
std::istream& operator>>(std::istream& in, SampleStatistics& statistics);

}  // namespace tarvex
