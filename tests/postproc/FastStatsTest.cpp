// FAST indices on samples of the program's own FAST design in its three
// modes, against the fractions of linear models (which the search curves
// carry into known harmonics), Ishigami's function and the Fourier sums
// taken term by term; refusals, the file block and the saved table.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <sstream>

#include "DesignRuns.h"
#include "PostprocFixtures.h"
#include "postproc/FastStats.h"
#include "sampling/FastSampler.h"

namespace tarvex {
namespace {

using test::Ishigami;
using test::valuesOf;
using testing::uniformFactor;

constexpr double kPi = std::numbers::pi;

// On a search curve a uniform factor is 1/2 + arcsin(sin t) / pi, a triangle
// wave whose odd harmonic h carries 96 / (pi^4 h^4) of its variance; four
// harmonics keep h = 1 and 3. The spectrum divides by n and the variance by
// n - 1, so a linear term with share c shows as c kCaptured (n - 1) / n.
// Beside it: higher harmonics folding back and, in the extended test, the
// other factors' harmonics above the band 1 .. omegaMax / 2 (at most 0.0016
// of their share): 2e-3 together.
const double kCaptured = (1.0 + 1.0 / 81.0) * 96.0 / (kPi * kPi * kPi * kPi);
double seen(double share, int32_t n) { return share * kCaptured * double(n - 1) / double(n); }
constexpr double kLinearTolerance = 2e-3;

PrepConfiguration fastPrep(int32_t mode, int32_t n, const std::vector<std::string>& factors, double low = 0.0,
                           double high = 1.0) {
    PrepConfiguration prep = test::factorsOf(factors, low, high, 4.0);
    auto s = std::make_unique<FastSampler>();
    EXPECT_EQ(s->setAnalysisMode(mode) + s->setSamples(n) + s->setSeed(7), 3);
    prep.sampler = std::move(s);
    return prep;
}

FastSampler& sampler(PrepConfiguration& prep) { return static_cast<FastSampler&>(*prep.sampler); }

TEST(FastStats, ClassicTestInBothForms) {
    // y = x1 + 2 x2 + 3 x3 at the frequencies 1, 9, 15, a constant between.
    // x2 sits on x1's ninth harmonic (amplitude 1/81 of x1's first), which
    // moves its index by up to 2 (1/2) (1/81) = 1.2 % of it: 4e-3.
    const double share[3] = {1.0 / 14.0, 4.0 / 14.0, 9.0 / 14.0};
    for (const int32_t n : {2001, 2000}) {
        PrepConfiguration prep = fastPrep(0, n, {"x1", "k", "x2", "x3"});
        OutputTable table;
        test::runModels(prep, {[](const double* x) { return x[0] + 2.0 * x[2] + 3.0 * x[3]; }, [](const double* x) { return x[1]; }},
                        table);
        FastStats stats;
        stats.variableCount = 2;
        ASSERT_EQ(stats.compute(prep, table), 1) << stats.errorText;
        EXPECT_EQ(stats.analysisMode, 0);
        EXPECT_EQ(stats.recordCount, 4);
        ASSERT_EQ(stats.records.size(), 4u);
        EXPECT_EQ(stats.records[1].kind, kConstantFactor);
        const auto first = valuesOf(stats, &FastStats::firstOrder, 0);
        const size_t rows[3] = {0, 2, 3};
        // The even form (n = 2000) pairs runs half a step off their angles,
        // far less than that at these frequencies.
        for (size_t i = 0; i < 3; ++i) EXPECT_NEAR(first[rows[i]], seen(share[i], n), 4e-3) << n << " " << i;
        EXPECT_EQ(first[1], 0.0);
        EXPECT_EQ(valuesOf(stats, &FastStats::totalOrder, 0), std::vector<double>(4, 0.0));
        EXPECT_EQ(valuesOf(stats, &FastStats::firstOrder, 1), std::vector<double>(4, 0.0));  // constant output
    }
}

TEST(FastStats, ExtendedTestOfIshigamiAndALinearModel) {
    // 2000 runs per factor: omegaMax 249, curves of 1993 runs, the other
    // factors at 1 and 31; the constant takes no block and no runs.
    PrepConfiguration prep = fastPrep(1, 6000, {"x1", "k", "x2", "x3"}, -kPi, kPi);
    OutputTable table;
    test::runModels(prep,
                    {[](const double* x) { return Ishigami::value(x[0], x[2], x[3]); },
                     [](const double* x) { return x[0] + 2.0 * x[2] + 3.0 * x[3]; }, [](const double*) { return 1.0; }},
                    table);
    FastStats stats;
    stats.variableCount = 3;
    ASSERT_EQ(stats.compute(prep, table), 1) << stats.errorText;
    ASSERT_EQ(stats.records.size(), 4u);
    EXPECT_EQ(stats.records[1].values, std::vector<double>(6, 0.0));
    const FastBlock block = (*sampler(prep).designTable())[0];
    ASSERT_EQ(block, (FastBlock{249, 1, 1993, 1993}));
    const int32_t n = block.third;
    std::vector<double> first[3], total[3];
    for (int32_t v = 0; v < 3; ++v) {
        first[v] = valuesOf(stats, &FastStats::firstOrder, v);
        total[v] = valuesOf(stats, &FastStats::totalOrder, v);
        first[v].erase(first[v].begin() + 1);  // the uncertain factors alone
        total[v].erase(total[v].begin() + 1);
    }
    // Ishigami's sin x1 and x3^4 sin x1 reach past four harmonics and past
    // omegaMax / 2, which leaves errors of about 0.05 at any size: 0.07.
    const double share[3] = {1.0 / 14.0, 4.0 / 14.0, 9.0 / 14.0};
    for (size_t i = 0; i < 3; ++i) {
        EXPECT_NEAR(first[0][i], Ishigami::first[i], 0.07) << i;
        EXPECT_NEAR(total[0][i], Ishigami::total[i], 0.07) << i;
        EXPECT_NEAR(first[1][i], seen(share[i], n), kLinearTolerance) << i;
        EXPECT_NEAR(total[1][i], 1.0 - seen(1.0 - share[i], n), kLinearTolerance) << i;
        EXPECT_EQ(first[2][i] + total[2][i], 0.0);
    }

    // x1's block, with the sums as written: angles s w c / n with
    // c = 6.283185307179586, cosine and sine of each in extended precision.
    std::vector<long double> d(static_cast<size_t>(n));
    long double sum = 0.0L, squares = 0.0L, h = 0.0L, l = 0.0L;
    for (int32_t r = 0; r < n; ++r) sum += table.value(r, 0);
    for (int32_t r = 0; r < n; ++r) {
        d[size_t(r)] = table.value(r, 0) - sum / n;
        squares += d[size_t(r)] * d[size_t(r)];
    }
    const int32_t q = (n - 1) / 2;
    const auto spectrum = [&](int64_t w) {
        long double a = d[size_t(q)], b = 0.0L;
        for (int32_t s = 1; s <= q; ++s) {
            const long double angle = static_cast<long double>(s * w) * 6.283185307179586 / n;
            a += (d[size_t(q + s)] + d[size_t(q - s)]) * std::cos(angle);
            b += (d[size_t(q + s)] - d[size_t(q - s)]) * std::sin(angle);
        }
        return 2.0L * ((a / n) * (a / n) + (b / n) * (b / n));
    };
    for (int64_t k = 1; k <= 4; ++k) h += spectrum(k * block.first);
    for (int64_t p = 1; p <= block.first / 2; ++p) l += spectrum(p);
    EXPECT_NEAR(first[0][0], double(h / (squares / (n - 1))), 1e-14);
    EXPECT_NEAR(total[0][0], double(1.0L - l / (squares / (n - 1))), 1e-14);
}

TEST(FastStats, GroupsTheirFileBlockAndTable) {
    // Two groups and no factor outside them: two records, each a block of
    // 20 curves of 65 runs, its members at 8 and the others at 1. One active
    // member per group and output keeps two terms off one frequency.
    PrepConfiguration prep = fastPrep(2, 2600, {"x1", "x2", "x3", "x4"});
    EXPECT_EQ(sampler(prep).addGroup("g1") + sampler(prep).addGroup("g2"), 2);
    EXPECT_EQ(sampler(prep).addElement("g1", "x1") + sampler(prep).addElement("g1", "x2"), 2);
    EXPECT_EQ(sampler(prep).addElement("g2", "x3") + sampler(prep).addElement("g2", "x4"), 2);
    OutputTable table;
    test::runModels(prep,
                    {[](const double* x) { return x[0] + 2.0 * x[2]; }, [](const double* x) { return 3.0 * x[1] + x[3]; },
                     [](const double*) { return 0.25; }},
                    table);
    FastStats stats;
    stats.variableCount = 3;
    ASSERT_EQ(stats.compute(prep, table), 1) << stats.errorText;
    EXPECT_EQ(stats.recordCount, 2);
    ASSERT_EQ(stats.records.size(), 2u);
    EXPECT_EQ(stats.records[0].name + stats.records[1].name, "g1g2");
    EXPECT_EQ((*sampler(prep).designTable())[1], (FastBlock{8, 20, 65, 1300}));
    const double share[2][2] = {{0.2, 0.8}, {0.9, 0.1}};
    for (int32_t v = 0; v < 2; ++v) {
        const auto first = valuesOf(stats, &FastStats::firstOrder, v);
        const auto total = valuesOf(stats, &FastStats::totalOrder, v);
        for (size_t g = 0; g < 2; ++g) {
            EXPECT_NEAR(first[g], seen(share[v][g], 65), kLinearTolerance) << v << " " << g;
            EXPECT_NEAR(total[g], 1.0 - seen(1.0 - share[v][g], 65), kLinearTolerance) << v << " " << g;
        }
    }
    EXPECT_EQ(valuesOf(stats, &FastStats::totalOrder, 2), std::vector<double>(2, 0.0));

    // typeId, factorCount, variableCount, recordCount, then the records.
    std::unique_ptr<SensitivityStats> read;
    const std::string start = "2\n4\n3\n2\nindexes = yes\ng1\n3\t \t";
    EXPECT_EQ(test::roundTripBlock(prep, stats, &read).substr(0, start.size()), start);
    ASSERT_NE(read, nullptr);
    // The file does not hold the mode: a read object writes both sheets, a
    // classic one the first only.
    ResultTableRequest request{{1}, {"Z"}, {}, 0, 0};
    const std::string sheet = std::string(20, ' ') + "\t" + std::string(19, ' ') + "Z\t\n";
    std::ostringstream out;
    read->writeTable(out, request);
    EXPECT_EQ(out.str().substr(0, 25 + sheet.size()), "Fast first order indexes\n" + sheet);
    EXPECT_NE(out.str().find("\nFast total order Indexes\n" + sheet), std::string::npos);
    stats.analysisMode = 0;
    std::ostringstream classic;
    stats.writeTable(classic, request);
    EXPECT_EQ(classic.str().find("total"), std::string::npos);
}

TEST(FastStats, RefusedDesignsAndTables) {
    PrepConfiguration prep = fastPrep(0, 200, {"x1", "x2"});
    OutputTable table;
    test::runModels(prep, {[](const double* x) { return x[0] - x[1]; }}, table);
    FastStats stats;
    stats.variableCount = 1;
    OutputTable cut = test::withoutLastRun(table);
    EXPECT_EQ(stats.compute(prep, cut), 0);
    EXPECT_EQ(stats.errorText, "The FAST design needs 200 runs, the output table holds 199");
    EXPECT_EQ(stats.computed, 0);
    EXPECT_TRUE(stats.records.empty());
    stats.variableCount = 3;
    EXPECT_EQ(stats.compute(prep, table), 0);
    EXPECT_EQ(stats.errorText, "3 variables are to be analysed, the output table holds 1");
    stats.variableCount = 1;

    // A block table read from a sample file with a negative frequency.
    std::stringstream text;
    prep.write(text);
    std::string damaged = text.str();
    const size_t row = damaged.find("group information\n5\t1\t200\t200\n");
    ASSERT_NE(row, std::string::npos);
    damaged.insert(row + 18, "-");
    PrepConfiguration bad;
    std::istringstream in(damaged);
    ASSERT_EQ(bad.read(in), 1);
    EXPECT_EQ(stats.compute(bad, table), 0);
    EXPECT_EQ(stats.errorText, "The FAST block table holds a block that cannot be analysed");

    // A factor added after generation; then a group, which drops the table.
    ASSERT_EQ(prep.factors.addFactor(uniformFactor("x3")), 1);
    EXPECT_EQ(stats.compute(prep, table), 0);
    EXPECT_EQ(stats.errorText, "The FAST block table has 2 rows for 3 factors or groups");
    ASSERT_EQ(sampler(prep).addGroup("g"), 1);
    EXPECT_EQ(stats.compute(prep, table), 0);
    EXPECT_EQ(stats.errorText, "The FAST design has no block table: generate the sample again");
    PrepConfiguration random = test::randomPrep(4);
    EXPECT_EQ(stats.compute(random, table), 0);
    EXPECT_EQ(stats.errorText, "The sample was not made by the FAST design");
}

}  // namespace
}  // namespace tarvex
