#pragma once
// Uncertainty analysis: per analysed variable over the N runs, the extremes,
// the first four moments, linear and logarithmic histograms of 101 bins, two
// confidence bounds on the mean, and the probability of an interval.
//
// The moments keep the program's mixture of divisors: the standard deviation
// divides by N, skewness and kurtosis by N - 1 times the matching power of
// that standard deviation. Results compared with other programs differ by
// that factor on small samples.
#include <array>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

namespace tarvex {

class OutputTable;

inline constexpr int kHistogramBins = 101;
// What a getter gives for a variable that does not exist.
inline constexpr double kUaMissing = 1e308;

struct HistogramBin {
    double edge = 0.0;   // left edge, in the units of the table's scale
    double count = 0.0;  // runs in the bin
    bool operator==(const HistogramBin&) const = default;
};
using Histogram = std::array<HistogramBin, kHistogramBins>;

class UaStats {
public:
    // Clears, then computes every column of `table`; `names` label them.
    void compute(const std::vector<std::string>& names, OutputTable& table);
    void clear();

    // Each gives kUaMissing for an index out of range or an empty array.
    double minimum(int32_t index) const { return at(minima, index); }
    double maximum(int32_t index) const { return at(maxima, index); }
    double mean(int32_t index) const { return at(means, index); }
    double std(int32_t index) const { return at(stds, index); }
    double skewness(int32_t index) const { return at(skewnesses, index); }
    double kurtosis(int32_t index) const { return at(kurtoses, index); }
    // The table, or null.
    const Histogram* linearHistogram(int32_t index) const;
    const Histogram* logHistogram(int32_t index) const;
    // The name, or null.
    const std::string* name(int32_t index) const;

    void setTchebyConfidence(double value) { tchebyConfidence = value; }
    void setKolmogorovConfidence(double value) { kolmogorovConfidence = value; }

    // The runs counted in the linear table: the counts summed with truncation
    // to an integer after each addition (N for a table of finite values).
    int32_t countedRuns(int32_t index) const;
    // Half-widths of the confidence interval of the mean at the level
    // tchebyConfidence: by Chebyshev's inequality, and by Student's t with n
    // degrees of freedom (-1.0 where the t table has no such level).
    // kUaMissing for an index out of range.
    double tchebyBound(int32_t index) const;
    double tTestBound(int32_t index) const;
    // Probability that the variable lies in (a, b], read from the histogram of
    // `scale` (0 linear, 1 logarithmic, a and b then in natural logarithms).
    // Not capped at 1.0; see UaCurves for the value the panel shows.
    double intervalProbability(double a, double b, int32_t index, int scale) const;

    // The uncertainty block of the post-processor file.
    void write(std::ostream& out) const;
    void read(std::istream& in);

    double tchebyConfidence = 0.75;
    double kolmogorovConfidence = 0.9;
    int32_t variableCount = 0;
    int32_t sampleSize = 0;
    std::vector<double> maxima, minima, means, stds, skewnesses, kurtoses;
    std::vector<Histogram> linearHistograms, logHistograms;
    std::vector<std::string> names;

private:
    static double at(const std::vector<double>& values, int32_t index);
};

}  // namespace tarvex
