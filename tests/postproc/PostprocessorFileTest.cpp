// The post-processor file: what is written reads back at six digits,
// non-finite values included; damaged files change nothing.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>

#include "PostprocFixtures.h"
#include "TestStats.h"
#include "common/AtomicFileWriter.h"
#include "common/Environment.h"
#include "postproc/PostprocessorFile.h"
#include "postproc/SensitivityClasses.h"
#include "postproc/VelsConfiguration.h"

namespace tarvex {
namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();

std::string velsText(const VelsConfiguration& vels) {
    std::ostringstream out;
    vels.write(out);
    return out.str();
}

std::string projectText(const PrepConfiguration& prep, const ModelConfiguration& model, const VelsConfiguration& vels) {
    std::ostringstream out;
    writePostprocessorText(out, prep, model, vels);
    return out.str();
}

class PostprocessorFile : public ::testing::Test {
protected:
    void SetUp() override {
        test::LayoutStats::slots = 2;
        test::LayoutStats::groups = false;
        test::LayoutStats::separatorAfterKind = kSlotSeparator;
        test::LayoutStats::madeId = 1;
        saved = Environment::instance().directories();
        test::readResults(model, dir, test::kTimedOutput);
        prep = test::randomPrep(2);
        vels.setOutputs(2, {"Y", "Z"});
        EXPECT_EQ(vels.setWeight(1, 0.125), 1);
        for (const char* text : {"Y[max]", "Y[1.5]", "Y[max] + Z[0] / 2"}) EXPECT_EQ(vels.addVariable(text), 1);

        auto stats = std::make_unique<test::LayoutStats>(1);
        stats->factorCount = 2;
        stats->variableCount = 2;
        stats->records = {{"a", kUncertainFactor, {1.0 / 3.0, -kInf, std::nan(""), 123456789.0}, {}},
                          {"k", kConstantFactor, {kInf, 0.0, -2.5e-300, 7.0}, {}}};
        stats->computed = 1;
        vels.sensitivity = std::move(stats);

        OutputTable table = test::tableOf({{1.0 / 7.0, 2.0 / 3.0, 5.5}, {4.0, 4.0, 4.0}});
        vels.uncertainty.compute({"Y[max]", "Y[1.5]"}, table);
        vels.uncertainty.setKolmogorovConfidence(0.95);
    }
    void TearDown() override { Environment::instance().directories() = saved; }

    test::ScratchDir dir;
    test::CurrentDirGuard guard{dir.path()};
    RememberedDirectories saved;
    ScopedSensitivityClass layout{1, &test::LayoutStats::make};
    PrepConfiguration prep;
    ModelConfiguration model;
    VelsConfiguration vels;
};

TEST_F(PostprocessorFile, RoundTripKeepsEverythingAtSixDigits) {
    ASSERT_EQ(Environment::instance().directories().setVelsDirectory(dir.path().string()), 1);
    ASSERT_EQ(savePostprocessorFile(dir.file("a.spc"), prep, model, vels), 1);
    Environment::instance().directories().clear(RememberedDirectories::Vels);

    PrepConfiguration prepBack;
    ModelConfiguration modelBack;
    VelsConfiguration back;
    ASSERT_EQ(loadPostprocessorFile(dir.file("a.spc"), prepBack, modelBack, back), 1);
    // The path line went to the remembered directory.
    EXPECT_EQ(Environment::instance().directories().velsDirectory(), dir.path().string());
    EXPECT_EQ(modelBack.runCount(), 2);
    EXPECT_EQ(prepBack.samples.rowCount(), 2);

    // Every field comes back at the six digits it is written with, the
    // non-finite ones included: what was read writes the text that was saved.
    ASSERT_EQ(velsText(back), velsText(vels));
    ASSERT_NE(back.sensitivity, nullptr);
    EXPECT_EQ(back.sensitivity->typeId, 1);
    EXPECT_EQ(back.sensitivity->records[0].values[1], -kInf);
    EXPECT_EQ(back.uncertainty.kolmogorovConfidence, 0.95);
    // The constant column's skewness is 0 / 0: written and read as "nan".
    EXPECT_TRUE(std::isnan(back.uncertainty.skewness(1)));
    // Once rounded, the text no longer changes.
    const std::string first = projectText(prepBack, modelBack, back);
    PrepConfiguration p3;
    ModelConfiguration m3;
    VelsConfiguration v3;
    std::istringstream in(first);
    ASSERT_EQ(readPostprocessorText(in, p3, m3, v3), 1);
    EXPECT_EQ(projectText(p3, m3, v3), first);
}

TEST_F(PostprocessorFile, RecordLayoutOfTheVelsText) {
    VelsConfiguration small;
    small.setOutputs(1, {"Y"});
    ASSERT_EQ(small.addVariable("Y"), 1);
    // No statistics: "-1"; no variables: the uncertainty block's four fields.
    EXPECT_EQ(velsText(small), "1\nY\n1\nY\n1\n\n-1\n0\n0\n0.9\t0.75\n");

    // Kind then TAB TAB in typeId 0; group lines between name and kind.
    test::LayoutStats::madeId = 0;
    test::LayoutStats::separatorAfterKind = "\t\t";
    test::LayoutStats::slots = 1;
    auto stats = std::make_unique<test::LayoutStats>(0);
    stats->factorCount = 1;
    stats->variableCount = 2;
    stats->records = {{"x", 3, {0.5, -1e-7}, {}}};
    small.sensitivity = std::move(stats);
    EXPECT_EQ(velsText(small), "1\nY\n1\nY\n1\n\n0\n1\n2\nindexes = yes\nx\n3\t\t0.5\t \t-1e-07\t \t\n0\n0\n0.9\t0.75\n");
    test::LayoutStats::groups = true;
    small.sensitivity->records[0].groupNames = {"a", "b"};
    EXPECT_EQ(velsText(small),
              "1\nY\n1\nY\n1\n\n0\n1\n2\nindexes = yes\nx\n2\na\nb\n3\t\t0.5\t \t-1e-07\t \t\n0\n0\n0.9\t0.75\n");
    {
        ScopedSensitivityClass typeZero(0, &test::LayoutStats::make);
        VelsConfiguration back;
        std::istringstream in(velsText(small));
        back.read(in);
        ASSERT_FALSE(in.fail());
        ASSERT_NE(back.sensitivity, nullptr);
        EXPECT_EQ(back.sensitivity->records, small.sensitivity->records);
    }

    // A records list that cannot be read back is not written.
    small.sensitivity->records[0].name.clear();
    EXPECT_NE(velsText(small).find("indexes = no\n"), std::string::npos);

    // The uncertainty block: names, six arrays, then the tables.
    OutputTable table = test::tableOf({{1.0, 3.0}});
    small.sensitivity.reset();
    small.uncertainty.compute({"Y"}, table);
    const std::string text = velsText(small);
    const std::string start = "1\nY\n1\nY\n1\n\n-1\n1\n2\n0.9\t0.75\nY\n1\t\n3\t\n2\t\n1\t\n0\t\n-1\t\n1\t1\t1.02\t0\t";
    EXPECT_EQ(text.substr(0, start.size()), start);
}

TEST_F(PostprocessorFile, ReaderRulesOnStatisticsBlocks) {
    auto readVels = [](const std::string& text, VelsConfiguration& into) {
        std::istringstream in(text);
        into.read(in);
        return !in.fail();
    };
    const std::string head = "1\nY\n1\nY\n1\n\n";
    const std::string uaEmpty = "0\n0\n0.9\t0.75\n";
    VelsConfiguration back;
    // -1 and any typeId without a class: no object, the uncertainty block next.
    ASSERT_TRUE(readVels(head + "-1\n" + uaEmpty, back));
    EXPECT_EQ(back.sensitivity, nullptr);
    ASSERT_TRUE(readVels(head + "5\n" + uaEmpty, back));
    EXPECT_EQ(back.sensitivity, nullptr);
    // "indexes = no", or anything but the exact "indexes = yes": an empty,
    // uncomputed object, and reading goes on.
    for (const char* line : {"indexes = no", "indexes = yes ", "Indexes = yes"}) {
        ASSERT_TRUE(readVels(head + "1\n2\n1\n" + line + "\n" + uaEmpty, back)) << line;
        ASSERT_NE(back.sensitivity, nullptr);
        EXPECT_EQ(back.sensitivity->computed, 0);
        EXPECT_TRUE(back.sensitivity->records.empty());
    }
    // Numbers written "nan", "inf", "-inf" read back.
    ASSERT_TRUE(readVels(head + "1\n1\n1\nindexes = yes\nx\n3\tnan\t \t-inf\t \t\n" + uaEmpty, back));
    EXPECT_TRUE(std::isnan(back.sensitivity->records[0].values[0]));
    EXPECT_EQ(back.sensitivity->records[0].values[1], -kInf);
    EXPECT_EQ(back.sensitivity->computed, 1);

    // A failed read leaves the object as it was.
    const std::string before = velsText(back);
    for (const std::string& bad : {
             head + "1\n1\n1\nindexes = yes\n\n3\t1\t \t2\t \t\n" + uaEmpty,  // record without a name
             head + "1\n1\n0\nindexes = yes\nx\n3\t\n" + uaEmpty,              // no variable at a record
             head + "1\n2\n1\nindexes = yes\nx\n3\t1\t \t2\t \t\n" + uaEmpty,  // a record missing
             head + "1\n1\n1\nindexes = yes\nx\n3\t1\t \tabc\t \t\n" + uaEmpty,
             "1\nY\n0\n\n-1\n" + uaEmpty,                                      // no outputs
             "-1\n1\nY\n1\n\n-1\n" + uaEmpty,                                  // negative selection count
             "1\nY\n-2\nY\n1\n\n-1\n" + uaEmpty,                               // negative output count
             "1\nY\n1\nY\n-1\n\n-1\n" + uaEmpty,                               // negative weight
             "2000000000\nY\n1\nY\n1\n\n-1\n" + uaEmpty,                       // a count the text cannot hold
             head + "-1\n1\n1\n0.9\t0.75\n",                                    // uncertainty block cut short
             head + "-1\n-1\n0\n0.9\t0.75\n",
         }) {
        EXPECT_FALSE(readVels(bad, back)) << bad;
        EXPECT_EQ(velsText(back), before) << bad;
    }
}

TEST_F(PostprocessorFile, DamagedFilesChangeNothing) {
    const std::string good = projectText(prep, model, vels);
    const std::size_t velsStart = good.size() - velsText(vels).size();
    std::vector<std::pair<std::string, std::string>> bad = {{"empty", ""}, {"garbage", "abc\n"}};
    // Cut at the start of every line of the Vels text, and in its middle.
    for (std::size_t at = velsStart; at < good.size(); at = good.find('\n', at) + 1)
        bad.emplace_back("cut at " + std::to_string(at), good.substr(0, at));
    bad.emplace_back("cut in the Prep record", good.substr(0, velsStart / 3));
    auto replaced = [&good](const std::string& from, const std::string& to, std::size_t start) {
        std::string t = good;
        const std::size_t at = t.find(from, start);
        EXPECT_NE(at, std::string::npos) << from;
        return t.replace(at, from.size(), to);
    };
    bad.emplace_back("no outputs", replaced("\n2\nY\n1\nZ\n0.125\n", "\n0\nY\n1\nZ\n0.125\n", velsStart));
    bad.emplace_back("nameless record", replaced("indexes = yes\na\n", "indexes = yes\n\n", velsStart));
    bad.emplace_back("letters for a value", replaced("0.333333", "0.33x333", velsStart));
    bad.emplace_back("letters for a count", replaced("\n3\nY[max]\n", "\nzz\nY[max]\n", velsStart - 1));

    const std::string before = projectText(prep, model, vels);
    for (const auto& [what, text] : bad) {
        test::writeFile(dir.file("bad.spc"), text);
        EXPECT_EQ(loadPostprocessorFile(dir.file("bad.spc"), prep, model, vels), 0) << what;
        EXPECT_EQ(projectText(prep, model, vels), before) << what;
    }
    EXPECT_EQ(loadPostprocessorFile(dir.file("missing.spc"), prep, model, vels), 0);

    // A save that fails half way leaves the former file whole.
    ASSERT_EQ(savePostprocessorFile(dir.file("keep.spc"), prep, model, vels), 1);
    {
        ScopedWriteFailure full(100);
        EXPECT_EQ(savePostprocessorFile(dir.file("keep.spc"), prep, model, vels), 0);
    }
    EXPECT_EQ(test::readFile(dir.file("keep.spc")), good);
    EXPECT_EQ(savePostprocessorFile(dir.file("no-such-dir/x.spc"), prep, model, vels), 0);
}

}  // namespace
}  // namespace tarvex
