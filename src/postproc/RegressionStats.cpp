#include "postproc/RegressionStats.h"

#include <Eigen/Dense>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <initializer_list>
#include <istream>
#include <numeric>
#include <ostream>
#include <string>
#include <tuple>

#include "common/ParallelFor.h"
#include "common/TextLines.h"
#include "correlation/FactorList.h"
#include "correlation/Ranking.h"
#include "factors/Factor.h"
#include "postproc/OutputTable.h"
#include "postproc/SmirnovStatistic.h"
#include "postproc/StatsText.h"
#include "postproc/StudentTable.h"
#include "sampling/NumberText.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/Sampler.h"

namespace tarvex {

namespace {

using Moments = RegressionStats::Moments;

// Factor pairs correlated above this are collinear: the later one leaves
// the regression.
constexpr double kCollinearLimit = 0.99;

std::size_t at(int32_t variable, int32_t slot) {
    return static_cast<std::size_t>(variable) * RegressionStats::kSlots + static_cast<std::size_t>(slot);
}

// Rows per block of the cross products: the centred block of every column
// stays in the first-level caches while all pairs are summed over it.
constexpr int64_t kBlockRows = 256;

// Sum of products of two short columns: four running sums by position
// modulo 4, added in a fixed order.
double crossProduct(const double* a, const double* b, int64_t n) {
    double s0 = 0.0, s1 = 0.0, s2 = 0.0, s3 = 0.0;
    int64_t r = 0;
    for (; r + 4 <= n; r += 4) {
        s0 += a[r] * b[r];
        s1 += a[r + 1] * b[r + 1];
        s2 += a[r + 2] * b[r + 2];
        s3 += a[r + 3] * b[r + 3];
    }
    for (; r < n; ++r) s0 += a[r] * b[r];
    return (s0 + s1) + (s2 + s3);
}

// Means (over N) and standard deviations (over N - 1) of the columns of a
// table of `rows` rows held column after column, and the correlation matrix
// of the columns, row after row: the sum of products of deviations over
// (N - 1) s_i s_j, 0.0 where either s is exactly 0.0, 1.0 on the diagonal.
//
// Every pair is summed in the same order (block after block, each block by
// crossProduct), so a column and its exact negative give sums of exactly
// opposite sign; and the quotient is taken as S_ij / sqrt(S_ii S_jj), the
// same number as the formula above but exactly 1 or -1 for an exact copy or
// negative copy of a column. A factor that mirrors another then reaches the
// inversion as an exactly singular matrix.
template <class Value>
std::vector<double> correlate(const Value* table, int32_t rows, int32_t columns, std::vector<Moments>& moments) {
    const auto n = static_cast<std::size_t>(rows);
    const auto c = static_cast<std::size_t>(columns);
    std::vector<double> means(c);
    for (std::size_t j = 0; j < c; ++j) {
        const Value* x = table + j * n;
        double sum = 0.0;
        for (std::size_t r = 0; r < n; ++r) sum += static_cast<double>(x[r]);
        means[j] = sum / static_cast<double>(rows);
    }
    // Lower triangle of the sums of products, row after row.
    std::vector<double> sums(c * c, 0.0);
    std::vector<double> block(c * static_cast<std::size_t>(kBlockRows));
    for (std::size_t first = 0; first < n; first += kBlockRows) {
        const std::size_t length = std::min<std::size_t>(kBlockRows, n - first);
        for (std::size_t j = 0; j < c; ++j) {
            const Value* x = table + j * n + first;
            double* d = block.data() + j * kBlockRows;
            for (std::size_t r = 0; r < length; ++r) d[r] = static_cast<double>(x[r]) - means[j];
        }
        for (std::size_t i = 0; i < c; ++i)
            for (std::size_t j = 0; j <= i; ++j)
                sums[i * c + j] += crossProduct(block.data() + i * kBlockRows, block.data() + j * kBlockRows,
                                                static_cast<int64_t>(length));
    }
    for (std::size_t j = 0; j < c; ++j)
        moments[j] = {means[j], std::sqrt(sums[j * c + j] / static_cast<double>(rows - 1))};

    std::vector<double> result(c * c, 0.0);
    for (std::size_t i = 0; i < c; ++i) {
        result[i * c + i] = 1.0;
        for (std::size_t j = 0; j < i; ++j) {
            if (moments[i].sd == 0.0 || moments[j].sd == 0.0) continue;
            const double sii = sums[i * c + i], sjj = sums[j * c + j];
            double scale = std::sqrt(sii * sjj);
            // A product beyond the range of doubles: the roots apart.
            if (!(scale > 0.0) || std::isinf(scale)) scale = std::sqrt(sii) * std::sqrt(sjj);
            result[i * c + j] = result[j * c + i] = sums[i * c + j] / scale;
        }
    }
    return result;
}

// The inverse of `a` by LU decomposition with partial pivoting, or false
// when the decomposition meets a pivot that is exactly zero: the whole
// remaining column below the diagonal was zero, so some column of `a` is a
// combination of earlier ones. Pivots that are merely tiny (an output that
// is an exact linear function of the factors, up to rounding) pass, and the
// inverse is as good as the data allow.
bool invert(const Eigen::MatrixXd& a, Eigen::MatrixXd& inverse) {
    const Eigen::PartialPivLU<Eigen::MatrixXd> lu(a);
    const auto pivots = lu.matrixLU().diagonal();
    for (Eigen::Index i = 0; i < pivots.size(); ++i)
        if (pivots(i) == 0.0) return false;
    inverse = lu.inverse();
    return true;
}

// A cell of the saved table is marked when the measure shown is not
// significant for that record and variable.
template <int32_t Measure>
bool notSignificant(const SensitivityStats& stats, int32_t record, int32_t variable) {
    const std::vector<double>& values = stats.records[static_cast<std::size_t>(record)].values;
    const std::size_t slot = at(variable, RegressionStats::kFlagSlot + Measure);
    return slot < values.size() && values[slot] != 1.0;
}

}  // namespace

const char* RegressionStats::measureName(int32_t measure) {
    static const char* const names[kMeasureCount] = {"PEAR", "SPEA", "PCC", "PRCC", "SRC", "SRRC", "Smirnov"};
    return measure >= 0 && measure < kMeasureCount ? names[measure] : "ERROR";
}

void RegressionStats::clear() {
    SensitivityStats::clear();
    correlation.clear();
    inverse.clear();
    determinations.clear();
    factorMoments.clear();
    rankMoments.clear();
    activeCount = 0;
    collinearPairs.clear();
    runs_ = 0;
    srcErrors_.clear();
    srrcErrors_.clear();
}

int RegressionStats::compute(PrepConfiguration& configuration, OutputTable& outputs) {
    const FactorList& list = configuration.factors;
    sampValues& store = configuration.samples;
    const int32_t nf = list.factorCount();
    const int32_t nv = outputs.columnCount();
    const int32_t runs = outputs.rowCount();
    // The two tables must describe the same runs before anything changes.
    if (store.rowCount() != runs || (runs > 0 && store.columnCount() < nf)) {
        char text[160];
        if (store.rowCount() != runs)
            std::snprintf(text, sizeof text, "The sample has %d runs and the outputs %d", store.rowCount(), runs);
        else
            std::snprintf(text, sizeof text, "The sample has %d columns for %d factors", store.columnCount(), nf);
        errorText = text;
        return 0;
    }

    clear();
    errorText = kNoErrorsText;
    factorCount = nf;
    variableCount = nv;
    const int32_t columns = nf + nv;
    const auto n = static_cast<std::size_t>(runs);
    factorMoments.assign(static_cast<std::size_t>(columns), {});
    rankMoments.assign(static_cast<std::size_t>(columns), {});
    for (int32_t f = 0; f < nf; ++f) {
        const Factor* factor = list.getFactor(f);
        records.push_back({factor->name(), factorKindOf(factor->typeName()),
                           std::vector<double>(static_cast<std::size_t>(nv) * kSlots, 0.0), {}});
    }

    // Factors then variables, column after column.
    // Left uninitialised: every value is read in before use.
    const std::unique_ptr<double[]> table(new double[n * static_cast<std::size_t>(columns)]);
    for (int32_t c = 0; c < columns; ++c) {
        double* column = table.get() + static_cast<std::size_t>(c) * n;
        sampValues& source = c < nf ? store : outputs;
        const int32_t from = c < nf ? c : c - nf;
        for (int32_t r = 0; r < runs; ++r) {
            if (!source.getColumnValue(r, from, column + r)) {
                clear();
                errorText = source.errorText();
                return 0;
            }
        }
    }

    const std::vector<double> raw = correlate(table.get(), runs, columns, factorMoments);
    correlation = raw;
    const auto width = static_cast<std::size_t>(columns);
    for (int32_t i = 0; i < nf; ++i)
        for (int32_t j = i + 1; j < nf; ++j)
            if (raw[static_cast<std::size_t>(i) * width + static_cast<std::size_t>(j)] > kCollinearLimit) {
                collinearPairs.emplace_back(i, j);
                records[static_cast<std::size_t>(j)].kind = kCorrelatedFactor;
            }
    std::vector<int32_t> active;
    for (int32_t f = 0; f < nf; ++f)
        if (records[static_cast<std::size_t>(f)].kind == kUncertainFactor) active.push_back(f);
    const auto k = static_cast<int32_t>(active.size());
    activeCount = k;
    determinations.assign(static_cast<std::size_t>(nv), Determination{});
    runs_ = runs;

    // The regression of variable v on the uncertain factors through the
    // correlation matrix `r`, into the three slots of its data kind and the
    // two determinations of that kind; false for a singular matrix.
    Eigen::MatrixXd a(k + 1, k + 1), b;
    for (int32_t p = 0; p < k; ++p)
        for (int32_t q = 0; q < k; ++q)
            a(p, q) = raw[static_cast<std::size_t>(active[static_cast<std::size_t>(p)]) * width +
                          static_cast<std::size_t>(active[static_cast<std::size_t>(q)])];
    const double dRuns = static_cast<double>(runs);
    auto regress = [&](const std::vector<double>& r, int32_t v, int32_t pearSlot, int32_t determinationAt) {
        const std::size_t output = static_cast<std::size_t>(nf + v);
        for (int32_t p = 0; p < k; ++p)
            a(p, k) = a(k, p) = r[static_cast<std::size_t>(active[static_cast<std::size_t>(p)]) * width + output];
        a(k, k) = 1.0;
        if (!invert(a, b)) return false;
        inverse.assign(b.data(), b.data() + b.size());
        for (int32_t p = 0; p < k; ++p) {
            std::vector<double>& values = records[static_cast<std::size_t>(active[static_cast<std::size_t>(p)])].values;
            values[at(v, pearSlot)] = a(p, k);
            values[at(v, pearSlot + 2)] = -b(p, k) / std::sqrt(b(k, k) * b(p, p));
            values[at(v, pearSlot + 4)] = -b(p, k) / b(k, k);
        }
        const double r2 = 1.0 - 1.0 / b(k, k);
        Determination& d = determinations[static_cast<std::size_t>(v)];
        d[static_cast<std::size_t>(determinationAt)] = r2;
        d[static_cast<std::size_t>(determinationAt) + 2] =
            1.0 - (1.0 - r2) * (dRuns - 1.0) / (dRuns - static_cast<double>(k));
        return true;
    };
    // A singular matrix sets `slots` of the variable to 1.0 for uncertain
    // factors and 0.0 for the others, and the determinations of its kind to
    // 1.0; nothing after it is computed (a failure on values leaves every
    // rank measure at 0.0, one on ranks every Smirnov value), but the tests
    // and ranks are, and the result counts as computed: it is what the
    // panels show, since an inversion failure is not reported.
    auto singular = [&](int32_t v, std::initializer_list<int32_t> slots, std::initializer_list<std::size_t> kinds) {
        for (IndexRecord& record : records)
            for (const int32_t s : slots) record.values[at(v, s)] = record.kind == kUncertainFactor ? 1.0 : 0.0;
        for (const std::size_t d : kinds) determinations[static_cast<std::size_t>(v)][d] = 1.0;
    };
    auto finish = [&] {
        // The sums of squared errors of the SRC and SRRC predictions, which
        // use the raw tables whichever data kind the coefficients come from.
        srcErrors_.assign(static_cast<std::size_t>(nv), 0.0);
        srrcErrors_.assign(static_cast<std::size_t>(nv), 0.0);
        std::vector<double> prediction(n);
        for (int32_t v = 0; v < nv; ++v) {
            const double* y = table.get() + static_cast<std::size_t>(nf + v) * n;
            for (const auto& [slot, moments, errors] :
                 {std::tuple{kSrc, &factorMoments, &srcErrors_}, std::tuple{kSrrc, &rankMoments, &srrcErrors_}}) {
                std::fill(prediction.begin(), prediction.end(), 0.0);
                const double sv = (*moments)[static_cast<std::size_t>(nf + v)].sd;
                for (const int32_t j : active) {
                    const double coefficient = sv * records[static_cast<std::size_t>(j)].values[at(v, slot)] /
                                               (*moments)[static_cast<std::size_t>(j)].sd;
                    const double* x = table.get() + static_cast<std::size_t>(j) * n;
                    for (std::size_t r = 0; r < n; ++r) prediction[r] += coefficient * x[r];
                }
                double e = 0.0;
                for (std::size_t r = 0; r < n; ++r) e += (prediction[r] - y[r]) * (prediction[r] - y[r]);
                (*errors)[static_cast<std::size_t>(v)] = e;
            }
        }
        significance();
        rankMeasures();
        computed = 1;
        return 1;
    };

    for (int32_t v = 0; v < nv; ++v) {
        if (k == 0) {
            clear();
            errorText = kAllFactorsConstantText;
            return 0;
        }
        if (!regress(raw, v, kPear, 0)) {
            singular(v, {0, 1, 2, 3, 4, 5, 6}, {0, 1, 2, 3});
            return finish();
        }
    }

    // Rank tables: position in the column's ascending order plus 1, equal
    // values in run order.
    const std::unique_ptr<int32_t[]> ranks(new int32_t[n * width]);
    for (std::size_t c = 0; c < width; ++c) {
        int32_t* column = ranks.get() + c * n;
        rankPositions(table.get() + c * n, runs, column);
        for (std::size_t r = 0; r < n; ++r) ++column[r];
    }
    const std::vector<double> ranked = correlate(ranks.get(), runs, columns, rankMoments);
    for (int32_t p = 0; p < k; ++p)
        for (int32_t q = 0; q < k; ++q)
            a(p, q) = ranked[static_cast<std::size_t>(active[static_cast<std::size_t>(p)]) * width +
                             static_cast<std::size_t>(active[static_cast<std::size_t>(q)])];
    for (int32_t v = 0; v < nv; ++v) {
        if (!regress(ranked, v, kSpea, 1)) {
            singular(v, {kSpea, kPrcc, kSrrc, kSmirnov}, {1, 3});
            return finish();
        }
    }

    // Each (variable, factor) pair on its own: the pairs share nothing they
    // write, so they may run on several processors.
    const int64_t pairs = int64_t{nv} * k;
    parallelFor(pairs, 4, [&](int64_t first, int64_t last) {
        SmirnovStatistic smirnov(runs);
        for (int64_t pair = first; pair < last; ++pair) {
            const auto v = static_cast<int32_t>(pair / k);
            const int32_t j = active[static_cast<std::size_t>(pair % k)];
            records[static_cast<std::size_t>(j)].values[at(v, kSmirnov)] =
                smirnov.distance(ranks.get() + static_cast<std::size_t>(j) * n,
                                 ranks.get() + static_cast<std::size_t>(nf + v) * n);
        }
    });
    return finish();
}

void RegressionStats::significance() {
    if (runs_ <= 1) return;
    const int32_t nf = factorCount;
    const int32_t k = activeCount;
    const double n = static_cast<double>(runs_);
    const double level = static_cast<double>(alpha);
    const double tCorrelation = studentQuantile(runs_, level);
    const double tSrc = studentQuantile(runs_ - k, level);
    const double tSrrc = studentQuantile(runs_ - nf, level);
    const double freedom = k + 2 < runs_ ? static_cast<double>(runs_ - k - 2) : n;
    for (int32_t v = 0; v < variableCount; ++v) {
        const std::size_t output = static_cast<std::size_t>(nf + v);
        const double sv = factorMoments[output].sd;
        const double svRanks = rankMoments[output].sd;
        const double srcScale = std::sqrt(srcErrors_[static_cast<std::size_t>(v)] / freedom);
        const double srrcScale = std::sqrt(srrcErrors_[static_cast<std::size_t>(v)] / freedom);
        for (std::size_t j = 0; j < records.size(); ++j) {
            double* x = records[j].values.data() + at(v, 0);
            double* flag = x + kFlagSlot;
            flag[kPcc] = 1.0;
            flag[kPrcc] = 1.0;
            flag[kSmirnov] = x[kSmirnov] == -1.0 ? 0.0 : 1.0;
            if (records[j].kind != kUncertainFactor) continue;

            const double r = x[kPear];
            flag[kPear] = r == 1.0 || std::sqrt((n - 2.0) / (1.0 - r * r)) * r > tCorrelation ? 1.0 : 0.0;
            const double rs = x[kSpea];
            flag[kSpea] = rs != 1.0 && std::sqrt((n - 2.0) / (1.0 - rs * rs)) * rs > tCorrelation ? 1.0 : 0.0;

            const double sj = factorMoments[j].sd;
            const double bSrc = sv * x[kSrc] / sj;
            const double eSrc = srcScale / (std::sqrt(n - 1.0) * sj);
            flag[kSrc] = bSrc / eSrc > tSrc ? 1.0 : 0.0;
            const double sjRanks = rankMoments[j].sd;
            const double bSrrc = svRanks * x[kSrrc] / sjRanks;
            const double eSrrc = srrcScale / (std::sqrt(n - 1.0) * sjRanks);
            flag[kSrrc] = bSrrc / eSrrc > tSrrc ? 1.0 : 0.0;
        }
    }
}

void RegressionStats::rankMeasures() {
    const auto count = static_cast<int32_t>(records.size());
    std::vector<double> strength(records.size());
    std::vector<int32_t> order(records.size());
    // Weakest first; a NaN is weaker than any number.
    auto weaker = [&strength](int32_t p, int32_t q) {
        const double x = strength[static_cast<std::size_t>(p)], y = strength[static_cast<std::size_t>(q)];
        return (std::isnan(x) && !std::isnan(y)) || x < y;
    };
    for (int32_t v = 0; v < variableCount; ++v) {
        for (int32_t m = 0; m < kMeasureCount; ++m) {
            for (std::size_t j = 0; j < records.size(); ++j)
                strength[j] = records[j].kind == kUncertainFactor ? std::fabs(records[j].values[at(v, m)]) : 0.0;
            std::iota(order.begin(), order.end(), 0);
            std::stable_sort(order.begin(), order.end(), weaker);
            for (int32_t p = 0; p < count; ++p)
                records[static_cast<std::size_t>(order[static_cast<std::size_t>(p)])].values[at(v, kRankSlot + m)] =
                    static_cast<double>(count - p);
        }
    }
}

int RegressionStats::applyAlpha(float value) {
    if (value == alpha) return 0;
    alpha = value;
    if (!computed || runs_ == 0 || srcErrors_.size() != static_cast<std::size_t>(variableCount)) return 0;
    significance();
    return 1;
}

int RegressionStats::measureValues(int32_t measure, int32_t variable, double* values) const {
    if (measure < 0 || measure >= kMeasureCount) return 0;
    return slotValues(measure, variable, values);
}

int RegressionStats::measureRanks(int32_t measure, int32_t variable, double* values) const {
    if (measure < 0 || measure >= kMeasureCount) return 0;
    return slotValues(kRankSlot + measure, variable, values);
}

int RegressionStats::measureFlags(int32_t measure, int32_t variable, double* values) const {
    if (measure < 0 || measure >= kMeasureCount) return 0;
    return slotValues(kFlagSlot + measure, variable, values);
}

int RegressionStats::determination(int32_t variable, double* raw, double* ranks) const {
    if (variable < 0 || static_cast<std::size_t>(variable) >= determinations.size()) return 0;
    *raw = determinations[static_cast<std::size_t>(variable)][0];
    *ranks = determinations[static_cast<std::size_t>(variable)][1];
    return 1;
}

int RegressionStats::determinationAdjusted(int32_t variable, double* raw, double* ranks) const {
    if (variable < 0 || static_cast<std::size_t>(variable) >= determinations.size()) return 0;
    *raw = determinations[static_cast<std::size_t>(variable)][2];
    *ranks = determinations[static_cast<std::size_t>(variable)][3];
    return 1;
}

void RegressionStats::writeHeader(std::ostream& out) const {
    SensitivityStats::writeHeader(out);
    writeValue(out, static_cast<double>(alpha));
    out << '\n';
}

void RegressionStats::readHeader(std::istream& in) {
    SensitivityStats::readHeader(in);
    double level = 0.0;
    if (readNumber(in, level)) alpha = static_cast<float>(level);
}

void RegressionStats::writeTrailer(std::ostream& out) const {
    out << activeCount << '\n';
    const auto columns = static_cast<std::size_t>(factorCount) + static_cast<std::size_t>(variableCount);
    // Exactly the lines the reader expects, a missing value as no number.
    for (const std::vector<Moments>* moments : {&factorMoments, &rankMoments}) {
        for (std::size_t c = 0; c < columns; ++c) {
            const Moments m = c < moments->size() ? (*moments)[c] : Moments{std::nan(""), std::nan("")};
            writeValue(out, m.mean);
            out << kSlotSeparator;
            writeValue(out, m.sd);
            out << '\n';
        }
    }
    for (std::size_t v = 0; v < static_cast<std::size_t>(variableCount); ++v) {
        out << '\n';
        for (std::size_t d = 0; d < 4; ++d) {
            writeValue(out, v < determinations.size() ? determinations[v][d] : std::nan(""));
            out << kSlotSeparator;
        }
    }
}

void RegressionStats::readTrailer(std::istream& in) {
    if (!(in >> activeCount)) return;
    const int64_t columns = int64_t{factorCount} + variableCount;
    // A moments line is at least two digits and a separator; a variable's
    // determinations at least four numbers.
    if (factorCount < 0 || variableCount < 0 || !countFitsInput(in, 2 * columns + 4 * int64_t{variableCount}, 2)) {
        in.setstate(std::ios::failbit);
        return;
    }
    for (std::vector<Moments>* moments : {&factorMoments, &rankMoments}) {
        moments->assign(static_cast<std::size_t>(columns), {});
        for (Moments& m : *moments)
            if (!readNumber(in, m.mean) || !readNumber(in, m.sd)) return;
    }
    determinations.assign(static_cast<std::size_t>(variableCount), Determination{});
    for (Determination& d : determinations)
        for (double& x : d)
            if (!readNumber(in, x)) return;
}

void RegressionStats::writeTable(std::ostream& out, const ResultTableRequest& request) const {
    const int32_t measure = request.measure;
    const bool known = measure >= 0 && measure < kMeasureCount;
    char title[64];
    std::snprintf(title, sizeof title, "Value of the %ss vs. selected factors", measureName(measure));
    out << title << "\nCoefficients of model determination:\n";

    // The four labels show the current variable's determinations as a table
    // cell would, and nothing when there are none.
    std::string labels[4];
    double raw = 0.0, ranks = 0.0;
    if (determination(request.currentVariable, &raw, &ranks)) {
        labels[0] = formatIndexValue(raw);
        labels[1] = formatIndexValue(ranks);
    }
    if (determinationAdjusted(request.currentVariable, &raw, &ranks)) {
        labels[2] = formatIndexValue(raw);
        labels[3] = formatIndexValue(ranks);
    }
    char line[160];
    std::snprintf(line, sizeof line, "    on row data: %20s\t    on ranks: %20s\n", labels[0].c_str(),
                  labels[1].c_str());
    out << line;
    std::snprintf(line, sizeof line, "on row data adj: %20s\ton ranks adj: %20s\n\n", labels[2].c_str(),
                  labels[3].c_str());
    out << line;

    // An unknown measure shows its sheets empty.
    static constexpr CellMark marks[kMeasureCount] = {&notSignificant<0>, &notSignificant<1>, &notSignificant<2>,
                                                      &notSignificant<3>, &notSignificant<4>, &notSignificant<5>,
                                                      &notSignificant<6>};
    const CellMark mark = known ? marks[measure] : nullptr;
    out << "Sensitivity indexes\n";
    writeSheet(out, request, known ? measure : kSlots, mark);
    out << "\nRanks\n";
    writeSheet(out, request, known ? kRankSlot + measure : kSlots, mark);
}

}  // namespace tarvex
