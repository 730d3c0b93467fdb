#include "model/ModelConfiguration.h"

#include <TestSupport.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <locale>
#include <sstream>

#include "common/Environment.h"
#include "sampling/sampValues.h"

using namespace tarvex;
namespace fs = std::filesystem;

namespace {

// Points TEMP at a scratch directory for the life of the object.
struct TempDirectory {
    test::ScratchDir dir;
    test::EnvironmentValue temp{"TEMP", dir.path().string()};
    const fs::path& path() const { return dir.path(); }
};

std::unique_ptr<InternalModel> linearModel() {
    auto m = std::make_unique<InternalModel>();
    m->setName("linear");
    EXPECT_EQ(m->addVariable("a"), 1);
    EXPECT_EQ(m->addVariable("b"), 1);
    EXPECT_EQ(m->addExpression(0, "s", "a + b", 1), 1);
    EXPECT_EQ(m->addExpression(1, "d", "a - b", 0), 1);
    EXPECT_EQ(m->addExpression(2, "p", "a * b", 1), 1);
    return m;
}

sampValues rows(int count, int columns) {
    sampValues s;
    EXPECT_EQ(s.allocate(columns), 1);
    for (int r = 0; r < count; ++r) {
        std::vector<double> row;
        for (int c = 0; c < columns; ++c) row.push_back(r + 0.25 * (c + 1));
        EXPECT_NE(s.addRow(row.data()), 0);
    }
    return s;
}

std::vector<double> fileDoubles(const std::string& path) {
    const std::string bytes = test::readFile(path);
    std::vector<double> v(bytes.size() / sizeof(double));
    if (!v.empty()) std::memcpy(v.data(), bytes.data(), v.size() * sizeof(double));
    return v;
}

} // namespace

TEST(ModelConfiguration, OwnsADataFileInTheTemporaryDirectory) {
    TempDirectory temp;
    std::string path;
    {
        ModelConfiguration a;
        ModelConfiguration b;
        path = a.dataFile();
        EXPECT_EQ(fs::path(path).parent_path(), temp.path());
        EXPECT_EQ(fs::path(path).filename().string().rfind("tmp", 0), 0u);
        EXPECT_TRUE(fs::exists(path));
        EXPECT_EQ(fs::file_size(path), 0u);
        EXPECT_NE(a.dataFile(), b.dataFile());
    }
    EXPECT_FALSE(fs::exists(path));
}

// Setting the external model leaves the kind alone; an internal model makes
// the kind internal, and clearing it leaves an external one.
TEST(ModelConfiguration, KindFollowsTheInternalModel) {
    ModelConfiguration c;
    EXPECT_EQ(c.kind(), ModelConfiguration::kNoModel);
    c.setExternal("/bin/model", "/tmp/out.txt", 1);
    EXPECT_EQ(c.kind(), ModelConfiguration::kNoModel);
    c.setInternalModel(linearModel());
    EXPECT_EQ(c.kind(), ModelConfiguration::kInternal);
    EXPECT_EQ(c.executable(), "/bin/model");
    c.clearInternalModel();
    EXPECT_EQ(c.kind(), ModelConfiguration::kExternal);
    EXPECT_EQ(c.internalModel(), nullptr);
    EXPECT_EQ(c.prepareInternalRun(3), 0);
}

TEST(ModelConfiguration, InternalRunAdvancesByPercents) {
    ModelConfiguration c;
    c.setInternalModel(linearModel());
    sampValues samples = rows(50, 2);
    ASSERT_EQ(c.prepareInternalRun(50), 1);
    EXPECT_EQ(c.outputNames(), (std::vector<std::string>{"s", "p"}));
    EXPECT_EQ(c.runTimes().runCount(), 50);
    EXPECT_EQ(c.runTimes().count(49), 1);
    EXPECT_EQ(c.runTimes().times(49)[0], 0.0);

    // Fifty rows: two percent a row, the gauge moves in steps of two.
    std::vector<int> seen;
    float target = 1.0f;
    int percent = c.advanceInternalRun(samples, target);
    while (percent < 100) {
        ASSERT_GT(percent, 0);
        seen.push_back(percent);
        target += 1.0f;
        percent = c.advanceInternalRun(samples, target);
        if (seen.size() == 10) {
            // A run stopped here leaves a readable file of the rows done.
            EXPECT_EQ(fs::file_size(c.dataFile()), c.nextRun() * 2 * sizeof(double));
        }
    }
    EXPECT_EQ(percent, 100);
    ASSERT_EQ(seen.size(), 98u);
    for (std::size_t k = 0; k < seen.size(); ++k) EXPECT_EQ(seen[k], 2 * static_cast<int>((k + 2) / 2)) << k;
    EXPECT_EQ(c.nextRun(), 50u);
    EXPECT_EQ(c.advanceInternalRun(samples, 101.0f), 100);

    const std::vector<double> data = fileDoubles(c.dataFile());
    ASSERT_EQ(data.size(), 100u);
    for (int r = 0; r < 50; ++r) {
        const double a = r + 0.25, b = r + 0.5;
        EXPECT_DOUBLE_EQ(data[2 * r], a + b);
        EXPECT_DOUBLE_EQ(data[2 * r + 1], a * b);
    }
    std::vector<double> run;
    ASSERT_EQ(c.readRun(7, run), 1);
    EXPECT_EQ(run, (std::vector<double>{data[14], data[15]}));
    EXPECT_EQ(c.readRun(50, run), 0);
}

TEST(ModelConfiguration, AFinalTargetFinishesEveryRow) {
    ModelConfiguration c;
    c.setInternalModel(linearModel());
    sampValues samples = rows(7, 2);
    ASSERT_EQ(c.prepareInternalRun(7), 1);
    EXPECT_EQ(c.advanceInternalRun(samples, 50.0f), 57);
    EXPECT_EQ(c.nextRun(), 4u);
    EXPECT_EQ(c.advanceInternalRun(samples, 100.0f), 100);
    EXPECT_EQ(c.nextRun(), 7u);
    EXPECT_EQ(fileDoubles(c.dataFile()).size(), 14u);

    ModelConfiguration none;
    EXPECT_EQ(none.advanceInternalRun(samples, 100.0f), -1);
    ModelConfiguration wide;
    wide.setInternalModel(linearModel());
    sampValues three = rows(4, 3);
    ASSERT_EQ(wide.prepareInternalRun(4), 1);
    EXPECT_EQ(wide.advanceInternalRun(three, 100.0f), -1);
    EXPECT_EQ(wide.errorText(), "The number of model inputs differs from the number of factors in the generated sample");
    ModelConfiguration empty;
    empty.setInternalModel(linearModel());
    ASSERT_EQ(empty.prepareInternalRun(0), 1);
    EXPECT_EQ(empty.advanceInternalRun(samples, 1.0f), 100);
}

TEST(ModelConfiguration, FailingRowsKeepTheirPlace) {
    auto m = std::make_unique<InternalModel>();
    ASSERT_EQ(m->addVariable("x"), 1);
    ASSERT_EQ(m->addExpression(0, "y", "1 / (x != 2)", 1), 1);
    ModelConfiguration c;
    c.setInternalModel(std::move(m));
    sampValues s;
    ASSERT_EQ(s.allocate(1), 1);
    for (double x : {1.0, 2.0, 4.0, 2.0}) ASSERT_NE(s.addRow(&x), 0);
    ASSERT_EQ(c.prepareInternalRun(4), 1);
    EXPECT_EQ(c.advanceInternalRun(s, 100.0f), 100);
    EXPECT_EQ(c.failedRuns(), 2);
    EXPECT_EQ(fileDoubles(c.dataFile()), (std::vector<double>{1.0, 0.0, 1.0, 0.0}));
}

TEST(ModelConfiguration, CopiesAreDeep) {
    ModelConfiguration c;
    c.setInternalModel(linearModel());
    c.setExternal("exe", "out", 0);
    sampValues samples = rows(5, 2);
    ASSERT_EQ(c.prepareInternalRun(5), 1);
    ASSERT_EQ(c.advanceInternalRun(samples, 100.0f), 100);

    ModelConfiguration copy(c);
    EXPECT_NE(copy.dataFile(), c.dataFile());
    EXPECT_EQ(test::readFile(copy.dataFile()), test::readFile(c.dataFile()));
    EXPECT_EQ(copy.runCount(), 5);
    EXPECT_EQ(copy.outputNames(), c.outputNames());
    EXPECT_EQ(copy.runTimes(), c.runTimes());
    EXPECT_EQ(copy.executable(), "exe");
    ASSERT_NE(copy.internalModel(), nullptr);
    EXPECT_NE(copy.internalModel(), c.internalModel());
    EXPECT_EQ(copy.internalModel()->expressionText(2), "a * b");

    ModelConfiguration assigned;
    const std::string ownFile = assigned.dataFile();
    assigned = c;
    EXPECT_EQ(assigned.dataFile(), ownFile);
    EXPECT_EQ(test::readFile(ownFile), test::readFile(c.dataFile()));
    copy.clearResults();
    EXPECT_EQ(fs::file_size(copy.dataFile()), 0u);
    EXPECT_EQ(fs::file_size(c.dataFile()), 5 * 2 * sizeof(double));
    copy.internalModel()->setName("changed");
    EXPECT_EQ(c.internalModel()->name(), "linear");
}

TEST(ModelConfiguration, OneRunRecordWithoutTimeAxis) {
    auto m = std::make_unique<InternalModel>();
    m->setName("one");
    ASSERT_EQ(m->addVariable("x"), 1);
    ASSERT_EQ(m->addExpression(0, "y", "x * 2", 1), 1);
    ASSERT_EQ(m->addExpression(1, "z", "x / 3", 1), 1);
    ModelConfiguration c;
    c.setInternalModel(std::move(m));
    sampValues s;
    ASSERT_EQ(s.allocate(1), 1);
    const double x = 1.0;
    ASSERT_NE(s.addRow(&x), 0);
    ASSERT_EQ(c.prepareInternalRun(1), 1);
    ASSERT_EQ(c.advanceInternalRun(s, 100.0f), 100);
    Environment::instance().directories().clear(RememberedDirectories::Model);
    Environment::instance().directories().clear(RememberedDirectories::ModelOutput);
    std::ostringstream out;
    out.precision(10);  // what a record written before may leave behind
    c.write(out);
    EXPECT_EQ(out.str(),
              "\n\n0\n0\n"
              "one\n1\nx\n2\n0\t1\t\n2\ny\nx * 2\n1\n0\nz\nx / 3\n1\n0\nnofile\n"
              "1\n2\ny\nz\n0\n"
              "Run 0\n1\nt=0\t2\t0.333333\t\n"
              "\n\n");
    EXPECT_EQ(out.precision(), 10);
}

TEST(ModelConfiguration, RecordRoundTripRoundsToSixDigits) {
    test::ScratchDir dirs;
    fs::create_directory(dirs.path() / "models");
    fs::create_directory(dirs.path() / "outputs");
    test::CurrentDirGuard keep(fs::current_path());
    RememberedDirectories& remembered = Environment::instance().directories();

    ModelConfiguration c;
    c.setInternalModel(linearModel());
    c.setExternal("/opt/model exe", "/data/out.txt", 0);
    c.setKind(ModelConfiguration::kInternal);
    sampValues samples;
    ASSERT_EQ(samples.allocate(2), 1);
    const double rowValues[3][2] = {{1.23456789, 2.0}, {-1e-7, 3e12}, {0.1, 0.2}};
    for (const auto& r : rowValues) ASSERT_NE(samples.addRow(r), 0);
    ASSERT_EQ(c.prepareInternalRun(3), 1);
    ASSERT_EQ(c.advanceInternalRun(samples, 100.0f), 100);
    ASSERT_EQ(remembered.setModelDirectory((dirs.path() / "models").string()), 1);
    ASSERT_EQ(remembered.setModelOutputDirectory((dirs.path() / "outputs").string()), 1);

    std::ostringstream out;
    out << "\n";  // the line the record's reader drops
    c.write(out);
    remembered.clear(RememberedDirectories::Model);
    remembered.clear(RememberedDirectories::ModelOutput);

    std::istringstream in(out.str());
    ModelConfiguration r;
    r.setExternal("stale", "stale", 1);
    r.read(in);
    ASSERT_FALSE(in.fail());
    // Writing the reloaded part again gives the same text (below); what that
    // alone would not show is checked against the values given.
    EXPECT_EQ(r.executable(), "/opt/model exe");
    EXPECT_EQ(r.outputFile(), "/data/out.txt");
    ASSERT_NE(r.internalModel(), nullptr);
    EXPECT_EQ(r.internalModel()->expressionText(1), "a - b");
    EXPECT_EQ(r.runCount(), 3);
    EXPECT_EQ(remembered.modelDirectory(), (dirs.path() / "models").string());
    EXPECT_EQ(remembered.modelOutputDirectory(), (dirs.path() / "outputs").string());

    // s = a + b and p = a * b of each row, as six-digit text gives them back.
    const std::vector<double> expected = {3.23457, 2.46914, 3e12, -300000, 0.3, 0.02};
    const std::vector<double> got = fileDoubles(r.dataFile());
    ASSERT_EQ(got.size(), expected.size());
    for (std::size_t k = 0; k < got.size(); ++k) EXPECT_DOUBLE_EQ(got[k], expected[k]) << k;

    std::ostringstream again;
    again << "\n";
    ASSERT_EQ(remembered.setModelDirectory((dirs.path() / "models").string()), 1);
    ASSERT_EQ(remembered.setModelOutputDirectory((dirs.path() / "outputs").string()), 1);
    r.write(again);
    EXPECT_EQ(again.str(), out.str());
}

TEST(ModelConfiguration, RecordWithTimeAxisAndLongNames) {
    const std::string record =
        "\nexe\nout.txt\n1\n0\n"
        "2\n2\nan_output_name_longer_than_28_characters\nq\n2\n"
        "Run 0\n2\nt=0\t1\t2\t\nt=0.5\t3\t4\t\n"
        "Run 1\n1\nt=7\t5\tnan\t\n"
        "\n\n";
    std::istringstream in(record);
    ModelConfiguration c;
    c.read(in);
    ASSERT_FALSE(in.fail());
    EXPECT_EQ(c.kind(), 1);
    EXPECT_EQ(c.internalModel(), nullptr);
    EXPECT_EQ(c.outputNames()[0], "an_output_name_longer_than_2");
    EXPECT_EQ(c.timeMode(), 2);
    ASSERT_EQ(c.runTimes().runCount(), 2);
    EXPECT_EQ(c.runTimes().count(0), 2);
    EXPECT_EQ(c.runTimes().times(0)[1], 0.5);
    EXPECT_EQ(c.runTimes().times(1)[0], 7.0);
    std::vector<double> run;
    ASSERT_EQ(c.readRun(0, run), 1);
    EXPECT_EQ(run, (std::vector<double>{1, 2, 3, 4}));
    ASSERT_EQ(c.readRun(1, run), 1);
    EXPECT_EQ(run[0], 5.0);
    EXPECT_TRUE(std::isnan(run[1]));

    std::ostringstream out;
    out << "\n";
    c.write(out);
    std::istringstream back(out.str());
    ModelConfiguration r;
    r.read(back);
    ASSERT_FALSE(back.fail());
    EXPECT_EQ(r.runTimes(), c.runTimes());
    EXPECT_EQ(r.outputNames()[0], "an_output_name_longer_than_2");
    EXPECT_EQ(test::readFile(r.dataFile()), test::readFile(c.dataFile()));
}

TEST(ModelConfiguration, DamagedRecordsFailTheStream) {
    const char* records[] = {
        "",
        "\nexe\nout\nx\n",
        "\nexe\nout\n1\n0\n-1\n0\n0\n\n\n",          // negative run count
        "\nexe\nout\n1\n0\n1\n-2\n",                 // negative output count
        "\nexe\nout\n1\n0\n1\n1\ny\n0\nRun 0\n-1\n",  // negative time points
        "\nexe\nout\n1\n0\n1\n1\ny\n0\nRun 0\n1\nt=0\tabc\t\n\n\n",
        "\nexe\nout\n1\n0\n2\n1\ny\n0\nRun 0\n1\nt=0\t1\t\n",  // a run missing
        "\nexe\nout\n0\n0\nm\n1\n2x\n0\n0\nf\n0\n0\n0\n\n\n",   // damaged model
        "\nexe\nout\n1\n0\n1\n1\ny\n0\nRun 0\n2000000000\nt=0\t1\t\n",  // points beyond the record
    };
    for (const char* text : records) {
        std::istringstream in(text);
        ModelConfiguration c;
        c.read(in);
        EXPECT_TRUE(in.fail()) << text;
    }
    std::istringstream longPath("\n" + std::string(300, 'p') + "\nout\n2\n0\n0\n0\n0\n\n\n");
    ModelConfiguration c;
    c.read(longPath);
    EXPECT_TRUE(longPath.fail());
}

namespace {
// A locale of the kind that breaks numbers in files: decimal comma, and
// every digit grouped.
struct CommaPunct : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\1"; }
};
} // namespace

TEST(ModelConfiguration, RecordsIgnoreTheStreamsLocale) {
    ModelConfiguration c;
    c.setInternalModel(linearModel());
    sampValues samples = rows(12, 2);
    ASSERT_EQ(c.prepareInternalRun(12), 1);
    ASSERT_EQ(c.advanceInternalRun(samples, 100.0f), 100);
    std::ostringstream plain;
    c.write(plain);
    std::ostringstream local;
    const std::locale comma(std::locale::classic(), new CommaPunct);
    local.imbue(comma);
    c.write(local);
    EXPECT_EQ(local.str(), plain.str());
    EXPECT_NE(plain.str().find("Run 11\n1\nt=0\t22.75\t129.375\t\n"), std::string::npos);  // 11.25 and 11.5
    EXPECT_EQ(local.getloc().name(), comma.name());

    std::istringstream in("\n" + local.str());
    in.imbue(comma);
    ModelConfiguration r;
    r.read(in);
    ASSERT_FALSE(in.fail());
    EXPECT_EQ(r.runCount(), 12);
    EXPECT_EQ(test::readFile(r.dataFile()), test::readFile(c.dataFile()));
}

TEST(ModelConfiguration, RecordWithWindowsLineEnds) {
    std::istringstream in("\r\nexe\r\nout.txt\r\n1\r\n0\r\n1\r\n1\r\nname\r\n0\r\nRun 0\r\n1\r\nt=0\t4.5\t\r\n\r\n\r\n");
    ModelConfiguration c;
    c.read(in);
    ASSERT_FALSE(in.fail());
    EXPECT_EQ(c.executable(), "exe");
    EXPECT_EQ(c.outputFile(), "out.txt");
    EXPECT_EQ(c.outputNames(), (std::vector<std::string>{"name"}));
    std::vector<double> run;
    ASSERT_EQ(c.readRun(0, run), 1);
    EXPECT_EQ(run, (std::vector<double>{4.5}));
}
