#include "postproc/FastStats.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <istream>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "common/ParallelFor.h"
#include "correlation/FactorList.h"
#include "factors/Factor.h"
#include "postproc/OutputTable.h"
#include "sampling/FastSampler.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex {

namespace {

// The angle of run s at frequency w on a curve of n runs is s w c / n, with
// c the double nearest 2 pi as the angles have always used it.
constexpr long double kTurn = 6.283185307179586;
// 2 pi - c: after a whole turns, s w c / n lies a * kTurnShortfall short of
// the angle (s w mod n) c / n.
constexpr long double kTurnShortfall = 2.4492935982947063544521318645500e-16L;

// A centred curve, folded about its middle: even[s] = d[q + s] + d[q - s]
// and odd[s] = d[q + s] - d[q - s] for an odd form (centre d[q]), d[q - 1 + s]
// and d[q - s] for an even one (no centre).
struct Curve {
    int64_t n = 0;
    int64_t q = 0;
    long double centre = 0.0L;
    std::vector<long double> even, odd;
    long double variance = 0.0L;  // sum of squares / (n - 1)

    // The n values from y, centred by their own mean.
    void take(const double* y, int64_t length, bool oddForm) {
        n = length;
        long double sum = 0.0L;
        for (int64_t i = 0; i < n; ++i) sum += y[i];
        const long double mean = sum / static_cast<long double>(n);
        d.resize(size_t(n));
        long double squares = 0.0L;
        for (int64_t i = 0; i < n; ++i) {
            d[size_t(i)] = static_cast<long double>(y[i]) - mean;
            squares += d[size_t(i)] * d[size_t(i)];
        }
        variance = squares / static_cast<long double>(n - 1);
        q = oddForm ? (n - 1) / 2 : n / 2;
        const int64_t upper = oddForm ? q : q - 1;
        centre = oddForm ? d[size_t(q)] : 0.0L;
        even.assign(size_t(q + 1), 0.0L);
        odd.assign(size_t(q + 1), 0.0L);
        for (int64_t s = 1; s <= q; ++s) {
            even[size_t(s)] = d[size_t(upper + s)] + d[size_t(q - s)];
            odd[size_t(s)] = d[size_t(upper + s)] - d[size_t(q - s)];
        }
    }

private:
    std::vector<long double> d;
};

// cos and sin of r c / n for r = 0 .. n - 1, from which every angle of the
// curve follows: for s w = a n + r the angle is r c / n - a (2 pi - c), and
// the second term, below 1e-12, enters by its first order. This keeps the
// sums within a unit of extended precision of the angles' own values while
// calling the trigonometric functions n times instead of once per term.
class FourierTable {
public:
    explicit FourierTable(int64_t n) : n_(n), turn_(size_t(n)) {
        parallelFor(n, 4096, [this](int64_t begin, int64_t end) {
            for (int64_t r = begin; r < end; ++r) {
                const long double angle = static_cast<long double>(r) * kTurn / static_cast<long double>(n_);
                turn_[size_t(r)] = {std::cos(angle), std::sin(angle)};
            }
        });
    }

    // S(w) of a prepared curve.
    long double spectrum(const Curve& curve, int64_t w) const;

private:
    // cos and sin side by side: the sums visit the angles out of order.
    struct Point {
        long double cos, sin;
    };
    int64_t n_;
    std::vector<Point> turn_;
};

long double FourierTable::spectrum(const Curve& curve, int64_t w) const {
    const int64_t step = w % n_, turns = w / n_;
    int64_t r = 0, a = 0;
    long double shortfall = 0.0L;
    long double A = curve.centre, B = 0.0L;
    const long double* even = curve.even.data();
    const long double* odd = curve.odd.data();
    for (int64_t s = 1; s <= curve.q; ++s) {
        r += step;
        bool turned = turns != 0;
        a += turns;
        if (r >= n_) {
            r -= n_;
            ++a;
            turned = true;
        }
        if (turned) shortfall = static_cast<long double>(a) * kTurnShortfall;
        const long double c = turn_[size_t(r)].cos, sn = turn_[size_t(r)].sin;
        A += even[s] * (c + shortfall * sn);
        B += odd[s] * (sn - shortfall * c);
    }
    const long double n = static_cast<long double>(n_);
    A /= n;
    B /= n;
    return 2.0L * (A * A + B * B);
}

// Tables by curve length: a design has one or two lengths.
class FourierTables {
public:
    const FourierTable& of(int64_t n) {
        auto it = tables_.find(n);
        if (it == tables_.end()) it = tables_.emplace(n, FourierTable(n)).first;
        return it->second;
    }

private:
    std::map<int64_t, FourierTable> tables_;
};

// Sum of S(w) for the frequencies w = first, first + step, ... (count of
// them), added in that order. Long curves share the frequencies among
// threads; the order of the sum stays the same.
long double spectrumSum(const FourierTable& table, const Curve& curve, int64_t first, int64_t step, int64_t count,
                        std::vector<long double>& scratch) {
    scratch.assign(size_t(std::max<int64_t>(count, 0)), 0.0L);
    const int64_t perThread = std::max<int64_t>(1, 65536 / std::max<int64_t>(curve.q, 1));
    parallelFor(count, perThread, [&](int64_t begin, int64_t end) {
        for (int64_t i = begin; i < end; ++i) scratch[size_t(i)] = table.spectrum(curve, first + i * step);
    });
    long double sum = 0.0L;
    for (const long double s : scratch) sum += s;
    return sum;
}

}  // namespace

int FastStats::compute(PrepConfiguration& configuration, OutputTable& outputs) {
    clear();
    errorText = kNoErrorsText;
    const auto fail = [this](const std::string& text) {
        records.clear();
        errorText = text;
        return 0;
    };
    const auto* design = dynamic_cast<const FastSampler*>(configuration.sampler.get());
    if (design == nullptr) return fail(kFastNotFastText);
    const std::vector<FastBlock>* table = design->designTable();
    if (table == nullptr) return fail(kFastNoTableText);
    const int32_t variables = variableCount;
    char text[256];
    if (variables < 1 || variables > outputs.columnCount()) {
        std::snprintf(text, sizeof text, "%d variables are to be analysed, the output table holds %d", variables,
                      outputs.columnCount());
        return fail(text);
    }
    const int32_t mode = design->analysisMode();

    // Records: every factor (modes 0, 1), or the groups and then the
    // factors in no group (mode 2).
    const FactorList& list = configuration.factors;
    factorCount = list.factorCount();
    const size_t slots = 2 * size_t(variables);
    if (mode == 2) {
        for (const std::string& group : design->groupNames())
            records.push_back({group, kUncertainFactor, std::vector<double>(slots, 0.0), {}});
    }
    const std::vector<std::string>& elements = design->elementNames();
    for (int32_t f = 0; f < factorCount; ++f) {
        const Factor* factor = list.getFactor(f);
        if (mode == 2 && std::find(elements.begin(), elements.end(), factor->name()) != elements.end()) continue;
        records.push_back({factor->name(), factorKindOf(factor->typeName()), std::vector<double>(slots, 0.0), {}});
    }

    // Each uncertain record takes the next row of the block table.
    int64_t units = 0, runs = 0;
    for (const IndexRecord& record : records) units += record.kind == kUncertainFactor ? 1 : 0;
    if (units != int64_t(table->size())) {
        std::snprintf(text, sizeof text, "The FAST block table has %d rows for %lld factors or groups",
                      int32_t(table->size()), static_cast<long long>(units));
        return fail(text);
    }
    for (const FastBlock& block : *table) {
        // The extended test's curves are 8 omegaMax + 1 runs long, which
        // also bounds the work of its band 1 .. omegaMax / 2.
        if (block.first < 0 || block.third < 1 || block.second < 0 ||
            (mode != 0 && 8 * int64_t(block.first) + 1 > block.third))
            return fail(kFastBadBlockText);
        runs = mode == 0 ? std::max<int64_t>(runs, block.third) : runs + int64_t(block.second) * block.third;
    }
    if (runs > outputs.rowCount()) {
        std::snprintf(text, sizeof text, "The FAST design needs %lld runs, the output table holds %d",
                      static_cast<long long>(runs), outputs.rowCount());
        return fail(text);
    }

    FourierTables tables;
    Curve curve;
    std::vector<double> y(static_cast<size_t>(runs));
    std::vector<long double> scratch;
    for (int32_t v = 0; v < variables; ++v) {
        for (int64_t i = 0; i < runs; ++i)
            if (!outputs.getColumnValue(int32_t(i), v, &y[size_t(i)])) return fail(outputs.errorText());
        int64_t run = 0;
        size_t row = 0;
        for (IndexRecord& record : records) {
            if (record.kind != kUncertainFactor) continue;
            const FastBlock& block = (*table)[row++];
            double* slot = &record.values[2 * size_t(v)];
            const int64_t n = block.third;
            const FourierTable& fourier = tables.of(n);
            if (mode == 0) {
                // One curve from run 0, its parity choosing the form.
                curve.take(y.data(), n, n % 2 != 0);
                const long double h = spectrumSum(fourier, curve, block.first, block.first, 4, scratch);
                slot[0] = curve.variance == 0.0L ? 0.0 : double(h / curve.variance);
                slot[1] = 0.0;
                continue;
            }
            long double l = 0.0L, h = 0.0L, d = 0.0L;
            for (int32_t c = 0; c < block.second; ++c) {
                curve.take(y.data() + run, n, true);
                run += n;
                l += spectrumSum(fourier, curve, 1, 1, block.first / 2, scratch);
                h += spectrumSum(fourier, curve, block.first, block.first, 4, scratch);
                d += curve.variance;
            }
            if (d == 0.0L || block.second < 1) {
                slot[0] = slot[1] = 0.0;
            } else {
                slot[0] = double(h / d);
                slot[1] = double(1.0L - l / d);
            }
        }
    }
    recordCount = int32_t(records.size());
    analysisMode = mode;
    computed = 1;
    return 1;
}

void FastStats::writeTable(std::ostream& out, const ResultTableRequest& request) const {
    out << "Fast first order indexes\n";
    writeSheet(out, request, 0);
    if (analysisMode == 0) return;
    out << "\nFast total order Indexes\n";
    writeSheet(out, request, 1);
}

void FastStats::writeHeader(std::ostream& out) const {
    out << factorCount << '\n' << variableCount << '\n' << recordCount << '\n';
}

void FastStats::readHeader(std::istream& in) {
    in >> factorCount >> variableCount >> recordCount;
}

}  // namespace tarvex
