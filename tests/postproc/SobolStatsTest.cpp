// Sobol indices on samples of the program's own Sobol design, checked
// against the analytic fractions of Ishigami's function, a G function and an
// additive model; the file block and the table text.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <sstream>

#include "DesignRuns.h"
#include "PostprocFixtures.h"
#include "model/ModelConfiguration.h"
#include "postproc/PostprocessorFile.h"
#include "postproc/SensitivityClasses.h"
#include "postproc/SobolStats.h"
#include "postproc/VelsConfiguration.h"
#include "sampling/SobolSampler.h"

namespace tarvex {
namespace {

using test::GFunction;
using test::Ishigami;
using test::valuesOf;
using testing::constantFactor;
using testing::uniformFactor;

constexpr double kPi = std::numbers::pi;

// Base size of the accuracy tests. Every estimate is a mean over B runs of
// products of centred outputs, divided by the variance; for these models
// such a product has a standard deviation below 1.5 variances, so a Monte
// Carlo base would give a standard error of 1.5 / sqrt(B) and two of them,
// 3 / sqrt(B) ~ 0.047 at B = 4096, bound a single index. The terms of two
// factors are sums of three estimates: 4 / sqrt(B) ~ 0.0625. The
// quasi-random base does better than this bound (errors below 0.006 here).
constexpr int32_t kBase = 4096;
const double kFirstTolerance = 3.0 / std::sqrt(double(kBase));
const double kTermTolerance = 4.0 / std::sqrt(double(kBase));

std::unique_ptr<SobolSampler> sobol(int32_t base, int32_t kind, int32_t order, int64_t blocks) {
    auto s = std::make_unique<SobolSampler>();
    EXPECT_EQ(s->setBaseSize(base), 1);
    s->setDesignKind(kind);
    s->setOrder(order);
    EXPECT_EQ(s->setSamples(int32_t(blocks * base)), 1);
    return s;
}

// x1 .. x3 on [-pi, pi].
void addIshigamiFactors(PrepConfiguration& prep) {
    for (const char* name : {"x1", "x2", "x3"}) ASSERT_EQ(prep.factors.addFactor(uniformFactor(name, -kPi, kPi)), 1);
}

TEST(SobolStats, FirstAndTotalOrderOfGFunctionAndIshigami) {
    // Five uniform factors on [0, 1] with a constant among them, which
    // takes no block: the design has 2 * 5 + 2 blocks.
    PrepConfiguration prep;
    for (const char* name : {"x1", "x2"}) ASSERT_EQ(prep.factors.addFactor(uniformFactor(name)), 1);
    ASSERT_EQ(prep.factors.addFactor(constantFactor("k", 0.5)), 1);
    for (const char* name : {"x3", "x4", "x5"}) ASSERT_EQ(prep.factors.addFactor(uniformFactor(name)), 1);
    prep.sampler = sobol(kBase, 1, 0, 12);
    const GFunction g{{0.0, 1.0, 4.5, 9.0, 99.0}};
    const auto onPi = [](double u) { return kPi * (2.0 * u - 1.0); };
    OutputTable table;
    test::runModels(prep,
                    {[&g](const double* x) {
                         const double u[5] = {x[0], x[1], x[3], x[4], x[5]};
                         return g.value(u);
                     },
                     [&onPi](const double* x) { return Ishigami::value(onPi(x[0]), onPi(x[1]), onPi(x[3])); },
                     [](const double*) { return 2.5; }},
                    table);

    SobolStats stats;
    stats.variableCount = 3;
    ASSERT_EQ(stats.compute(prep, table), 1) << stats.errorText;
    EXPECT_EQ(stats.computed, 1);
    EXPECT_EQ(stats.factorCount, 6);
    EXPECT_EQ(stats.extra, 5);
    EXPECT_EQ(stats.termCount, 6);
    EXPECT_EQ(stats.slotMode, 1);
    EXPECT_EQ(stats.maxOrder, 0);
    ASSERT_EQ(stats.records.size(), 6u);
    EXPECT_EQ(stats.records[2].kind, kConstantFactor);
    EXPECT_EQ(stats.records[2].values, std::vector<double>(6, 0.0));
    EXPECT_EQ(stats.records[3].groupNames, std::vector<std::string>{"x3"});

    const auto first = [&](int32_t v) { return valuesOf(stats, &SobolStats::firstOrder, v); };
    const auto total = [&](int32_t v) { return valuesOf(stats, &SobolStats::totalOrder, v); };
    const size_t uncertain[5] = {0, 1, 3, 4, 5};
    for (size_t i = 0; i < 5; ++i) {
        const size_t r = uncertain[i];
        EXPECT_NEAR(first(0)[r], g.first(i), kFirstTolerance) << "G, factor " << i;
        EXPECT_NEAR(total(0)[r], g.total(i), kFirstTolerance) << "G, factor " << i;
        // Ishigami reads x1, x2, x3 only.
        EXPECT_NEAR(first(1)[r], i < 3 ? Ishigami::first[i] : 0.0, kFirstTolerance) << "Ishigami, factor " << i;
        EXPECT_NEAR(total(1)[r], i < 3 ? Ishigami::total[i] : 0.0, kFirstTolerance) << "Ishigami, factor " << i;
        // A constant output has no variance to share: zeros, no division.
        EXPECT_EQ(first(2)[r], 0.0);
        EXPECT_EQ(total(2)[r], 0.0);
    }
    // The first form has no closed indices.
    std::vector<double> none(6);
    EXPECT_EQ(stats.closedIndex(0, none.data()), 0);
    EXPECT_EQ(stats.firstOrder(3, none.data()), 0);
}

TEST(SobolStats, HigherOrderTermsAndClosedIndices) {
    // k = 3 and order 2: the single factors, then the pairs, 2 + 3 + 3 blocks.
    PrepConfiguration prep;
    addIshigamiFactors(prep);
    prep.sampler = sobol(kBase, 3, 2, 8);
    // An additive model: every pair's own index is 0 and its closed index the
    // sum of its factors' shares c_i^2 / (1 + 4 + 9).
    const double share[3] = {1.0 / 14.0, 4.0 / 14.0, 9.0 / 14.0};
    OutputTable table;
    test::runModels(prep,
                    {[](const double* x) { return Ishigami::value(x[0], x[1], x[2]); },
                     [](const double* x) { return x[0] + 2.0 * x[1] + 3.0 * x[2]; }, [](const double*) { return -1.0; }},
                    table);

    SobolStats stats;
    stats.variableCount = 3;
    ASSERT_EQ(stats.compute(prep, table), 1) << stats.errorText;
    EXPECT_EQ(stats.slotMode, 3);
    EXPECT_EQ(stats.maxOrder, 2);
    EXPECT_EQ(stats.termCount, 6);
    ASSERT_EQ(stats.records.size(), 6u);
    const char* names[6] = {"x1", "x2", "x3", "x1,x2", "x1,x3", "x2,x3"};
    for (size_t r = 0; r < 6; ++r) {
        EXPECT_EQ(stats.records[r].name, names[r]);
        EXPECT_EQ(stats.records[r].values.size(), r < 3 ? 9u : 6u);
    }
    EXPECT_EQ(stats.records[4].groupNames, (std::vector<std::string>{"x1", "x3"}));

    const auto index = [&](int32_t v) { return valuesOf(stats, &SobolStats::firstOrder, v); };
    const auto total = [&](int32_t v) { return valuesOf(stats, &SobolStats::totalOrder, v); };
    const auto closed = [&](int32_t v) { return valuesOf(stats, &SobolStats::closedIndex, v); };
    const double pairIndex[3] = {0.0, Ishigami::v13 / Ishigami::v, 0.0};
    const double pairClosed[3] = {(Ishigami::v1 + Ishigami::v2) / Ishigami::v,
                                  (Ishigami::v1 + Ishigami::v13) / Ishigami::v, Ishigami::v2 / Ishigami::v};
    const int pairs[3][2] = {{0, 1}, {0, 2}, {1, 2}};
    for (size_t i = 0; i < 3; ++i) {
        EXPECT_NEAR(index(0)[i], Ishigami::first[i], kFirstTolerance) << i;
        EXPECT_NEAR(total(0)[i], Ishigami::total[i], kFirstTolerance) << i;
        EXPECT_NEAR(closed(0)[i], Ishigami::first[i], kFirstTolerance) << i;
        EXPECT_NEAR(index(0)[3 + i], pairIndex[i], kTermTolerance) << names[3 + i];
        EXPECT_NEAR(closed(0)[3 + i], pairClosed[i], kTermTolerance) << names[3 + i];
        // Pairs have no total index.
        EXPECT_TRUE(std::isnan(total(0)[3 + i]));

        EXPECT_NEAR(index(1)[i], share[i], kFirstTolerance) << i;
        EXPECT_NEAR(closed(1)[i], share[i], kFirstTolerance) << i;
        EXPECT_NEAR(index(1)[3 + i], 0.0, kTermTolerance) << names[3 + i];
        EXPECT_NEAR(closed(1)[3 + i], share[pairs[i][0]] + share[pairs[i][1]], kTermTolerance) << names[3 + i];

        // A constant output: guarded indices are 0, the closed ones 0 / 0.
        EXPECT_EQ(index(2)[i], 0.0);
        EXPECT_EQ(total(2)[i], 0.0);
        EXPECT_EQ(index(2)[3 + i], 0.0);
        EXPECT_TRUE(std::isnan(closed(2)[i]));
        EXPECT_TRUE(std::isnan(closed(2)[3 + i]));
    }

    // Order k walks the same blocks (up to order k - 1) and adds the term of
    // all factors: 1 minus the other indices, closed index 1.
    static_cast<SobolSampler&>(*prep.sampler).setOrder(3);
    ASSERT_EQ(stats.compute(prep, table), 1) << stats.errorText;
    EXPECT_EQ(stats.maxOrder, 3);
    EXPECT_EQ(stats.termCount, 7);
    ASSERT_EQ(stats.records.size(), 7u);
    const IndexRecord& all = stats.records[6];
    EXPECT_EQ(all.name, "x1,x2,x3");
    EXPECT_EQ(all.groupNames, (std::vector<std::string>{"x1", "x2", "x3"}));
    ASSERT_EQ(all.values.size(), 6u);
    // Ishigami has no term of three factors; the additive model none at all.
    EXPECT_NEAR(all.values[0], 0.0, kTermTolerance);
    EXPECT_NEAR(all.values[2], 0.0, kTermTolerance);
    EXPECT_EQ(all.values[1], 1.0);
    EXPECT_EQ(all.values[4], 1.0);  // constant output: 1 - 0
}

TEST(SobolStats, FlatBlocksAndRefusals) {
    PrepConfiguration prep;
    addIshigamiFactors(prep);
    prep.sampler = sobol(16, 1, 0, 8);
    OutputTable table;
    test::runModels(prep, {[](const double* x) { return x[0]; }}, table);
    SobolStats stats;
    stats.variableCount = 1;

    // An empty table: 0 and no message.
    OutputTable empty;
    ASSERT_EQ(empty.allocate(1), 1);
    EXPECT_EQ(stats.compute(prep, empty), 0);
    EXPECT_EQ(stats.errorText, "No errors");
    EXPECT_EQ(stats.computed, 0);

    // One run short of the design's 8 blocks of 16.
    OutputTable cut;
    ASSERT_EQ(cut.allocate(1), 1);
    for (int32_t r = 0; r + 1 < table.rowCount(); ++r) {
        const double y = table.value(r, 0);
        ASSERT_GT(cut.addRow(&y), 0);
    }
    EXPECT_EQ(stats.compute(prep, cut), 0);
    EXPECT_EQ(stats.errorText, "The Sobol design of 3 factors and base size 16 needs 128 runs, the output table holds 127");
    EXPECT_TRUE(stats.records.empty());

    // Block A or block B constant: each guard of the second pass tests the
    // variance of the other block than the one it divides by. With vA = 0 the
    // first order index stays the first pass's 0 and the total divides by 0;
    // with vB = 0 the other way round. Nothing traps, nothing ends.
    for (int32_t flat : {0, 1}) {
        OutputTable crafted;
        ASSERT_EQ(crafted.allocate(1), 1);
        for (int32_t r = 0; r < table.rowCount(); ++r) {
            // Small integers: the means and centred values are exact, so the
            // flat block's variance is exactly 0.
            const double y = r / 16 == flat ? 5.0 : double((r * 7) % 11);
            ASSERT_GT(crafted.addRow(&y), 0);
        }
        ASSERT_EQ(stats.compute(prep, crafted), 1);
        for (const IndexRecord& record : stats.records) {
            const double kept = record.values[flat == 0 ? 0 : 1];
            const double divided = record.values[flat == 0 ? 1 : 0];
            EXPECT_EQ(kept, 0.0) << "flat block " << flat;
            EXPECT_FALSE(std::isfinite(divided)) << "flat block " << flat << ": " << divided;
        }
    }

    stats.variableCount = 2;
    EXPECT_EQ(stats.compute(prep, table), 0);
    EXPECT_EQ(stats.errorText, "2 variables are to be analysed, the output table holds 1");

    stats.variableCount = 1;
    PrepConfiguration random = test::randomPrep(4);
    EXPECT_EQ(stats.compute(random, table), 0);
    EXPECT_EQ(stats.errorText, "The sample was not made by the Sobol design");
    EXPECT_EQ(stats.computed, 0);
}

std::string blockText(const SensitivityStats& stats) {
    std::ostringstream out;
    stats.write(out);
    return out.str();
}

TEST(SobolStats, FileBlockAndTable) {
    PrepConfiguration prep;
    addIshigamiFactors(prep);
    ASSERT_EQ(prep.factors.addFactor(constantFactor("k", 1.0)), 1);
    prep.sampler = sobol(16, 3, 3, 8);
    OutputTable table;
    test::runModels(prep,
                    {[](const double* x) { return Ishigami::value(x[0], x[1], x[2]); }, [](const double*) { return 3.0; }},
                    table);
    auto stats = std::make_unique<SobolStats>();
    stats->variableCount = 2;
    ASSERT_EQ(stats->compute(prep, table), 1) << stats->errorText;

    // typeId, factorCount, extra, variableCount, maxOrder, termCount,
    // slotMode; each record: name, groupCount, the group names, kind, then
    // three slots per variable for a single factor and two for the others.
    const std::string text = blockText(*stats);
    const std::string start = "4\n4\n3\n2\n3\n7\n3\nindexes = yes\nx1\n1\nx1\n3\t \t";
    EXPECT_EQ(text.substr(0, start.size()), start);
    const std::string pairHead = "\nx2,x3\n2\nx2\nx3\n";
    const size_t pair = text.find(pairHead);
    ASSERT_NE(pair, std::string::npos);
    const size_t lineStart = pair + pairHead.size();
    const std::string pairLine = text.substr(lineStart, text.find('\n', lineStart) - lineStart);
    // Kind, then 2 variables x 2 slots, each value followed by the separator;
    // the constant output's closed index is written "nan".
    EXPECT_EQ(std::count(pairLine.begin(), pairLine.end(), '\t'), 10) << pairLine;
    EXPECT_NE(pairLine.find("nan\t \t"), std::string::npos) << pairLine;

    // Through the post-processor file, both forms, non-finite values included.
    VelsConfiguration vels;
    vels.setOutputs(1, {"Y"});
    ASSERT_EQ(vels.addVariable("Y"), 1);
    ASSERT_EQ(vels.addVariable("C"), 1);
    ModelConfiguration model;
    for (int form : {3, 1}) {
        if (form == 1) {
            prep.sampler = sobol(16, 1, 0, 8);
            OutputTable firstForm;
            test::runModels(prep,
                            {[](const double* x) { return Ishigami::value(x[0], x[1], x[2]); },
                             [](const double*) { return 3.0; }},
                            firstForm);
            ASSERT_EQ(stats->compute(prep, firstForm), 1) << stats->errorText;
        }
        vels.adoptSensitivity(*stats);
        std::stringstream file;
        writePostprocessorText(file, prep, model, vels);
        PrepConfiguration prepBack;
        ModelConfiguration modelBack;
        VelsConfiguration back;
        ASSERT_EQ(readPostprocessorText(file, prepBack, modelBack, back), 1) << form;
        ASSERT_NE(back.sensitivity, nullptr);
        const auto& read = dynamic_cast<const SobolStats&>(*back.sensitivity);
        EXPECT_EQ(read.computed, 1);
        EXPECT_EQ(read.factorCount, 4);
        EXPECT_EQ(read.extra, 3);
        EXPECT_EQ(read.maxOrder, stats->maxOrder);
        EXPECT_EQ(read.termCount, stats->termCount);
        EXPECT_EQ(read.slotMode, form);
        ASSERT_EQ(read.records.size(), stats->records.size());
        for (size_t r = 0; r < read.records.size(); ++r) {
            const IndexRecord& a = stats->records[r];
            const IndexRecord& b = read.records[r];
            EXPECT_EQ(b.name, a.name);
            EXPECT_EQ(b.kind, a.kind);
            EXPECT_EQ(b.groupNames, a.groupNames);
            ASSERT_EQ(b.values.size(), a.values.size()) << a.name;
            for (size_t i = 0; i < a.values.size(); ++i) {
                if (std::isnan(a.values[i])) {
                    EXPECT_TRUE(std::isnan(b.values[i]));
                } else {
                    EXPECT_NEAR(b.values[i], a.values[i], 5e-6 * std::fabs(a.values[i])) << a.name;
                }
            }
        }
    }

    // Save table: the first form's two sheets, a constant shown as such.
    ResultTableRequest request;
    request.variables = {0};
    request.variableNames = {"Y"};
    std::ostringstream out;
    stats->writeTable(out, request);
    const std::string saved = out.str();
    const std::string head = std::string("Sobol First order indexes\n") + std::string(20, ' ') + "\t" +
                             std::string(19, ' ') + "Y\t\n" + std::string(18, ' ') + "x1\t";
    EXPECT_EQ(saved.substr(0, head.size()), head);
    EXPECT_NE(saved.find("\nSobol total order Indexes\n"), std::string::npos);
    EXPECT_NE(saved.find(std::string(19, ' ') + "k\t" + std::string(12, ' ') + "Constant\t\n"), std::string::npos);
    stats->slotMode = 3;
    std::ostringstream higher;
    stats->writeTable(higher, request);
    EXPECT_EQ(higher.str().substr(0, 14), "Sobol indexes\n");
    EXPECT_EQ(higher.str().find("total"), std::string::npos);
}

}  // namespace
}  // namespace tarvex
