// The tarvex-levele program as the model execution starts it: on sample files
// the engine wrote, its output read back by the engine's reader.
#include <PollUntilDone.h>
#include <TestSupport.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sys/wait.h>

#include "LevelECases.h"
#include "common/Environment.h"
#include "factors/LogUniform.h"
#include "model/MessageSink.h"
#include "model/ModelConfiguration.h"
#include "model/ModelProcess.h"
#include "model/levele/LevelEModel.h"
#include "sampling/GenerationLoop.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/RandomSampler.h"

using namespace tarvex;
using tarvex::test::readFile;
using tarvex::test::ScratchDir;
using tarvex::test::writeFile;

namespace {

const std::vector<std::string> kNames = {"T", "kI", "kC", "v1", "l1", "RI1", "RC1", "v2", "l2", "RI2", "RC2", "W"};

struct ProgramRun {
    int status = -1;
    std::string err;
};

std::string quoted(const std::string& text) {
    std::string q = "'";
    for (char c : text) q += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return q + "'";
}

// The program started from `cwd` with `args`; what it says on stderr.
ProgramRun runProgram(const ScratchDir& logs, const std::string& cwd, const std::vector<std::string>& args) {
    std::string command = "cd " + quoted(cwd) + " && " + quoted(TARVEX_LEVELE_PROGRAM);
    for (const std::string& a : args) command += " " + quoted(a);
    const int raw = std::system((command + " >/dev/null 2>" + quoted(logs.file("stderr.txt"))).c_str());
    return {WIFEXITED(raw) ? WEXITSTATUS(raw) : -1, readFile(logs.file("stderr.txt"))};
}

// The four reference cases in columns named `names`; a column not of the model holds 7.
std::vector<std::vector<double>> referenceRows(const std::vector<std::string>& names) {
    std::vector<std::vector<double>> rows;
    for (const levele::FactorValues& f : levele::test::referenceCases()) {
        std::vector<double>& row = rows.emplace_back();
        for (const std::string& n : names) {
            const int i = levele::factorIndex(n);
            row.push_back(i < 0 ? 7.0 : f[std::size_t(i)]);
        }
    }
    return rows;
}

// A sample file the engine writes holding `rows` in columns named `names`, the
// store in `order`. The factors' laws do not matter here.
void writeSample(const std::string& path, const std::vector<std::string>& names,
                 const std::vector<std::vector<double>>& rows, int order = 0) {
    PrepConfiguration prep;
    for (const std::string& name : names) {
        auto factor = std::make_unique<Uniform>();
        ASSERT_EQ(factor->setName(name), 1);
        ASSERT_EQ(prep.factors.addFactor(std::move(factor)), 1);
    }
    ASSERT_EQ(prep.samples.allocate(int32_t(names.size())), 1);
    for (const auto& row : rows) ASSERT_GT(prep.samples.addRow(row.data()), 0);
    ASSERT_EQ(prep.samples.setOrder(order), 1);
    ASSERT_EQ(prep.writeSampleFile(path), 1) << prep.errorText();
}

struct SilentMessages : MessageSink {
    void warning(const std::string&, const std::string&) override {}
    void error(const std::string&, const std::string&) override {}
};

// The output file as the model execution reads it: five outputs over the 26
// times of the reference solution, the same in every run.
void readOutput(const std::string& path, ModelConfiguration& model) {
    model.setExternal("", path, 0);
    SilentMessages messages;
    ASSERT_EQ(model.readModelOutput(messages), 1) << readFile(path).substr(0, 400);
    EXPECT_EQ(model.outputNames(),
              std::vector<std::string>({"Dose", "DoseI129", "DoseNp237", "DoseU233", "DoseTh229"}));
    EXPECT_EQ(model.timeMode(), 3);
    const auto reference = levele::test::readReference("mp_ref_dfrac0.1.txt")[0];
    ASSERT_EQ(model.runTimes().count(0), 26);
    for (int i = 0; i < 26; ++i) EXPECT_EQ(model.runTimes().times(0)[i], reference[std::size_t(i)].time);
}

}  // namespace

// 20 random runs of the published distributions, generated and saved by the
// engine, run as the model execution runs an external model (from the
// installation directory) and read back by its reader. The inversion leaves
// noise of either sign far below each run's peak: this sample has some, and
// none of it reaches the file.
TEST(LevelEProgram, RandomSampleThroughTheModelExecution) {
    ScratchDir dir;
    PrepConfiguration prep;
    const double low[] = {100, 1e-3, 1e-6, 1e-3, 100, 1, 3, 1e-2, 50, 1, 3, 1e5};
    const double high[] = {1000, 1e-2, 1e-5, 1e-1, 500, 5, 30, 1e-1, 200, 5, 30, 1e7};
    for (std::size_t i = 0; i < 12; ++i) {
        const bool logUniform = high[i] / low[i] >= 10.0 && i != 4;  // l1 spans 100 to 500 uniformly
        std::unique_ptr<Uniform> f = logUniform ? std::make_unique<LogUniform>() : std::make_unique<Uniform>();
        ASSERT_EQ(f->setName(kNames[i]), 1);
        f->clear();
        ASSERT_EQ(f->addInterval(logUniform ? std::make_unique<LogInterval>(low[i], high[i], 1.0)
                                            : std::make_unique<Interval>(low[i], high[i], 1.0)), 1);
        ASSERT_EQ(prep.factors.addFactor(std::move(f)), 1);
    }
    auto random = std::make_unique<RandomSampler>();
    ASSERT_EQ(random->setSamples(20), 1);
    prep.sampler = std::move(random);
    ASSERT_EQ(runGeneration(prep, nullptr).result, kGenerationDone);
    ASSERT_EQ(prep.writeSampleFile(dir.file("levelE.sam")), 1);

    ModelProcess process;
    ASSERT_EQ(process.start(TARVEX_LEVELE_PROGRAM, dir.file("levelE.sam"), TARVEX_STAGE_DIR), 1);
    ASSERT_EQ(tarvex::test::pollUntilDone(process), tarvex::test::Ended::Finished);
    ASSERT_EQ(process.exitCode(), 0);
    ModelConfiguration model;
    readOutput(dir.file("levelE.out"), model);
    ASSERT_EQ(model.runCount(), 20);
    int rawNegatives = 0;
    for (int32_t r = 0; r < 20; ++r) {
        std::vector<double> values, row(12);
        ASSERT_EQ(model.readRun(r, values), 1);
        EXPECT_GE(*std::min_element(values.begin(), values.end()), 0.0) << r;
        double peak = 0.0;
        for (int i = 0; i < 26; ++i) peak = std::max(peak, values[std::size_t(i) * 5]);
        for (int i = 0; i < 26; ++i) {
            const double* v = &values[std::size_t(i) * 5];
            EXPECT_NEAR(v[0], v[1] + v[2] + v[3] + v[4], 1e-10 * peak) << r << ", " << i;
        }
        ASSERT_EQ(prep.samples.getRow(r, row.data()), 1);
        levele::FactorValues f;
        std::copy(row.begin(), row.end(), f.begin());
        for (const auto& byNuclide : levele::LevelEModel().run(f).byNuclide)
            rawNegatives += int(std::count_if(byNuclide.begin(), byNuclide.end(), [](double d) { return d < 0.0; }));
    }
    EXPECT_GT(rawNegatives, 0);
}

// The reference cases through a sample whose columns stand in another order,
// with a column of another factor, stored by factor. The sample records a
// directory of its own, which the reader moves to: the output still lands
// beside the sample given by a relative path.
TEST(LevelEProgram, ReferenceCasesFromAShuffledSample) {
    ScratchDir dir, elsewhere, logs;
    std::vector<std::string> names(kNames.rbegin(), kNames.rend());
    names.insert(names.begin() + 5, "depth");
    {
        const RememberedDirectories saved = Environment::instance().directories();
        tarvex::test::CurrentDirGuard guard(dir.path());
        ASSERT_EQ(Environment::instance().directories().setPrepDirectory(elsewhere.path().string()), 1);
        writeSample(dir.file("cases.sam"), names, referenceRows(names), 1);
        Environment::instance().directories() = saved;
    }
    ASSERT_NE(readFile(dir.file("cases.sam")).find(elsewhere.path().string()), std::string::npos);

    const ProgramRun run = runProgram(logs, dir.path().string(), {"cases.sam"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    ModelConfiguration model;
    readOutput(dir.file("cases.out"), model);
    ASSERT_EQ(model.runCount(), 4);
    const auto reference = levele::test::readReference("mp_ref_dfrac0.1.txt");
    for (int32_t c = 0; c < 4; ++c) {
        std::vector<double> values;
        ASSERT_EQ(model.readRun(c, values), 1);
        const double peak = levele::test::peakOf(reference[std::size_t(c)]);
        for (std::size_t i = 0; i < 26; ++i) {
            const double expected = reference[std::size_t(c)][i].values[0];
            EXPECT_NEAR(values[i * 5], expected, levele::test::tolerance(expected, peak)) << c << ", " << i;
        }
    }
}

// Every input the program refuses: the message, the exit status, and the
// output of an earlier run left as it was. Then what it accepts with a
// warning, once per factor: values outside the published ranges, a
// containment time of 0 among them.
TEST(LevelEProgram, BadInputsAreRefusedAndLeaveTheOldOutput) {
    ScratchDir dir, logs;
    const std::string old = "output of an earlier run\n";
    auto refused = [&](const std::vector<std::string>& args, int status, const std::string& message) {
        writeFile(dir.file("s.out"), old);
        const ProgramRun run = runProgram(logs, dir.path().string(), args);
        EXPECT_EQ(run.status, status);
        EXPECT_EQ(run.err, message);
        EXPECT_EQ(readFile(dir.file("s.out")), old);
    };
    const std::string usage = "usage: tarvex-levele [--output OUTPUT_FILE] SAMPLE_FILE\n";
    refused({}, 2, "tarvex-levele: no sample file given\n" + usage);
    refused({"s.sam", "t.sam"}, 2, "tarvex-levele: one sample file only, not also t.sam\n" + usage);
    refused({"--out", "s.sam"}, 2, "tarvex-levele: unknown option --out\n" + usage);
    refused({"s.sam", "--output"}, 2, "tarvex-levele: --output needs a file name\n" + usage);
    refused({"s.sam"}, 1,
            "tarvex-levele: cannot open the sample file " + dir.file("s.sam") + ": No such file or directory\n");

    writeSample(dir.file("s.sam"), kNames, referenceRows(kNames));
    const std::string good = readFile(dir.file("s.sam"));
    writeFile(dir.file("s.sam"), good.substr(0, good.size() / 2));
    refused({"s.sam"}, 1, "tarvex-levele: Error reading samples file " + dir.file("s.sam") + "\n");

    std::vector<std::string> names = kNames;
    names.erase(names.begin() + 2);
    writeSample(dir.file("s.sam"), names, referenceRows(names));
    refused({"s.sam"}, 1, "tarvex-levele: the sample has no factor named kC\n");
    names = std::vector<std::string>(kNames.begin() + 1, kNames.end() - 1);
    writeSample(dir.file("s.sam"), names, referenceRows(names));
    refused({"s.sam"}, 1, "tarvex-levele: the sample has no factors named T, W\n");

    std::vector<std::vector<double>> rows = referenceRows(kNames);
    auto withValue = [&](std::size_t run, std::size_t factor, double value) {
        std::vector<std::vector<double>> changed = rows;
        changed[run][factor] = value;
        writeSample(dir.file("s.sam"), kNames, changed);
    };
    withValue(2, 3, 0.0);
    refused({"s.sam"}, 1, "tarvex-levele: run 2, factor v1: the value 0 is not above 0\n");
    withValue(3, 0, -5.0);
    refused({"s.sam"}, 1, "tarvex-levele: run 3, factor T: the value -5 is negative\n");

    writeSample(dir.file("s.sam"), kNames, rows);
    const std::string sample = readFile(dir.file("s.sam"));
    refused({"s.sam", "--output", "no/such/dir/s.out"}, 1,
            "tarvex-levele: cannot write the output file " + dir.file("no/such/dir/s.out") + "\n");
    refused({"--output=s.sam", "s.sam"}, 1,
            "tarvex-levele: the output file " + dir.file("s.sam") + " would replace the sample file\n");
    EXPECT_EQ(readFile(dir.file("s.sam")), sample);

    rows[1][0] = 0.0;   // T
    rows[2][11] = 2e7;  // W
    rows[3][11] = 5e4;
    writeSample(dir.file("s.sam"), kNames, rows);
    const ProgramRun run = runProgram(logs, dir.path().string(), {"--output", "wide.out", "s.sam"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err,
              "tarvex-levele: warning: factor T lies outside its published range 100 to 1000 in 1 run (first: run 1, "
              "0); computed all the same\n"
              "tarvex-levele: warning: factor W lies outside its published range 100000 to 1e+07 in 2 runs (first: "
              "run 2, 2e+07); computed all the same\n");
    EXPECT_EQ(readFile(dir.file("s.out")), old);
    ModelConfiguration model;
    readOutput(dir.file("wide.out"), model);
    EXPECT_EQ(model.runCount(), 4);
}
