// FAST indices on samples of the program's own FAST design in its three
// modes, checked against the variance fractions of linear models (which the
// search curves carry into known harmonics), Ishigami's function, and the
// Fourier sums computed term by term; the file block and the table text.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <sstream>

#include "DesignRuns.h"
#include "PostprocFixtures.h"
#include "model/ModelConfiguration.h"
#include "postproc/FastStats.h"
#include "postproc/PostprocessorFile.h"
#include "postproc/VelsConfiguration.h"
#include "sampling/FastSampler.h"

namespace tarvex {
namespace {

using test::Ishigami;
using test::valuesOf;
using testing::constantFactor;
using testing::uniformFactor;

constexpr double kPi = std::numbers::pi;

// Along a search curve a uniform factor is 1/2 + arcsin(sin t) / pi, a
// triangle wave whose harmonic h (odd only) carries 96 / (pi^4 h^4) of its
// variance. Four harmonics keep h = 1 and 3 of a linear term.
const double kCaptured = (1.0 + 1.0 / 81.0) * 96.0 / (kPi * kPi * kPi * kPi);

// The spectrum divides by n, the curve's variance by n - 1: a linear term
// with share c of the variance shows as c * kCaptured * (n - 1) / n. What
// is left beside it: the triangle's higher harmonics folding back, and in
// the extended test the complementary factors' harmonics above the band
// 1 .. omegaMax / 2 (at most 0.0016 of their share), below 2e-3 together.
double seen(double share, int32_t curveLength) {
    return share * kCaptured * double(curveLength - 1) / double(curveLength);
}
constexpr double kLinearTolerance = 2e-3;
// The classic set 1, 9, 15 puts x2 on the ninth harmonic of x1, of
// amplitude 1/81 of x1's first: in y = x1 + 2 x2 + 3 x3 that moves x2's
// index by up to 2 (1/2) (1/81) = 1.2 % of it, 0.0035, and the variance
// by up to 0.35 %, depending on the phases.
constexpr double kClassicTolerance = 4e-3;

std::unique_ptr<FastSampler> fast(int32_t mode, int32_t n) {
    auto s = std::make_unique<FastSampler>();
    EXPECT_EQ(s->setAnalysisMode(mode) + s->setSamples(n) + s->setSeed(7), 3);
    return s;
}

const FastBlock& block(const PrepConfiguration& prep, size_t row) {
    return (*static_cast<const FastSampler&>(*prep.sampler).designTable())[row];
}

TEST(FastStats, ClassicTestOfALinearModelInBothForms) {
    // x1, a constant, x2, x3 at the frequencies 1, 9, 15; y = x1 + 2 x2 + 3 x3.
    const double share[3] = {1.0 / 14.0, 4.0 / 14.0, 9.0 / 14.0};
    for (const int32_t n : {2001, 2000}) {
        PrepConfiguration prep;
        ASSERT_EQ(prep.factors.addFactor(uniformFactor("x1")), 1);
        ASSERT_EQ(prep.factors.addFactor(constantFactor("k", 4.0)), 1);
        for (const char* name : {"x2", "x3"}) ASSERT_EQ(prep.factors.addFactor(uniformFactor(name)), 1);
        prep.sampler = fast(0, n);
        OutputTable table;
        test::runModels(prep,
                        {[](const double* x) { return x[0] + 2.0 * x[2] + 3.0 * x[3]; },
                         [](const double* x) { return x[1]; }},
                        table);
        FastStats stats;
        stats.variableCount = 2;
        ASSERT_EQ(stats.compute(prep, table), 1) << stats.errorText;
        EXPECT_EQ(stats.analysisMode, 0);
        EXPECT_EQ(stats.recordCount, 4);
        ASSERT_EQ(stats.records.size(), 4u);
        EXPECT_EQ(stats.records[1].name, "k");
        EXPECT_EQ(stats.records[1].kind, kConstantFactor);
        const auto first = valuesOf(stats, &FastStats::firstOrder, 0);
        const size_t rows[3] = {0, 2, 3};
        for (size_t i = 0; i < 3; ++i) {
            // The even form pairs runs half a step off their angles, which
            // shifts these low frequencies by far less than the tolerance.
            EXPECT_NEAR(first[rows[i]], seen(share[i], n), kClassicTolerance) << "n " << n << ", factor " << i;
            EXPECT_EQ(stats.records[rows[i]].values[1], 0.0);
        }
        EXPECT_EQ(first[1], 0.0);
        // The constant output: D is 0, every index 0.
        EXPECT_EQ(valuesOf(stats, &FastStats::firstOrder, 1), std::vector<double>(4, 0.0));
    }
}

TEST(FastStats, ExtendedTestOfIshigamiAndALinearModel) {
    // A constant among the factors takes no block and no runs.
    PrepConfiguration prep;
    ASSERT_EQ(prep.factors.addFactor(uniformFactor("x1", -kPi, kPi)), 1);
    ASSERT_EQ(prep.factors.addFactor(constantFactor("k", 4.0)), 1);
    for (const char* name : {"x2", "x3"}) ASSERT_EQ(prep.factors.addFactor(uniformFactor(name, -kPi, kPi)), 1);
    // 2000 runs per factor: omegaMax 249, curves of 1993 runs; the others at
    // the complementary frequencies 1 and 31.
    prep.sampler = fast(1, 6000);
    OutputTable table;
    test::runModels(prep,
                    {[](const double* x) { return Ishigami::value(x[0], x[2], x[3]); },
                     [](const double* x) { return x[0] + 2.0 * x[2] + 3.0 * x[3]; }, [](const double*) { return 1.0; }},
                    table);
    FastStats stats;
    stats.variableCount = 3;
    ASSERT_EQ(stats.compute(prep, table), 1) << stats.errorText;
    ASSERT_EQ(stats.records.size(), 4u);
    EXPECT_EQ(stats.records[1].kind, kConstantFactor);
    EXPECT_EQ(stats.records[1].values, std::vector<double>(6, 0.0));
    // From here on, the three uncertain factors alone.
    stats.records.erase(stats.records.begin() + 1);
    const int32_t n = block(prep, 0).third;
    ASSERT_EQ(n, 1993);

    // Ishigami: its sin x1 and x3^4 sin x1 reach beyond four harmonics, and
    // the total index misses what lies above omegaMax / 2; both leave errors
    // of about 0.05 at any sample size, which 0.07 bounds.
    const auto first = valuesOf(stats, &FastStats::firstOrder, 0);
    const auto total = valuesOf(stats, &FastStats::totalOrder, 0);
    for (size_t i = 0; i < 3; ++i) {
        EXPECT_NEAR(first[i], Ishigami::first[i], 0.07) << i;
        EXPECT_NEAR(total[i], Ishigami::total[i], 0.07) << i;
    }
    // A linear model: first as in the classic test; the total is 1 minus
    // what the other factors show in the band 1 .. omegaMax / 2, which holds
    // their first harmonics.
    const double share[3] = {1.0 / 14.0, 4.0 / 14.0, 9.0 / 14.0};
    const auto firstLinear = valuesOf(stats, &FastStats::firstOrder, 1);
    const auto totalLinear = valuesOf(stats, &FastStats::totalOrder, 1);
    for (size_t i = 0; i < 3; ++i) {
        EXPECT_NEAR(firstLinear[i], seen(share[i], n), kLinearTolerance) << i;
        EXPECT_NEAR(totalLinear[i], 1.0 - seen(1.0 - share[i], n), kLinearTolerance) << i;
    }
    EXPECT_EQ(valuesOf(stats, &FastStats::firstOrder, 2), std::vector<double>(3, 0.0));
    EXPECT_EQ(valuesOf(stats, &FastStats::totalOrder, 2), std::vector<double>(3, 0.0));

    // The first block's sums term by term, as written: angles s w c / n with
    // c = 6.283185307179586, cosine and sine of each in extended precision.
    std::vector<long double> d(static_cast<size_t>(n));
    long double sum = 0.0L, squares = 0.0L;
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
    const int32_t m = block(prep, 0).first;
    long double h = 0.0L, l = 0.0L;
    for (int64_t k = 1; k <= 4; ++k) h += spectrum(k * m);
    for (int64_t p = 1; p <= m / 2; ++p) l += spectrum(p);
    const long double variance = squares / (n - 1);
    EXPECT_NEAR(first[0], double(h / variance), 1e-14);
    EXPECT_NEAR(total[0], double(1.0L - l / variance), 1e-14);
}

// Two groups and no factor outside them: two records, one block each of
// 20 curves of 65 runs, the members at frequency 8 and the others at 1.
PrepConfiguration groupsPrep(OutputTable& table) {
    PrepConfiguration prep;
    for (const char* name : {"x1", "x2", "x3", "x4"}) EXPECT_EQ(prep.factors.addFactor(uniformFactor(name)), 1);
    auto sampler = fast(2, 2600);
    EXPECT_EQ(sampler->addGroup("g1") + sampler->addGroup("g2"), 2);
    EXPECT_EQ(sampler->addElement("g1", "x1") + sampler->addElement("g1", "x2"), 2);
    EXPECT_EQ(sampler->addElement("g2", "x3") + sampler->addElement("g2", "x4"), 2);
    prep.sampler = std::move(sampler);
    // One active member per group and output, so that no two terms share a
    // frequency on the curves.
    test::runModels(prep,
                    {[](const double* x) { return x[0] + 2.0 * x[2]; }, [](const double* x) { return 3.0 * x[1] + x[3]; },
                     [](const double*) { return 0.25; }},
                    table);
    return prep;
}

TEST(FastStats, GroupsTakeOneRecordEach) {
    OutputTable table;
    PrepConfiguration prep = groupsPrep(table);
    FastStats stats;
    stats.variableCount = 3;
    ASSERT_EQ(stats.compute(prep, table), 1) << stats.errorText;
    EXPECT_EQ(stats.factorCount, 4);
    EXPECT_EQ(stats.recordCount, 2);
    ASSERT_EQ(stats.records.size(), 2u);
    EXPECT_EQ(stats.records[0].name, "g1");
    EXPECT_EQ(stats.records[1].name, "g2");
    EXPECT_EQ(block(prep, 1), (FastBlock{8, 20, 65, 1300}));
    // Per output, the share of each group: 1/5 and 4/5, then 9/10 and 1/10.
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
}

TEST(FastStats, RefusedDesignsAndTables) {
    PrepConfiguration prep;
    for (const char* name : {"x1", "x2"}) ASSERT_EQ(prep.factors.addFactor(uniformFactor(name)), 1);
    prep.sampler = fast(0, 200);
    OutputTable table;
    test::runModels(prep, {[](const double* x) { return x[0] - x[1]; }}, table);
    FastStats stats;
    stats.variableCount = 1;

    OutputTable cut;
    ASSERT_EQ(cut.allocate(1), 1);
    for (int32_t r = 0; r + 1 < table.rowCount(); ++r) {
        const double y = table.value(r, 0);
        ASSERT_GT(cut.addRow(&y), 0);
    }
    EXPECT_EQ(stats.compute(prep, cut), 0);
    EXPECT_EQ(stats.errorText, "The FAST design needs 200 runs, the output table holds 199");
    EXPECT_EQ(stats.computed, 0);
    EXPECT_TRUE(stats.records.empty());

    stats.variableCount = 3;
    EXPECT_EQ(stats.compute(prep, table), 0);
    EXPECT_EQ(stats.errorText, "3 variables are to be analysed, the output table holds 1");
    stats.variableCount = 1;

    // A third factor added after generation: the table has a row too few.
    ASSERT_EQ(prep.factors.addFactor(uniformFactor("x3")), 1);
    EXPECT_EQ(stats.compute(prep, table), 0);
    EXPECT_EQ(stats.errorText, "The FAST block table has 2 rows for 3 factors or groups");

    // A changed group drops the table.
    ASSERT_EQ(static_cast<FastSampler&>(*prep.sampler).addGroup("g"), 1);
    EXPECT_EQ(stats.compute(prep, table), 0);
    EXPECT_EQ(stats.errorText, "The FAST design has no block table: generate the sample again");

    PrepConfiguration random = test::randomPrep(4);
    EXPECT_EQ(stats.compute(random, table), 0);
    EXPECT_EQ(stats.errorText, "The sample was not made by the FAST design");
}

TEST(FastStats, FileBlockAndTable) {
    OutputTable table;
    PrepConfiguration prep = groupsPrep(table);
    FastStats stats;
    stats.variableCount = 3;
    ASSERT_EQ(stats.compute(prep, table), 1) << stats.errorText;

    // typeId, factorCount, variableCount, recordCount, then the records.
    std::ostringstream block;
    stats.write(block);
    const std::string start = "2\n4\n3\n2\nindexes = yes\ng1\n3\t \t";
    EXPECT_EQ(block.str().substr(0, start.size()), start);

    VelsConfiguration vels;
    vels.setOutputs(1, {"Y"});
    for (const char* name : {"Y", "Z", "C"}) ASSERT_EQ(vels.addVariable(name), 1);
    vels.adoptSensitivity(stats);
    ModelConfiguration model;
    std::stringstream file;
    writePostprocessorText(file, prep, model, vels);
    PrepConfiguration prepBack;
    ModelConfiguration modelBack;
    VelsConfiguration back;
    ASSERT_EQ(readPostprocessorText(file, prepBack, modelBack, back), 1);
    ASSERT_NE(back.sensitivity, nullptr);
    const auto& read = dynamic_cast<const FastStats&>(*back.sensitivity);
    EXPECT_EQ(read.computed, 1);
    EXPECT_EQ(read.factorCount, 4);
    EXPECT_EQ(read.recordCount, 2);
    ASSERT_EQ(read.records.size(), 2u);
    for (size_t r = 0; r < 2; ++r) {
        EXPECT_EQ(read.records[r].name, stats.records[r].name);
        ASSERT_EQ(read.records[r].values.size(), 6u);
        for (size_t i = 0; i < 6; ++i)
            EXPECT_NEAR(read.records[r].values[i], stats.records[r].values[i], 5e-6 * std::fabs(stats.records[r].values[i]));
    }

    // Save table: the total sheet follows unless the design is classic; the
    // file does not say which, so a read object writes both.
    ResultTableRequest request;
    request.variables = {1};
    request.variableNames = {"Z"};
    const std::string sheet = std::string(20, ' ') + "\t" + std::string(19, ' ') + "Z\t\n";
    std::ostringstream out;
    read.writeTable(out, request);
    EXPECT_EQ(out.str().substr(0, 25 + sheet.size()), "Fast first order indexes\n" + sheet);
    EXPECT_NE(out.str().find("\nFast total order Indexes\n" + sheet), std::string::npos);
    stats.analysisMode = 0;
    std::ostringstream classic;
    stats.writeTable(classic, request);
    EXPECT_EQ(classic.str().find("total"), std::string::npos);
}

}  // namespace
}  // namespace tarvex
