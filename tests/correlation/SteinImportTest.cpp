// Importing a Stein sample: both modes, every message, and the empirical
// distributions built from the columns.
#include <gtest/gtest.h>

#include <sstream>

#include "FactorListSamples.h"
#include "TestSupport.h"
#include "correlation/FactorFile.h"
#include "factors/FactorName.h"

namespace tarvex {
namespace {

using test::named;

constexpr const char* kNoFactors = "Error loading stein file. No factors to import.";
constexpr const char* kCount =
    "Error loading stein file. The number of imported factors is different from the loaded configuration.";
constexpr const char* kCorrupt = "Error loading stein file. Current data may be inconsistent or corrupt.";

class SteinImport : public test::DefaultTruncationsGuard {
protected:
    std::string file(const std::string& content) {
        const std::string path = dir_.file("stein" + std::to_string(++count_) + ".txt");
        test::writeFile(path, content);
        return path;
    }
    test::ScratchDir dir_;
    int count_ = 0;
};

Uniform* uniformAt(const FactorList& list, int i) {
    return dynamic_cast<Uniform*>(list.getFactor(i));
}

// Left, right and weight of every interval of factor i.
std::vector<std::vector<double>> intervalsOf(const FactorList& list, int i) {
    std::vector<std::vector<double>> out;
    const Uniform* u = uniformAt(list, i);
    for (int k = 0; u && k < u->count(); ++k)
        out.push_back({u->intervalAt(k)->left, u->intervalAt(k)->right, u->intervalAt(k)->weight});
    return out;
}
using Intervals = std::vector<std::vector<double>>;

TEST_F(SteinImport, FullImportBuildsEmpiricalUniforms) {
    FactorList list;
    ASSERT_EQ(list.addFactor(named<Normal>("old")), 1);
    ASSERT_EQ(list.addFactor(named<Normal>("old2")), 1);
    ASSERT_EQ(list.addFactor(named<Normal>("old3")), 1);
    // Three columns: distinct values, a repeated first value, a repeated last.
    const std::string path = file("3\n3 trailing words\nx\ny\nz\n3 1 1\n1 2 2\n2 1 2\n");
    ASSERT_EQ(list.importStein(path, 1), 1) << list.errorText();
    ASSERT_EQ(list.factorCount(), 3);
    EXPECT_EQ(list.getFactor(0)->name(), "x");
    EXPECT_EQ(list.getFactor(2)->typeName(), "Uniform");
    EXPECT_EQ(list.steinFileName, path);
    EXPECT_EQ(list.correlationMode, 2);  // a full import sets no Stein correlation
    EXPECT_EQ(list.correlatableCount(), 3);

    // 1, 2, 3: [1,2] and [2,3], each of weight 1/2.
    EXPECT_EQ(intervalsOf(list, 0), (Intervals{{1, 2, 0.5}, {2, 3, 0.5}}));
    EXPECT_EQ(uniformAt(list, 0)->checkWeights(), 1);
    // 1, 1, 2: one interval [1,2] of weight 2/2.
    EXPECT_EQ(intervalsOf(list, 1), (Intervals{{1, 2, 1}}));
    // 1, 2, 2: [1,2] of 1/2, grown by the repeat at the end to 1.
    EXPECT_EQ(intervalsOf(list, 2), (Intervals{{1, 2, 1}}));

    EXPECT_EQ(list.steinInfo.rowCount(), 3);
    EXPECT_EQ(list.steinInfo.columnCount(), 3);
    EXPECT_EQ(list.steinInfo.value(0, 0), 3.0);

    // The imported list makes a factor file that loads as it was.
    std::ostringstream out;
    list.write(out);
    std::istringstream in(out.str());
    FactorList back;
    ASSERT_EQ(back.read(in), 1);
    std::ostringstream again;
    back.write(again);
    EXPECT_EQ(again.str(), out.str());
}

TEST_F(SteinImport, LongerColumnsSumToOne) {
    FactorList list;
    // 1, 1, 2, 3, 3, 3: [1,2] 2/5, [2,3] 1/5 grown by 2/5 at the end.
    ASSERT_EQ(list.importStein(file("6\n1\nv\n1\n3\n1\n3\n2\n3\n"), 1), 1) << list.errorText();
    Uniform* v = uniformAt(list, 0);
    ASSERT_EQ(v->count(), 2);
    EXPECT_DOUBLE_EQ(v->intervalAt(0)->weight, 0.4);
    EXPECT_DOUBLE_EQ(v->intervalAt(1)->weight, 0.6);
    EXPECT_EQ(v->checkWeights(), 1);
}

TEST_F(SteinImport, AttachKeepsFactorsAndSetsSteinMode) {
    FactorList list;
    ASSERT_EQ(list.addFactor(named<Normal>("a")), 1);
    ASSERT_EQ(list.addFactor(named<Gamma>("b")), 1);
    ASSERT_EQ(list.importStein(file("2\n2\nfirst\nsecond\n0.5 7\n-1e3 8.25\n"), 2), 1) << list.errorText();
    EXPECT_EQ(list.factorCount(), 2);
    EXPECT_EQ(list.getFactor(0)->typeName(), "Normal");
    EXPECT_EQ(list.getFactor(1)->name(), "b");
    EXPECT_EQ(list.correlationMode, 3);
    EXPECT_EQ(list.steinInfo.value(1, 0), -1000.0);
    EXPECT_EQ(list.steinInfo.value(1, 1), 8.25);

    // A second import replaces the sample.
    ASSERT_EQ(list.importStein(file("1\n2\na\nb\n4 5\n"), 2), 1);
    EXPECT_EQ(list.steinInfo.rowCount(), 1);
    EXPECT_EQ(list.steinInfo.value(0, 1), 5.0);
}

TEST_F(SteinImport, Messages) {
    // Each import into a list of its own, so that every message is that import's.
    auto refusal = [](const std::string& path) {
        FactorList list;
        EXPECT_EQ(list.addFactor(named<Normal>("a")), 1);
        EXPECT_EQ(list.addFactor(named<Normal>("b")), 1);
        EXPECT_EQ(list.importStein(path, 2), 0) << path;
        return list.errorText();
    };
    EXPECT_EQ(refusal(dir_.file("missing.txt")), kNoFactors);
    EXPECT_EQ(refusal(file("0\n2\na\nb\n")), kNoFactors);
    EXPECT_EQ(refusal(file("rows\n")), kNoFactors);
    EXPECT_EQ(refusal(file("2\n-1\n")), kNoFactors);
    EXPECT_EQ(refusal(file("2\n2\na\n1b\n1 2\n3 4\n")), kCorrupt);
    EXPECT_EQ(refusal(file("2\n2\na\n\n1 2\n3 4\n")), kCorrupt);
    EXPECT_EQ(refusal(file("2\n2\na\n_b\n1 2\n3 4\n")), kCorrupt);
    EXPECT_EQ(refusal(file("2\n2\na\nb\n1 2\n3\n")), kCorrupt);
    EXPECT_EQ(refusal(file("2\n2\na\nb\n1 2\n3 x\n")), kCorrupt);
    EXPECT_EQ(refusal(file("2\n2\na\n" + std::string(256, 'n') + "\n1 2\n3 4\n")), kCorrupt);

    FactorList list;
    ASSERT_EQ(list.addFactor(named<Normal>("a")), 1);
    ASSERT_EQ(list.addFactor(named<Normal>("b")), 1);
    EXPECT_EQ(list.importStein(file("2\n3\na\nb\nc\n1 2 3\n4 5 6\n"), 2), 0);
    EXPECT_EQ(list.errorText(), kCount);
    EXPECT_EQ(list.factorCount(), 2);
    EXPECT_EQ(list.correlationMode, 2);
    EXPECT_FALSE(list.hasStein());

    // A full import names factors: only names their factor file gives back.
    FactorList full;
    EXPECT_EQ(full.importStein(file("1\n2\nabcdefghijklmnopqrs\nabcdefghijklmnopqrst\n1 2\n"), 1), 0);
    EXPECT_EQ(full.errorText(), "Error loading stein file. Wrong factor name, The name can hold at most 19 characters.");
    EXPECT_EQ(full.importStein(file("1\n1\na.b\n1\n"), 1), 0);
    EXPECT_EQ(full.errorText(), std::string("Error loading stein file. ") + kWrongFactorNameText);
    EXPECT_EQ(full.importStein(file("1\n1\nab cd\n1\n"), 1), 0);
    EXPECT_EQ(full.errorText(), std::string("Error loading stein file. ") + kWrongFactorNameText);

    // Mode 0 attaches without comparing the counts.
    ASSERT_EQ(list.importStein(file("1\n3\na\nb\nc\n1 2 3\n"), 0), 1);
    EXPECT_EQ(list.correlationMode, 3);
    EXPECT_EQ(list.steinInfo.columnCount(), 3);
}

TEST_F(SteinImport, ConstantColumnStopsTheFullImport) {
    FactorList list;
    EXPECT_EQ(list.importStein(file("3\n2\nfine\nflat\n1 4\n2 4\n3 4\n"), 1), 0);
    EXPECT_NE(list.errorText().find("Error loading stein file."), std::string::npos);
    // The state reached stays: the first column's distribution is built.
    ASSERT_EQ(list.factorCount(), 2);
    EXPECT_EQ(uniformAt(list, 0)->count(), 2);
    // A single row makes no interval either.
    FactorList single;
    EXPECT_EQ(single.importStein(file("1\n1\nv\n5\n"), 1), 0);
}

} // namespace
} // namespace tarvex
