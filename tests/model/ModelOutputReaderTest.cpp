#include <PollUntilDone.h>
#include <TestSupport.h>
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>

#include "model/MessageSink.h"
#include "model/ModelConfiguration.h"
#include "model/ModelProcess.h"

using namespace tarvex;
namespace fs = std::filesystem;

namespace {

struct RecordedMessages : MessageSink {
    std::vector<std::string> said;
    void warning(const std::string& title, const std::string& text) override { said.push_back("W|" + title + "|" + text); }
    void error(const std::string& title, const std::string& text) override { said.push_back("E|" + title + "|" + text); }
};

class OutputFile : public ::testing::Test {
protected:
    int read(const std::string& content) {
        test::writeFile(dir.file("out.txt"), content);
        config.setExternal("", dir.file("out.txt"), 0);
        messages.said.clear();
        return config.readModelOutput(messages);
    }
    std::vector<double> data() const {
        const std::string bytes = test::readFile(config.dataFile());
        std::vector<double> v(bytes.size() / sizeof(double));
        if (!v.empty()) std::memcpy(v.data(), bytes.data(), v.size() * sizeof(double));
        return v;
    }

    test::ScratchDir dir;
    ModelConfiguration config;
    RecordedMessages messages;
};

using Doubles = std::vector<double>;
using Names = std::vector<std::string>;

} // namespace

TEST_F(OutputFile, WithoutTimeAxis) {
    ASSERT_EQ(read("2\ny1\ny2\ntime = no\n3\n1 2\n3\n4\n5 6\n"), 1);
    EXPECT_EQ(config.outputNames(), (Names{"y1", "y2"}));
    EXPECT_EQ(config.runCount(), 3);
    EXPECT_EQ(config.timeMode(), 0);
    EXPECT_EQ(config.runTimes().runCount(), 3);
    EXPECT_EQ(config.runTimes().count(2), 1);
    EXPECT_EQ(config.runTimes().times(2)[0], 0.0);
    // Values on any mix of lines; full precision kept.
    EXPECT_EQ(data(), (Doubles{1, 2, 3, 4, 5, 6}));
    EXPECT_TRUE(messages.said.empty());
    ASSERT_EQ(read("1\ny\ntime = no\n1\n0.1234567890123\n"), 1);
    EXPECT_EQ(data(), (Doubles{0.1234567890123}));
}

TEST_F(OutputFile, TimeModes) {
    ASSERT_EQ(read("1\ny\ntime = yes\n2\nRUN 0\n3\n0 1\n0.5 2\n1 3\nRUN 1\n3\n0 4\n0.5 5\n1 6\n"), 1);
    EXPECT_EQ(config.timeMode(), 3);
    EXPECT_EQ(config.runTimes().count(1), 3);
    EXPECT_EQ(config.runTimes().times(1)[2], 1.0);
    EXPECT_EQ(data(), (Doubles{1, 2, 3, 4, 5, 6}));

    ASSERT_EQ(read("1\ny\ntime = yes\n2\nRUN 0\n3\n0 1\n0.5 2\n1 3\nRUN 1\n3\n0 4\n0.5 5\n2 6\n"), 1);
    EXPECT_EQ(config.timeMode(), 2);
    ASSERT_EQ(read("1\ny\ntime = yes\n2\nRUN 0\n2\n0 1\n1 3\nRUN 1\n3\n0 4\n0.5 5\n1 6\n"), 1);
    EXPECT_EQ(config.timeMode(), 2);
    EXPECT_EQ(config.runTimes().count(0), 2);
    EXPECT_EQ(config.runTimes().times(1)[1], 0.5);
    // The word of the run line is not compared.
    ASSERT_EQ(read("2\na\nb\ntime=yes\n1\nrun 0\n1\n7 1 2\n"), 1);
    EXPECT_EQ(config.timeMode(), 3);
    EXPECT_EQ(config.runTimes().times(0)[0], 7.0);
    EXPECT_EQ(data(), (Doubles{1, 2}));
    // Only the exact "yes" is a time axis.
    ASSERT_EQ(read("1\ny\ntime = Yes\n1\n4\n"), 1);
    EXPECT_EQ(config.timeMode(), 0);
    ASSERT_EQ(read("1\ny\ntime = yes please\n1\nRUN 0\n1\n0 4\n"), 1);
    EXPECT_EQ(config.timeMode(), 3);
}

TEST_F(OutputFile, VariableNames) {
    ASSERT_EQ(read("3\na-b\nc d\ne(1)\ntime = no\n1\n1 2 3\n"), 1);
    EXPECT_EQ(config.outputNames(), (Names{"a_b", "c", "e_1_"}));
    EXPECT_EQ(messages.said, (Names{"W|Warning|The model variable a-b will be modified in a_b",
                                    "W|Warning|The model variable e(1) will be modified in e_1_"}));
    ASSERT_EQ(read("1\nx£ç\ntime = no\n1\n1\n"), 1);
    EXPECT_EQ(config.outputNames(), (Names{"x__"}));

    EXPECT_EQ(read("2\nok\n2a\ntime = no\n1\n1 2\n"), 0);
    EXPECT_EQ(messages.said, (Names{"E|Error|Incorrect model variable name: 2a"}));
    EXPECT_EQ(read("1\n\ntime = no\n1\n1\n"), 0);
    EXPECT_EQ(read("1\n lead\ntime = no\n1\n1\n"), 0);  // cut at the first blank: empty
    EXPECT_TRUE(messages.said.empty());
}

TEST_F(OutputFile, ShortLineReads) {
    // The rest of the run count's line is taken 19 characters at a time, so a
    // longer line leaves its remainder to be read as values.
    ASSERT_EQ(read("1\ny\ntime = no\n1 xxxxxxxxxxxxxxxxxx 5.5\n"), 1);
    EXPECT_EQ(data(), (Doubles{5.5}));
    EXPECT_EQ(read("1\ny\ntime = no\n1 xxxxxxxxxxxxxxxxxxx 5.5\n"), 0);
    // More runs in the file than announced: the rest is ignored.
    ASSERT_EQ(read("1\ny\ntime = no\n2\n1\n2\n3\n4\n"), 1);
    EXPECT_EQ(data(), (Doubles{1, 2}));
}

TEST_F(OutputFile, EveryBreachGivesZeroAndOnlyWholeRuns) {
    struct Case {
        const char* text;
        int32_t runsKept;
    };
    const Case cases[] = {
        {"0\ntime = no\n1\n", 0},                                   // no variables
        {"-3\ntime = no\n1\n", 0},
        {"x\ny\ntime = no\n1\n1\n", 0},
        {"2\ny\n", 0},                                              // names end early
        {"1\ny\ntime = no\n0\n", 0},                                // no runs
        {"1\ny\ntime = no\nabc\n", 0},
        {"1\ny\ntime = no\n2\n1\nRUN 1\n2\n", 1},                   // a run line without time axis
        {"2\na\nb\ntime = no\n3\n1 2\n3 4\n5 x\n", 2},               // non-numeric token
        {"2\na\nb\ntime = no\n3\n1 2\n3 4\n", 2},                    // early end
        {"2\na\nb\ntime = no\n2\n1 2\n3\n", 1},                      // fewer values in the last row
        {"1\ny\ntime = yes\n2\nRUN 1\n1\n0 1\n", 0},                 // runs count from 0
        {"1\ny\ntime = yes\n2\nRUN 0\n1\n0 1\nRUN 2\n1\n0 1\n", 1},
        {"1\ny\ntime = yes\n1\nRUN\n1\n0 1\n", 0},                   // no run number
        {"1\ny\ntime = yes\n1\nRUN 0\n0\n", 0},                      // no time points
        {"1\ny\ntime = yes\n1\nRUN 0\n1\nt = 0 1\n", 0},             // "t =" before the time
        {"1\ny\ntime = yes\n2\nRUN 0\n2\n0 1\n1 2\nRUN 1\n2\n0 3\n", 1},  // a run cut short
        {"1\ny\ntime = yes\n1\nRUN 0\n2\n0 1\n1\n", 0},
        // A count far beyond the file: no memory is taken on its word.
        {"8\na\nb\nc\nd\ne\nf\ng\nh\ntime = yes\n1\nRUN 0\n2000000000\n0 1 2 3 4 5 6 7 8\n", 0},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(read(c.text), 0) << c.text;
        EXPECT_EQ(config.runCount(), c.runsKept) << c.text;
        EXPECT_EQ(config.runTimes().runCount(), c.runsKept) << c.text;
        EXPECT_EQ(data().size(), static_cast<std::size_t>(config.runTimes().pointsBefore(c.runsKept) * config.outputCount()))
            << c.text;
    }
    config.setExternal("", dir.file("missing.txt"), 0);
    EXPECT_EQ(config.readModelOutput(messages), 0);
    EXPECT_EQ(config.runCount(), 0);
}

TEST_F(OutputFile, ReadingClearsEarlierResultsAndTheInternalModel) {
    auto m = std::make_unique<InternalModel>();
    ASSERT_EQ(m->addVariable("x"), 1);
    config.setInternalModel(std::move(m));
    ASSERT_EQ(read("2\na\nb\ntime = no\n3\n1 2\n3 4\n5 6\n"), 1);
    EXPECT_EQ(config.internalModel(), nullptr);
    ASSERT_EQ(read("1\nc\ntime = no\n1\n9\n"), 1);
    EXPECT_EQ(config.outputNames(), (Names{"c"}));
    EXPECT_EQ(data(), (Doubles{9}));
}

TEST_F(OutputFile, AScriptModelWritesWhatIsRead) {
    const std::string exe = dir.file("model.sh");
    test::writeFile(exe,
                    "#!/bin/sh\n"
                    "test -f \"$1\" || exit 4\n"
                    "printf '2\\nmean\\nmax\\ntime = yes\\n2\\nRUN 0\\n2\\n0 1.5 2\\n1 2.5 3\\n"
                    "RUN 1\\n2\\n0 -1 0\\n1 1e-3 7\\n' > out.txt\n");
    fs::permissions(exe, fs::perms::owner_all);
    test::writeFile(dir.file("in.sam"), "sample\n");
    ModelProcess p;
    ASSERT_EQ(p.start(exe, dir.file("in.sam"), dir.path().string()), 1);
    ASSERT_EQ(tarvex::test::pollUntilDone(p), tarvex::test::Ended::Finished);
    ASSERT_EQ(p.exitCode(), 0);
    config.setExternal(exe, dir.file("out.txt"), 0);
    ASSERT_EQ(config.readModelOutput(messages), 1);
    EXPECT_EQ(config.outputNames(), (Names{"mean", "max"}));
    EXPECT_EQ(config.timeMode(), 3);
    EXPECT_EQ(data(), (Doubles{1.5, 2, 2.5, 3, -1, 0, 1e-3, 7}));
}

TEST(ModelFiles, CheckModelFiles) {
    test::ScratchDir dir;
    test::writeFile(dir.file("exe"), "x");
    test::writeFile(dir.file("out"), "x");
    EXPECT_EQ(checkModelFiles("", dir.file("out"), 2), 1);
    EXPECT_EQ(checkModelFiles("", dir.file("none"), 2), 0);
    EXPECT_EQ(checkModelFiles(dir.file("exe"), dir.file("none"), 1), 1);
    EXPECT_EQ(checkModelFiles(dir.file("none"), dir.file("out"), 1), 0);
    EXPECT_EQ(checkModelFiles("Excel Application", dir.file("book.xls"), 1), 1);
    EXPECT_EQ(checkModelFiles("", dir.file("book.xls"), 1, 1), 1);
    EXPECT_EQ(checkModelFiles(dir.file("exe"), dir.file("out"), 3), 0);
}
