// Sobol indices on samples of the program's own Sobol design, against the
// analytic fractions of Ishigami's function, a G function and an additive
// model; flat blocks, refusals, the file block and the saved table.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <sstream>

#include "DesignRuns.h"
#include "PostprocFixtures.h"
#include "postproc/SobolStats.h"
#include "sampling/SobolSampler.h"

namespace tarvex {
namespace {

using test::Ishigami;
using test::valuesOf;

constexpr double kPi = std::numbers::pi;

// Every estimate is a mean over B runs of products of centred outputs over
// the variance; for these models such a product has a standard deviation
// below 1.5, so on a Monte Carlo base two standard errors are 3 / sqrt(B),
// 0.047 at B = 4096; a term of two factors adds three estimates:
// 4 / sqrt(B). The quasi-random base does better (errors below 0.006).
constexpr int32_t kBase = 4096;
const double kTolerance = 3.0 / std::sqrt(double(kBase));
const double kTermTolerance = 4.0 / std::sqrt(double(kBase));

void setSobol(PrepConfiguration& prep, int32_t base, int32_t kind, int32_t order, int32_t blocks) {
    auto s = std::make_unique<SobolSampler>();
    EXPECT_EQ(s->setBaseSize(base) + s->setSamples(blocks * base), 2);
    s->setDesignKind(kind);
    s->setOrder(order);
    prep.sampler = std::move(s);
}

// x1, x2, x3 on [-pi, pi], and a constant when asked.
PrepConfiguration sobolPrep(int32_t base, int32_t kind, int32_t order, int32_t blocks, bool withConstant = false) {
    PrepConfiguration prep = test::factorsOf(withConstant ? std::vector<std::string>{"x1", "x2", "x3", "k"}
                                                          : std::vector<std::string>{"x1", "x2", "x3"},
                                             -kPi, kPi);
    setSobol(prep, base, kind, order, blocks);
    return prep;
}

TEST(SobolStats, FirstAndTotalOrderOfGFunctionAndIshigami) {
    // Five factors on [0, 1] and a constant, which takes no block: 2 * 5 + 2 blocks.
    PrepConfiguration prep = test::factorsOf({"x1", "x2", "k", "x3", "x4", "x5"}, 0.0, 1.0, 0.5);
    setSobol(prep, kBase, 1, 0, 12);
    const test::GFunction g{{0.0, 1.0, 4.5, 9.0, 99.0}};
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
    EXPECT_EQ(std::vector<int32_t>({stats.factorCount, stats.extra, stats.termCount, stats.slotMode, stats.maxOrder}),
              std::vector<int32_t>({6, 5, 6, 1, 0}));
    ASSERT_EQ(stats.records.size(), 6u);
    EXPECT_EQ(stats.records[2].kind, kConstantFactor);
    EXPECT_EQ(stats.records[2].values, std::vector<double>(6, 0.0));
    const size_t row[5] = {0, 1, 3, 4, 5};
    for (int32_t v = 0; v < 3; ++v) {
        const auto first = valuesOf(stats, &SobolStats::firstOrder, v);
        const auto total = valuesOf(stats, &SobolStats::totalOrder, v);
        for (size_t i = 0; i < 5; ++i) {
            // Ishigami reads x1, x2, x3 only; a constant output gives zeros.
            const double s = v == 0 ? g.fraction(i, false) : v == 1 && i < 3 ? Ishigami::first[i] : 0.0;
            const double t = v == 0 ? g.fraction(i, true) : v == 1 && i < 3 ? Ishigami::total[i] : 0.0;
            EXPECT_NEAR(first[row[i]], s, v == 2 ? 0.0 : kTolerance) << "variable " << v << ", factor " << i;
            EXPECT_NEAR(total[row[i]], t, v == 2 ? 0.0 : kTolerance) << "variable " << v << ", factor " << i;
        }
    }
    std::vector<double> none(6);
    EXPECT_EQ(stats.closedIndex(0, none.data()) + stats.firstOrder(3, none.data()), 0);
}

TEST(SobolStats, HigherOrderTermsAndClosedIndices) {
    // k = 3, order 2: three single factors, then three pairs, 8 blocks.
    PrepConfiguration prep = sobolPrep(kBase, 3, 2, 8);
    OutputTable table;
    test::runModels(prep,
                    {[](const double* x) { return Ishigami::value(x[0], x[1], x[2]); },
                     [](const double* x) { return x[0] + 2.0 * x[1] + 3.0 * x[2]; }, [](const double*) { return -1.0; }},
                    table);
    SobolStats stats;
    stats.variableCount = 3;
    ASSERT_EQ(stats.compute(prep, table), 1) << stats.errorText;
    EXPECT_EQ(std::vector<int32_t>({stats.slotMode, stats.maxOrder, stats.termCount}), std::vector<int32_t>({3, 2, 6}));
    ASSERT_EQ(stats.records.size(), 6u);
    const char* names[6] = {"x1", "x2", "x3", "x1,x2", "x1,x3", "x2,x3"};
    for (size_t r = 0; r < 6; ++r) EXPECT_EQ(stats.records[r].name, names[r]);
    EXPECT_EQ(stats.records[4].groupNames, (std::vector<std::string>{"x1", "x3"}));
    EXPECT_EQ(stats.records[0].values.size() + stats.records[4].values.size(), 9u + 6u);

    // Ishigami's only interaction is x1-x3; the additive model has none, and
    // a pair's closed index is the sum of its factors' shares c_i^2 / 14.
    const double pairIndex[3] = {0.0, Ishigami::v13 / Ishigami::v, 0.0};
    const double pairClosed[3] = {(Ishigami::v1 + Ishigami::v2) / Ishigami::v,
                                  (Ishigami::v1 + Ishigami::v13) / Ishigami::v, Ishigami::v2 / Ishigami::v};
    const double share[3] = {1.0 / 14.0, 4.0 / 14.0, 9.0 / 14.0};
    const double sharePair[3] = {5.0 / 14.0, 10.0 / 14.0, 13.0 / 14.0};
    std::vector<double> index[3], total[3], closed[3];
    for (int32_t v = 0; v < 3; ++v) {
        index[v] = valuesOf(stats, &SobolStats::firstOrder, v);
        total[v] = valuesOf(stats, &SobolStats::totalOrder, v);
        closed[v] = valuesOf(stats, &SobolStats::closedIndex, v);
    }
    for (size_t i = 0; i < 3; ++i) {
        EXPECT_NEAR(index[0][i], Ishigami::first[i], kTolerance) << i;
        EXPECT_NEAR(total[0][i], Ishigami::total[i], kTolerance) << i;
        EXPECT_NEAR(closed[0][i], Ishigami::first[i], kTolerance) << i;
        EXPECT_NEAR(index[0][3 + i], pairIndex[i], kTermTolerance) << names[3 + i];
        EXPECT_NEAR(closed[0][3 + i], pairClosed[i], kTermTolerance) << names[3 + i];
        EXPECT_TRUE(std::isnan(total[0][3 + i]));  // pairs have no total index
        EXPECT_NEAR(closed[1][i], share[i], kTolerance) << i;
        EXPECT_NEAR(index[1][3 + i], 0.0, kTermTolerance) << names[3 + i];
        EXPECT_NEAR(closed[1][3 + i], sharePair[i], kTermTolerance) << names[3 + i];
        // A constant output: the guarded indices are 0, the closed ones 0 / 0.
        EXPECT_EQ(index[2][i] + total[2][i] + index[2][3 + i], 0.0);
        EXPECT_TRUE(std::isnan(closed[2][i]) && std::isnan(closed[2][3 + i]));
    }

    // Order k walks the same blocks and adds the term of all factors: 1 minus
    // the others (Ishigami and the additive model have no such term), and 1.
    static_cast<SobolSampler&>(*prep.sampler).setOrder(3);
    ASSERT_EQ(stats.compute(prep, table), 1) << stats.errorText;
    EXPECT_EQ(stats.maxOrder, 3);
    ASSERT_EQ(stats.termCount, 7);
    const IndexRecord& all = stats.records[6];
    EXPECT_EQ(all.name, "x1,x2,x3");
    EXPECT_EQ(all.groupCount(), 3);
    ASSERT_EQ(all.values.size(), 6u);
    EXPECT_NEAR(all.values[0], 0.0, kTermTolerance);
    EXPECT_NEAR(all.values[2], 0.0, kTermTolerance);
    EXPECT_EQ(std::vector<double>({all.values[1], all.values[3], all.values[4], all.values[5]}),
              std::vector<double>({1.0, 1.0, 1.0, 1.0}));
}

TEST(SobolStats, CheapDesignReadsLargeTermsThroughTheirComplements) {
    // Four factors, order 3: the full design has 2 + 4 + 6 + 4 = 16 blocks,
    // the cheap one stops after the pairs (k / 2 = 2), at 12. A G function's
    // closed index of a set S is (prod over S of (1 + V_i) - 1) / V.
    const test::GFunction g{{0.0, 1.0, 4.5, 9.0}};
    // The statistics of `blocks` blocks; compute's result goes to `result`.
    const auto run = [&g](int32_t blocks, int* result) {
        PrepConfiguration prep = test::factorsOf({"x1", "x2", "x3", "x4"});
        setSobol(prep, kBase, 3, 3, blocks);
        OutputTable table;
        test::runModels(prep, {[&g](const double* x) { return g.value(x); }}, table);
        SobolStats stats;
        stats.variableCount = 1;
        *result = stats.compute(prep, table);
        return stats;
    };
    int fullResult = 0, cheapResult = 0, refusedResult = 1;
    const SobolStats full = run(16, &fullResult), cheap = run(12, &cheapResult);
    ASSERT_EQ(fullResult + cheapResult, 2) << full.errorText << cheap.errorText;
    ASSERT_EQ(cheap.records.size(), 14u);
    double all = 1.0;
    for (size_t i = 0; i < 4; ++i) all *= 1.0 + g.partial(i);
    // A closed index is a ratio of variance estimates: within 4 / sqrt(B).
    const double tolerance = 4.0 / std::sqrt(double(kBase));
    // Terms up to pairs come from the same blocks; only the mean over all
    // runs, which the full design takes over four more blocks, moves them.
    for (size_t r = 0; r < 10; ++r)
        for (size_t i = 0; i < cheap.records[r].values.size(); ++i)
            EXPECT_NEAR(cheap.records[r].values[i], full.records[r].values[i], tolerance / 4) << r;
    for (size_t r = 10; r < 14; ++r) {
        double closed = 1.0;
        for (const std::string& name : cheap.records[r].groupNames) closed *= 1.0 + g.partial(size_t(name[1] - '1'));
        EXPECT_NEAR(cheap.records[r].values[1], (closed - 1.0) / (all - 1.0), tolerance) << cheap.records[r].name;
        EXPECT_NEAR(cheap.records[r].values[1], full.records[r].values[1], tolerance) << cheap.records[r].name;
    }
    // One block fewer than the cheap design is refused.
    const SobolStats refused = run(11, &refusedResult);
    EXPECT_EQ(refusedResult, 0);
    EXPECT_EQ(refused.errorText,
              "The Sobol design of 4 factors and base size 4096 needs 65536 runs, the output table holds 45056");
}

TEST(SobolStats, FlatBlocksAndRefusals) {
    PrepConfiguration prep = sobolPrep(16, 1, 0, 8);
    OutputTable table;
    test::runModels(prep, {[](const double* x) { return x[0]; }}, table);
    SobolStats stats;
    stats.variableCount = 1;

    // Block A (then B) flat: the second pass tests each block's variance
    // before dividing by the other's. vA = 0 keeps the first pass's 0 as the
    // first order index and divides the total by 0; vB = 0 the other way
    // round. Small integers keep the flat block's variance exactly 0.
    for (int32_t flat : {0, 1}) {
        OutputTable crafted;
        ASSERT_EQ(crafted.allocate(1), 1);
        for (int32_t r = 0; r < table.rowCount(); ++r) {
            const double y = r / 16 == flat ? 5.0 : double((r * 7) % 11);
            ASSERT_GT(crafted.addRow(&y), 0);
        }
        ASSERT_EQ(stats.compute(prep, crafted), 1);
        for (const IndexRecord& record : stats.records) {
            EXPECT_EQ(record.values[size_t(flat)], 0.0) << "flat block " << flat;
            EXPECT_FALSE(std::isfinite(record.values[size_t(1 - flat)])) << "flat block " << flat;
        }
    }

    // An empty table: 0 and no message.
    OutputTable empty;
    ASSERT_EQ(empty.allocate(1), 1);
    EXPECT_EQ(stats.compute(prep, empty), 0);
    EXPECT_EQ(stats.errorText, "No errors");
    EXPECT_EQ(stats.computed, 0);
    OutputTable cut = test::withoutLastRun(table);
    EXPECT_EQ(stats.compute(prep, cut), 0);
    EXPECT_EQ(stats.errorText, "The Sobol design of 3 factors and base size 16 needs 128 runs, the output table holds 127");
    EXPECT_TRUE(stats.records.empty());
    stats.variableCount = 2;
    EXPECT_EQ(stats.compute(prep, table), 0);
    EXPECT_EQ(stats.errorText, "2 variables are to be analysed, the output table holds 1");
    stats.variableCount = 1;
    PrepConfiguration random = test::randomPrep(4);
    EXPECT_EQ(stats.compute(random, table), 0);
    EXPECT_EQ(stats.errorText, "The sample was not made by the Sobol design");
    EXPECT_EQ(stats.computed, 0);
}

TEST(SobolStats, FileBlockAndTable) {
    PrepConfiguration prep = sobolPrep(16, 3, 3, 8, true);
    OutputTable table;
    test::runModels(prep, {[](const double* x) { return Ishigami::value(x[0], x[1], x[2]); }, [](const double*) { return 3.0; }},
                    table);
    SobolStats stats;
    stats.variableCount = 2;
    ASSERT_EQ(stats.compute(prep, table), 1) << stats.errorText;
    // typeId, factorCount, extra, variableCount, maxOrder, termCount,
    // slotMode; per record the name, groupCount, group names, kind, and per
    // variable three slots for a single factor, two for the others.
    std::unique_ptr<SensitivityStats> back;
    const std::string block = test::roundTripBlock(prep, stats, &back);
    const std::string start = "4\n4\n3\n2\n3\n7\n3\nindexes = yes\nx1\n1\nx1\n3\t \t";
    EXPECT_EQ(block.substr(0, start.size()), start);
    const std::string pair = "\nx2,x3\n2\nx2\nx3\n3\t \t";
    const size_t at = block.find(pair);
    ASSERT_NE(at, std::string::npos);
    const std::string line = block.substr(at + pair.size(), block.find('\n', at + pair.size()) - at - pair.size());
    EXPECT_EQ(std::count(line.begin(), line.end(), '\t'), 8) << line;
    EXPECT_EQ(line.substr(line.size() - 6), "nan\t \t");  // the constant output's closed index
    const auto* read = dynamic_cast<const SobolStats*>(back.get());
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(std::vector<int32_t>({read->extra, read->maxOrder, read->termCount, read->slotMode}),
              std::vector<int32_t>({3, 3, 7, 3}));
    ResultTableRequest request{{0}, {"Y"}, {}, 0, 0};
    std::ostringstream higher;
    stats.writeTable(higher, request);
    EXPECT_EQ(higher.str().substr(0, 14), "Sobol indexes\n");
    EXPECT_EQ(higher.str().find("total"), std::string::npos);

    // The first form: two slots everywhere, two sheets, a constant shown as such.
    prep = sobolPrep(16, 1, 0, 8, true);
    OutputTable firstForm;
    test::runModels(prep, {[](const double* x) { return Ishigami::value(x[0], x[1], x[2]); }, [](const double*) { return 3.0; }},
                    firstForm);
    ASSERT_EQ(stats.compute(prep, firstForm), 1) << stats.errorText;
    (void)test::roundTripBlock(prep, stats, &back);
    read = dynamic_cast<const SobolStats*>(back.get());
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->slotMode, 1);
    std::ostringstream saved;
    stats.writeTable(saved, request);
    const std::string head = "Sobol First order indexes\n" + std::string(20, ' ') + "\t" + std::string(19, ' ') + "Y\t\n" +
                             std::string(18, ' ') + "x1\t";
    EXPECT_EQ(saved.str().substr(0, head.size()), head);
    EXPECT_NE(saved.str().find("\nSobol total order Indexes\n"), std::string::npos);
    EXPECT_NE(saved.str().find(std::string(19, ' ') + "k\t" + std::string(12, ' ') + "Constant\t\n"), std::string::npos);
}

}  // namespace
}  // namespace tarvex
