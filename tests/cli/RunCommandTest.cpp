// The batch tool's project workflow through the built program: compose a
// project with an external script model, run it, analyse its results; a
// failing model that leaves the project as it was; the built-in example's
// indices against the exact ones.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

#include <nlohmann/json.hpp>

#include "CliFixtures.h"
#include "cli/ComposeCommand.h"
#include "cli/RunCommand.h"
#include "model/InternalModel.h"
#include "model/ModelConfiguration.h"
#include "postproc/PostprocessorFile.h"
#include "postproc/VelsConfiguration.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex::test {
namespace {

namespace fs = std::filesystem;

// A model that reads its sample file (runs on line 2, the rows from line 5)
// and writes y = a + 2 b for every row, as the model output file wants it.
std::string scriptModel(const ScratchDir& dir, const std::string& name, int exitCode) {
    const std::string path = dir.file(name);
    writeFile(path, "#!/bin/sh\n"
                    "n=$(sed -n 2p \"$1\")\n"
                    "{ printf '1\\ny\\ntime = no\\n%s\\n' \"$n\"\n"
                    "  awk -v n=\"$n\" 'NR > 4 && NR <= 4 + n { printf \"%.9g\\n\", $1 + 2 * $2 }' \"$1\"\n"
                    "} > '" + dir.file("out.txt") + "'\n"
                    "exit " + std::to_string(exitCode) + "\n");
    fs::permissions(path, fs::perms::owner_all);
    return path;
}

TEST(RunCommand, ComposeRunAndAnalyseAProjectWithAnExternalModel) {
    ScratchDir dir;
    const std::string fac = writeFactorFile(dir);
    const std::string psc = dir.file("study.psc");
    const BatchRun composed = runProgram(dir, {"compose", fac, psc, "-m", "latin", "-n", "40", "--seed", "7", "--sample",
                                               dir.file("study.sam"), "--external", scriptModel(dir, "model.sh", 0),
                                               "--output", dir.file("out.txt")});
    ASSERT_EQ(composed.status, 0) << composed.err;
    EXPECT_EQ(composed.out, "Project: " + psc + "\nSample file: " + dir.file("study.sam") + "\n");
    const BatchRun early = runProgram(dir, {"analyse", psc});
    EXPECT_EQ(early.status, 1);
    EXPECT_EQ(early.err, "tarvex-batch: The project " + psc + " holds no results: run it first\n");
    EXPECT_FALSE(fs::exists(dir.file("study.sam")));  // made by the run, not before

    // Back into the project; then to a post-processor file, keeping the sample.
    const BatchRun ran = runProgram(dir, {"run", psc, "-q"});
    ASSERT_EQ(ran.status, 0) << ran.err;
    EXPECT_EQ(ran.out, "Runs: 40\nSaved: " + psc + "\n");
    const std::string sample = readFile(dir.file("study.sam"));
    const BatchRun again = runProgram(dir, {"run", psc, "-o", dir.file("study.spc"), "--regenerate", "no", "-q"});
    ASSERT_EQ(again.status, 0) << again.err;
    EXPECT_NE(again.err.find("Do you want to delete the existing one and create a new one now? No\n"), std::string::npos)
        << again.err;
    EXPECT_EQ(readFile(dir.file("study.sam")), sample);

    // Every run is a + 2 b of its sample row, as the test computes it.
    PrepConfiguration prep;
    ModelConfiguration model;
    VelsConfiguration vels;
    ASSERT_EQ(loadPostprocessorFile(dir.file("study.spc"), prep, model, vels), 1);
    ASSERT_EQ(prep.samples.rowCount(), 40);
    ASSERT_EQ(model.runCount(), 40);
    const std::vector<double> a = testing::column(prep.samples, 0), b = testing::column(prep.samples, 1);
    double sum = 0.0;
    for (int32_t r = 0; r < 40; ++r) {
        std::vector<double> y;
        ASSERT_EQ(model.readRun(r, y), 1);
        ASSERT_EQ(y.size(), 1u);
        const double expected = a[std::size_t(r)] + 2.0 * b[std::size_t(r)];
        EXPECT_NEAR(y[0], expected, 1e-5) << r;  // results are kept to six significant digits
        sum += y[0];
    }

    // The results file, the project run in place (same sample, same model),
    // and a demonstration case of the results file's layout analyse alike.
    std::filesystem::copy_file(dir.file("study.spc"), dir.file("study.dem"));
    for (const std::string& input : {dir.file("study.spc"), psc, dir.file("study.dem")}) {
        const BatchRun analysed = runProgram(dir, {"analyse", input, "--var", "y", "--json"});
        ASSERT_EQ(analysed.status, 0) << input << analysed.err;
        const nlohmann::json result = nlohmann::json::parse(analysed.out);
        EXPECT_EQ(result["uncertainty"]["runs"], 40);
        EXPECT_NEAR(result["uncertainty"]["variables"][0]["mean"].get<double>(), sum / 40.0, 1e-6) << input;
    }
}

// An internal model file and an output file without a model, composed and run.
TEST(RunCommand, InternalModelsAndOutputFilesAlone) {
    ScratchDir dir;
    const std::string fac = writeFactorFile(dir);
    InternalModel equations;
    ASSERT_EQ(equations.setName("twice"), 1);
    for (const char* v : {"a", "b", "k"}) ASSERT_EQ(equations.addVariable(v), 1);
    ASSERT_EQ(equations.addExpression(0, "y", "a+2*b", 1), 1);
    ASSERT_EQ(equations.writeFile(dir.file("twice.imd")), 1);
    ASSERT_EQ(runProgram(dir, {"compose", fac, dir.file("internal.psc"), "-m", "lptau", "-n", "8", "--internal",
                               dir.file("twice.imd")})
                  .status,
              0);
    const BatchRun internal = runProgram(dir, {"run", dir.file("internal.psc"), "-o", dir.file("internal.spc"), "-q"});
    ASSERT_EQ(internal.status, 0) << internal.err;
    EXPECT_TRUE(fs::exists(dir.file("internal.sam")));  // the project's name with .sam

    PrepConfiguration prep;
    ModelConfiguration model;
    VelsConfiguration vels;
    ASSERT_EQ(loadPostprocessorFile(dir.file("internal.spc"), prep, model, vels), 1);
    ASSERT_EQ(model.runCount(), 8);
    const std::vector<double> a = testing::column(prep.samples, 0), b = testing::column(prep.samples, 1);
    for (int32_t r = 0; r < 8; ++r) {
        std::vector<double> y;
        ASSERT_EQ(model.readRun(r, y), 1);
        EXPECT_NEAR(y.at(0), a[std::size_t(r)] + 2.0 * b[std::size_t(r)], 1e-5) << r;
    }

    // No model: the values are the output file's, one per sample row.
    writeFile(dir.file("given.txt"), "1\nz\ntime = no\n3\n10\n20\n30\n");
    ASSERT_EQ(runProgram(dir, {"compose", fac, dir.file("given.psc"), "-m", "random", "-n", "3", "--seed", "5",
                               "--output-only", dir.file("given.txt")})
                  .status,
              0);
    ASSERT_EQ(runProgram(dir, {"run", dir.file("given.psc"), "-o", dir.file("given.spc"), "-q"}).status, 0);
    ASSERT_EQ(loadPostprocessorFile(dir.file("given.spc"), prep, model, vels), 1);
    ASSERT_EQ(model.runCount(), 3);
    for (int32_t r = 0; r < 3; ++r) {
        std::vector<double> z;
        ASSERT_EQ(model.readRun(r, z), 1);
        EXPECT_EQ(z.at(0), 10.0 * (r + 1)) << r;
    }
}

TEST(RunCommand, AFailingModelLeavesTheProjectFileAsItWas) {
    ScratchDir dir;
    const std::string fac = writeFactorFile(dir);
    const std::string psc = dir.file("failing.psc");
    ASSERT_EQ(runProgram(dir, {"compose", fac, psc, "-m", "random", "-n", "10", "--seed", "3", "--external",
                               scriptModel(dir, "three.sh", 3), "--output", dir.file("out.txt")})
                  .status,
              0);
    const std::string before = readFile(psc);
    for (const std::vector<std::string>& args :
         {std::vector<std::string>{"run", psc, "-q"}, std::vector<std::string>{"run", psc, "-o", dir.file("r.spc"), "-q"}}) {
        const BatchRun failed = runProgram(dir, args);
        EXPECT_EQ(failed.status, 1);
        EXPECT_EQ(failed.err, "tarvex-batch: Error: Model execution returned with error code\n");
        EXPECT_EQ(failed.out, "");
        EXPECT_EQ(readFile(psc), before);
    }
    EXPECT_FALSE(fs::exists(dir.file("r.spc")));

    const BatchRun missing = runProgram(dir, {"run", dir.file("none.psc")});
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.err, "tarvex-batch: Error opening file: Error opening input file " + dir.file("none.psc") +
                               " Loading Aborted.\n");
}

// Ctrl-C while the model runs: the model sends it to this process (which runs
// the tool) and waits to be stopped. Nothing is saved.
TEST(RunCommand, InterruptStopsTheModelAndSavesNothing) {
    ScratchDir dir;
    CurrentDirGuard here(dir.path());
    const std::string fac = writeFactorFile(dir);
    const std::string psc = dir.file("stopped.psc");
    const std::string model = dir.file("interrupt.sh");
    writeFile(model, "#!/bin/sh\nkill -INT $PPID\nexec sleep 30\n");
    fs::permissions(model, fs::perms::owner_all);
    ASSERT_EQ(runInProcess({"compose", fac, psc, "-m", "random", "-n", "10", "--seed", "3", "--external", model,
                            "--output", dir.file("out.txt")})
                  .status,
              0);
    const std::string before = readFile(psc);
    const BatchRun stopped = runInProcess({"run", psc, "-q"});
    EXPECT_EQ(stopped.status, 1);
    EXPECT_EQ(stopped.err, std::string("tarvex-batch: ") + cli::kRunStoppedText + "\n");
    EXPECT_EQ(readFile(psc), before);
}

TEST(RunCommand, ContradictoryModelOptionsAreBadUsage) {
    ScratchDir dir;
    const std::string fac = writeFactorFile(dir);
    const std::string psc = dir.file("p.psc");
    const std::vector<std::vector<std::string>> models = {
        {},
        {"--internal", dir.file("m.imd"), "--external", dir.file("m.sh"), "--output", dir.file("o.txt")},
        {"--external", dir.file("m.sh")},
        {"--output", dir.file("o.txt")},
        {"--output-only", dir.file("o.txt"), "--external", dir.file("m.sh"), "--output", dir.file("o.txt")},
    };
    for (const auto& model : models) {
        std::vector<std::string> args{"compose", fac, psc, "-m", "random", "-n", "5", "--seed", "1"};
        args.insert(args.end(), model.begin(), model.end());
        const BatchRun run = runProgram(dir, args);
        EXPECT_EQ(run.status, 2) << model.size();
        EXPECT_EQ(run.err.rfind(std::string("tarvex-batch: error: ") + cli::kComposeModelText + "\nUsage: tarvex-batch compose [OPTIONS] factors project", 0), 0u)
            << run.err;
    }
    EXPECT_FALSE(fs::exists(psc));
}

// The Ishigami indices of the default design (B = 4096) against the exact
// ones. The estimators' standard errors are about 1/sqrt(B) times a factor
// below 2 for this function, so 4/sqrt(B) = 0.0625 holds with a wide margin
// while a swapped or missing index (differences of 0.13 and more) fails.
TEST(ExampleCommand, IshigamiIndicesMatchTheExactValues) {
    ScratchDir dir;
    const BatchRun run = runProgram(dir, {"example", "ishigami", "--json", "-q"});
    ASSERT_EQ(run.status, 0) << run.err;
    const nlohmann::json result = nlohmann::json::parse(run.out);
    ASSERT_EQ(result["base"], 4096);
    EXPECT_EQ(result["runs"], 8 * 4096);  // A, B and the 2k mixed blocks
    const double tolerance = 4.0 / std::sqrt(4096.0);
    // V1 = (1 + 0.1 pi^4 / 5)^2 / 2, V2 = 49 / 8, V13 = 0.01 pi^8 (1/18 - 1/50), V = 13.8446...
    const double first[] = {0.3139, 0.4424, 0.0};
    const double total[] = {0.5576, 0.4424, 0.2437};
    ASSERT_EQ(result["factors"].size(), 3u);
    for (std::size_t f = 0; f < 3; ++f) {
        const nlohmann::json& factor = result["factors"][f];
        EXPECT_EQ(factor["name"], "x" + std::to_string(f + 1));
        EXPECT_NEAR(factor["firstExact"].get<double>(), first[f], 1e-4) << f;
        EXPECT_NEAR(factor["totalExact"].get<double>(), total[f], 1e-4) << f;
        EXPECT_NEAR(factor["first"].get<double>(), first[f], tolerance) << f;
        EXPECT_NEAR(factor["total"].get<double>(), total[f], tolerance) << f;
    }

    // The table, and the kept directory with the project that was run.
    const BatchRun table = runProgram(dir, {"example", "ishigami", "--base", "256", "-q", "--keep", dir.file("kept")});
    ASSERT_EQ(table.status, 0) << table.err;
    EXPECT_NE(table.out.find("Factor  First order   Exact  Total order   Exact\n"), std::string::npos) << table.out;
    EXPECT_NE(table.out.find("\nx3 "), std::string::npos) << table.out;
    EXPECT_TRUE(fs::exists(dir.file("kept/ishigami.psc")));
    EXPECT_TRUE(fs::exists(dir.file("kept/ishigami.sam")));

    const BatchRun bad = runProgram(dir, {"example", "ishigami", "--base", "0"});
    EXPECT_EQ(bad.status, 2);
    EXPECT_EQ(bad.err.rfind("tarvex-batch: error: Base sample size must be a positive value\n", 0), 0u) << bad.err;
}

}  // namespace
}  // namespace tarvex::test
