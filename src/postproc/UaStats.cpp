#include "postproc/UaStats.h"

#include <cmath>
#include <istream>
#include <ostream>

#include "common/TextLines.h"
#include "postproc/OutputTable.h"
#include "postproc/StatsText.h"
#include "postproc/StudentTable.h"
#include "sampling/NumberText.h"

namespace tarvex {

namespace {

// Bin of x in a table from `low` to `high`, or -1 when x has none (a NaN or
// an infinite value). A constant variable has no width to divide: all its
// runs equal its maximum, which lands in the last bin like any maximum, so
// its cumulative curve steps from 0 to 1 at the value.
int binOf(double x, double low, double high) {
    if (high == low) return x == high ? kHistogramBins - 1 : -1;
    const double position = std::trunc((x - low) * 100.0 / (high - low));
    if (!(position >= 0.0 && position <= 100.0)) return -1;
    return static_cast<int>(position);
}

void fillEdges(Histogram& table, double low, double high) {
    for (int k = 0; k < kHistogramBins; ++k) table[static_cast<std::size_t>(k)] = {low + (high - low) * k * 0.01, 0.0};
}

}  // namespace

double UaStats::at(const std::vector<double>& values, int32_t index) {
    if (index < 0 || static_cast<std::size_t>(index) >= values.size()) return kUaMissing;
    return values[static_cast<std::size_t>(index)];
}

void UaStats::clear() {
    variableCount = 0;
    sampleSize = 0;
    for (auto* v : {&maxima, &minima, &means, &stds, &skewnesses, &kurtoses}) v->clear();
    linearHistograms.clear();
    logHistograms.clear();
    names.clear();
}

void UaStats::compute(const std::vector<std::string>& variableNames, OutputTable& table) {
    clear();
    variableCount = table.columnCount();
    sampleSize = table.rowCount();
    names = variableNames;
    const auto v = static_cast<std::size_t>(variableCount);
    for (auto* a : {&maxima, &minima, &means, &stds, &skewnesses, &kurtoses}) a->assign(v, 0.0);
    linearHistograms.assign(v, Histogram{});
    logHistograms.assign(v, Histogram{});

    const int32_t n = sampleSize;
    const double runs = static_cast<double>(n);
    for (int32_t c = 0; c < variableCount; ++c) {
        const auto i = static_cast<std::size_t>(c);
        double high = -1e308, low = 1e308, sum = 0.0;
        for (int32_t r = 0; r < n; ++r) {
            const double x = table.value(r, c);
            if (x > high) high = x;
            if (x < low) low = x;
            sum += x;
        }
        const double mean = sum / runs;

        Histogram& linear = linearHistograms[i];
        Histogram& logarithmic = logHistograms[i];
        fillEdges(linear, low, high);
        // The logarithmic scale exists only for a variable above zero; else
        // its table stays empty.
        const bool positive = low > 0.0;
        const double logLow = positive ? std::log(low) : 0.0;
        const double logHigh = positive ? std::log(high) : 0.0;
        if (positive) fillEdges(logarithmic, logLow, logHigh);

        double squares = 0.0, cubes = 0.0, fourths = 0.0;
        for (int32_t r = 0; r < n; ++r) {
            const double x = table.value(r, c);
            const double d = x - mean;
            squares += d * d;
            cubes += std::pow(d, 3.0);
            fourths += std::pow(d, 4.0);
            const int bin = binOf(x, low, high);
            if (bin >= 0) linear[static_cast<std::size_t>(bin)].count += 1.0;
            if (positive) {
                const int logBin = binOf(std::log(x), logLow, logHigh);
                if (logBin >= 0) logarithmic[static_cast<std::size_t>(logBin)].count += 1.0;
            }
        }
        const double deviation = std::sqrt(squares / runs);
        maxima[i] = high;
        minima[i] = low;
        means[i] = mean;
        stds[i] = deviation;
        skewnesses[i] = cubes / ((runs - 1.0) * std::pow(deviation, 3.0));
        kurtoses[i] = fourths / ((runs - 1.0) * std::pow(deviation, 4.0)) - 3.0;
    }
}

const Histogram* UaStats::linearHistogram(int32_t index) const {
    if (index < 0 || static_cast<std::size_t>(index) >= linearHistograms.size()) return nullptr;
    return &linearHistograms[static_cast<std::size_t>(index)];
}

const Histogram* UaStats::logHistogram(int32_t index) const {
    if (index < 0 || static_cast<std::size_t>(index) >= logHistograms.size()) return nullptr;
    return &logHistograms[static_cast<std::size_t>(index)];
}

const std::string* UaStats::name(int32_t index) const {
    if (index < 0 || static_cast<std::size_t>(index) >= names.size()) return nullptr;
    return &names[static_cast<std::size_t>(index)];
}

int32_t UaStats::countedRuns(int32_t index) const {
    const Histogram* table = linearHistogram(index);
    if (!table) return 0;
    int32_t total = 0;
    for (const HistogramBin& bin : *table) total = static_cast<int32_t>(total + bin.count);
    return total;
}

double UaStats::tchebyBound(int32_t index) const {
    const double deviation = std(index);
    if (deviation == kUaMissing) return kUaMissing;
    const double n = countedRuns(index);
    return std::sqrt(1.0 / (1.0 - tchebyConfidence)) * deviation / std::sqrt(n);
}

double UaStats::tTestBound(int32_t index) const {
    const double deviation = std(index);
    if (deviation == kUaMissing) return kUaMissing;
    const int32_t n = countedRuns(index);
    // The level is looked up as a float, and with n degrees of freedom.
    const double q = studentQuantile(n, static_cast<float>(tchebyConfidence));
    if (q < 0.0) return -1.0;
    return q * deviation / std::sqrt(static_cast<double>(n));
}

double UaStats::intervalProbability(double a, double b, int32_t index, int scale) const {
    const Histogram* linear = linearHistogram(index);
    const Histogram* chosen = scale == 1 ? logHistogram(index) : linear;
    if (!linear || !chosen || (scale != 0 && scale != 1)) return 0.0;
    if (!(b > a)) return 0.0;
    const Histogram& table = *chosen;
    const double n = countedRuns(index);
    double high = maximum(index), low = minimum(index);
    if (scale == 1) {
        high = std::log(high);
        low = std::log(low);
    }
    const double width = 100.0 / (high - low);

    if (!(a < high) || !(b > low)) return 0.0;
    // Positions 0 to 100 are the bins; 101 means "past the last edge", where
    // no edge exists to compare with.
    constexpr int kPast = kHistogramBins;
    auto firstEdgeNotBelow = [&table](double x) {
        for (int k = 0; k < kHistogramBins; ++k)
            if (x <= table[static_cast<std::size_t>(k)].edge) return k;
        return kPast;
    };
    const int i = firstEdgeNotBelow(a);
    const int j = firstEdgeNotBelow(b);
    auto count = [&table](int k) { return k >= 0 && k < kHistogramBins ? table[static_cast<std::size_t>(k)].count : 0.0; };
    auto edge = [&table](int k) { return table[static_cast<std::size_t>(k)].edge; };
    // The logarithmic scale compares with the linear edges here; kept as the
    // program has always computed it.
    auto testEdge = [linear](int k) { return (*linear)[static_cast<std::size_t>(k)].edge; };

    double s = 0.0;
    for (int k = i; k < j && k < kHistogramBins; ++k) s += count(k);
    // Inside one bin. An interval that opens exactly at the minimum has no
    // bin before it, which counts as empty.
    if (i == j || (i == j - 1 && testEdge(i) == a)) return ((b - a) * width * count(i - 1) + s) / n;
    if (i < kPast && a < edge(i) && i > 0) s += (edge(i) - a) * width * count(i - 1);
    if (j < kPast && b < testEdge(j)) return (width * (b - edge(j - 1)) * count(j - 1) + s) / n;
    return s / n;
}

// ------------------------------------------------------------ the file block

void UaStats::write(std::ostream& out) const {
    SixDigits format(out);
    out << variableCount << '\n' << sampleSize << '\n';
    writeValue(out, kolmogorovConfidence);
    out << '\t';
    writeValue(out, tchebyConfidence);
    out << '\n';
    if (variableCount <= 0) return;
    const auto count = static_cast<std::size_t>(variableCount);
    for (std::size_t c = 0; c < count; ++c) out << (c < names.size() ? fileLine(names[c], kUaNameMax) : "") << '\n';
    // The reader takes an array whole or as empty.
    for (const auto* values : {&minima, &maxima, &means, &stds, &skewnesses, &kurtoses}) {
        if (values->size() == count) {
            for (double v : *values) {
                writeValue(out, v);
                out << '\t';
            }
        }
        out << '\n';
    }
    for (const auto* tables : {&linearHistograms, &logHistograms}) {
        for (int32_t c = 0; c < variableCount; ++c) {
            const bool present = static_cast<std::size_t>(c) < tables->size();
            for (int k = 0; k < kHistogramBins; ++k) {
                const HistogramBin bin = present ? (*tables)[static_cast<std::size_t>(c)][static_cast<std::size_t>(k)]
                                                 : HistogramBin{};
                writeValue(out, bin.edge);
                out << '\t';
                writeValue(out, bin.count);
                out << '\t';
            }
            out << '\n';
        }
    }
}

void UaStats::read(std::istream& in) {
    UaStats loaded;
    if (!(in >> loaded.variableCount >> loaded.sampleSize)) return;
    if (loaded.variableCount < 0 || loaded.sampleSize < 0) return in.setstate(std::ios::failbit);
    if (!readNumber(in, loaded.kolmogorovConfidence) || !readNumber(in, loaded.tchebyConfidence)) return;
    const int32_t v = loaded.variableCount;
    if (v > 0) {
        // Every variable has at least its name line and two table lines of
        // 202 numbers.
        if (!countFitsInput(in, v, 800)) return in.setstate(std::ios::failbit);
        skipLine(in);
        std::string text;
        for (int32_t c = 0; c < v; ++c) {
            if (!readLineUpTo(in, text, kUaNameMax)) return;
            loaded.names.push_back(text);
        }
        auto& l = loaded;
        for (auto* values : {&l.minima, &l.maxima, &l.means, &l.stds, &l.skewnesses, &l.kurtoses}) {
            // An array that was empty left an empty line.
            if (takeEmptyLine(in)) continue;
            double x = 0.0;
            for (int32_t c = 0; c < v; ++c) {
                if (!readNumber(in, x)) return;
                values->push_back(x);
            }
            skipLine(in);
        }
        for (auto* tables : {&l.linearHistograms, &l.logHistograms}) {
            for (int32_t c = 0; c < v; ++c) {
                Histogram table;
                for (HistogramBin& bin : table)
                    if (!readNumber(in, bin.edge) || !readNumber(in, bin.count)) return;
                tables->push_back(table);
            }
        }
        skipLine(in);
    }
    *this = std::move(loaded);
}

}  // namespace tarvex
