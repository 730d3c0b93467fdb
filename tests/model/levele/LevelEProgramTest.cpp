// The tarvex-levele program as the model execution starts it: on sample files
// the engine wrote, its output read back by the engine's reader.
#include <PollUntilDone.h>
#include <TestSupport.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sys/wait.h>

#include "LevelECases.h"
#include "common/Environment.h"
#include "factors/Interval.h"
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

const char* const kNames[] = {"T", "kI", "kC", "v1", "l1", "RI1", "RC1", "v2", "l2", "RI2", "RC2", "W"};

struct ProgramRun {
    int status = -1;
    std::string out;
    std::string err;
};

std::string quoted(const std::string& text) {
    std::string q = "'";
    for (char c : text) q += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return q + "'";
}

// The program started from `cwd` with `args`, its streams caught in files of `logs`.
ProgramRun runProgram(const ScratchDir& logs, const std::string& cwd, const std::vector<std::string>& args) {
    std::string command = "cd " + quoted(cwd) + " && " + quoted(TARVEX_LEVELE_PROGRAM);
    for (const std::string& a : args) command += " " + quoted(a);
    command += " >" + quoted(logs.file("stdout.txt")) + " 2>" + quoted(logs.file("stderr.txt"));
    const int raw = std::system(command.c_str());
    ProgramRun run;
    run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    run.out = readFile(logs.file("stdout.txt"));
    run.err = readFile(logs.file("stderr.txt"));
    return run;
}

// A sample file the engine writes holding a table of runs: columns as `names`
// give them, the store in `order`. The factors' laws do not matter here.
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
    auto random = std::make_unique<RandomSampler>();
    ASSERT_EQ(random->setSamples(int32_t(rows.size())), 1);
    prep.sampler = std::move(random);
    ASSERT_EQ(prep.writeSampleFile(path), 1) << prep.errorText();
}

// The four reference cases as rows of `names`; a name not a factor of the model gets 7.
std::vector<std::vector<double>> referenceRows(const std::vector<std::string>& names) {
    std::vector<std::vector<double>> rows;
    for (const levele::FactorValues& f : levele::test::referenceCases()) {
        std::vector<double> row;
        for (const std::string& n : names) {
            const int i = levele::factorIndex(n);
            row.push_back(i < 0 ? 7.0 : f[std::size_t(i)]);
        }
        rows.push_back(row);
    }
    return rows;
}

std::vector<std::string> modelNames() { return std::vector<std::string>(std::begin(kNames), std::end(kNames)); }

struct SilentMessages : MessageSink {
    void warning(const std::string&, const std::string&) override {}
    void error(const std::string&, const std::string&) override {}
};

// The output file as the model execution reads it: five outputs over the 26 times.
void readOutput(const std::string& path, ModelConfiguration& model) {
    model.setExternal("", path, 0);
    SilentMessages messages;
    ASSERT_EQ(model.readModelOutput(messages), 1) << readFile(path).substr(0, 400);
    const std::vector<std::string> names = {"Dose", "DoseI129", "DoseNp237", "DoseU233", "DoseTh229"};
    EXPECT_EQ(model.outputNames(), names);
    EXPECT_EQ(model.timeMode(), 3);
    const double times[] = {2e4, 3e4, 4e4, 5e4, 6e4, 7e4, 8e4, 9e4, 1e5, 2e5, 3e5, 4e5, 5e5,
                            6e5, 7e5, 8e5, 9e5, 1e6, 2e6, 3e6, 4e6, 5e6, 6e6, 7e6, 8e6, 9e6};
    ASSERT_EQ(model.runTimes().count(0), 26);
    for (int i = 0; i < 26; ++i) EXPECT_EQ(model.runTimes().times(0)[i], times[i]);
}

std::unique_ptr<Factor> factorFor(const char* name, double low, double high, bool logUniform) {
    std::unique_ptr<Uniform> f = logUniform ? std::make_unique<LogUniform>() : std::make_unique<Uniform>();
    EXPECT_EQ(f->setName(name), 1);
    f->clear();
    if (logUniform) EXPECT_EQ(f->addInterval(std::make_unique<LogInterval>(low, high, 1.0)), 1);
    else EXPECT_EQ(f->addInterval(std::make_unique<Interval>(low, high, 1.0)), 1);
    return f;
}

}  // namespace

// 20 random runs of the published distributions, generated and saved by the
// engine, run as the model execution runs an external model (from the
// installation directory) and read back by its reader.
TEST(LevelEProgram, RandomSampleThroughTheModelExecution) {
    ScratchDir dir;
    PrepConfiguration prep;
    struct { const char* name; double low, high; bool log; } published[] = {
        {"T", 100, 1000, false}, {"kI", 1e-3, 1e-2, true}, {"kC", 1e-6, 1e-5, true}, {"v1", 1e-3, 1e-1, true},
        {"l1", 100, 500, false}, {"RI1", 1, 5, false},     {"RC1", 3, 30, false},    {"v2", 1e-2, 1e-1, true},
        {"l2", 50, 200, false},  {"RI2", 1, 5, false},     {"RC2", 3, 30, false},    {"W", 1e5, 1e7, true}};
    for (const auto& p : published) ASSERT_EQ(prep.factors.addFactor(factorFor(p.name, p.low, p.high, p.log)), 1);
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
    // The inversion leaves noise of either sign far below each run's peak:
    // this sample has some, and none of it reaches the file.
    const levele::LevelEModel levelE;
    int rawNegatives = 0;
    for (int32_t r = 0; r < 20; ++r) {
        std::vector<double> values, row(12);
        ASSERT_EQ(model.readRun(r, values), 1);
        ASSERT_EQ(values.size(), 26u * 5u);
        EXPECT_GE(*std::min_element(values.begin(), values.end()), 0.0) << "run " << r;
        double peak = 0.0;
        for (int i = 0; i < 26; ++i) peak = std::max(peak, values[std::size_t(i) * 5]);
        EXPECT_GT(peak, 0.0);
        for (int i = 0; i < 26; ++i) {
            const double* v = &values[std::size_t(i) * 5];
            EXPECT_NEAR(v[0], v[1] + v[2] + v[3] + v[4], 1e-10 * peak) << "run " << r << ", time " << i;
        }
        ASSERT_EQ(prep.samples.getRow(r, row.data()), 1);
        levele::FactorValues f;
        std::copy(row.begin(), row.end(), f.begin());
        const levele::LevelEDoses raw = levelE.run(f);
        for (const auto& byNuclide : raw.byNuclide)
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
    std::vector<std::string> names = modelNames();
    std::reverse(names.begin(), names.end());
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
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.err, "");
    EXPECT_FALSE(std::filesystem::exists(elsewhere.file("cases.out")));

    ModelConfiguration model;
    readOutput(dir.file("cases.out"), model);
    ASSERT_EQ(model.runCount(), 4);
    const auto reference = levele::test::readReference("mp_ref_dfrac0.1.txt");
    for (int32_t c = 0; c < 4; ++c) {
        std::vector<double> values;
        ASSERT_EQ(model.readRun(c, values), 1);
        double peak = 0.0;
        for (const auto& row : reference[std::size_t(c)]) peak = std::max(peak, row.values[0]);
        for (int i = 0; i < 26; ++i) {
            const double expected = reference[std::size_t(c)][std::size_t(i)].values[0];
            EXPECT_NEAR(values[std::size_t(i) * 5], expected, levele::test::tolerance(expected, peak))
                << "case " << c << ", time " << i;
        }
    }
}

// Every input the program refuses: the message, the exit status, and the
// output of an earlier run left as it was.
TEST(LevelEProgram, BadInputsAreRefusedAndLeaveTheOldOutput) {
    ScratchDir dir, logs;
    const std::string old = "output of an earlier run\n";
    const std::string cwd = dir.path().string();
    auto refused = [&](const std::vector<std::string>& args, int status, const std::string& message) {
        writeFile(dir.file("s.out"), old);
        const ProgramRun run = runProgram(logs, cwd, args);
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

    std::vector<std::string> names = modelNames();
    writeSample(dir.file("s.sam"), names, referenceRows(names));
    const std::string good = readFile(dir.file("s.sam"));
    writeFile(dir.file("s.sam"), good.substr(0, good.size() / 2));
    refused({"s.sam"}, 1, "tarvex-levele: Error reading samples file " + dir.file("s.sam") + "\n");

    std::vector<std::string> withoutKc = names;
    withoutKc.erase(withoutKc.begin() + 2);
    writeSample(dir.file("s.sam"), withoutKc, referenceRows(withoutKc));
    refused({"s.sam"}, 1, "tarvex-levele: the sample has no factor named kC\n");
    std::vector<std::string> twoMissing = {"kI", "kC", "v1", "l1", "RI1", "RC1", "v2", "l2", "RI2", "RC2"};
    writeSample(dir.file("s.sam"), twoMissing, referenceRows(twoMissing));
    refused({"s.sam"}, 1, "tarvex-levele: the sample has no factors named T, W\n");

    std::vector<std::vector<double>> rows = referenceRows(names);
    rows[2][3] = 0.0;  // v1 of run 2
    writeSample(dir.file("s.sam"), names, rows);
    refused({"s.sam"}, 1, "tarvex-levele: run 2, factor v1: the value 0 is not above 0\n");
    rows = referenceRows(names);
    rows[3][0] = -5.0;  // T of run 3
    writeSample(dir.file("s.sam"), names, rows);
    refused({"s.sam"}, 1, "tarvex-levele: run 3, factor T: the value -5 is negative\n");

    // Outputs that cannot be written, the sample among them.
    writeSample(dir.file("s.sam"), names, referenceRows(names));
    refused({"s.sam", "--output", "no/such/dir/s.out"}, 1,
            "tarvex-levele: cannot write the output file " + dir.file("no/such/dir/s.out") + "\n");
    const std::string sample = readFile(dir.file("s.sam"));
    refused({"--output=s.sam", "s.sam"}, 1,
            "tarvex-levele: the output file " + dir.file("s.sam") + " would replace the sample file\n");
    EXPECT_EQ(readFile(dir.file("s.sam")), sample);
}

// Values outside the published ranges are computed, each factor warned about
// once; a containment time of 0 is one of them. --output puts the file elsewhere.
TEST(LevelEProgram, OutOfRangeValuesAreComputedWithOneWarningPerFactor) {
    ScratchDir dir, logs;
    std::vector<std::string> names = modelNames();
    std::vector<std::vector<double>> rows = referenceRows(names);
    rows[1][0] = 0.0;    // T
    rows[2][11] = 2e7;   // W
    rows[3][11] = 5e4;   // W
    writeSample(dir.file("wide.sam"), names, rows);
    const ProgramRun run = runProgram(logs, dir.path().string(), {"--output", "sub.out", "wide.sam"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err,
              "tarvex-levele: warning: factor T lies outside its published range 100 to 1000 in 1 run (first: run 1, "
              "0); computed all the same\n"
              "tarvex-levele: warning: factor W lies outside its published range 100000 to 1e+07 in 2 runs (first: "
              "run 2, 2e+07); computed all the same\n");
    EXPECT_FALSE(std::filesystem::exists(dir.file("wide.out")));
    ModelConfiguration model;
    readOutput(dir.file("sub.out"), model);
    EXPECT_EQ(model.runCount(), 4);
}

// Help and version say what the program computes and how it was decided.
TEST(LevelEProgram, HelpAndVersion) {
    ScratchDir logs;
    for (const char* option : {"--help", "--version"}) {
        const ProgramRun run = runProgram(logs, logs.path().string(), {option});
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.err, "");
        for (const char* fact : {"d(k) = l(k)/10", "R_Np = R_U = R_Th = RC_k", "flux taken at x = l(k)", "M = 32",
                                 "2e4 ... 9e6 yr"})
            EXPECT_NE(run.out.find(fact), std::string::npos) << option << ": " << fact;
    }
}
