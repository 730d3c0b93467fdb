#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "CliFixtures.h"
#include "sampling/FastSampler.h"
#include "sampling/MorrisSampler.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/SobolSampler.h"

namespace tarvex::test {
namespace {

struct Made {
    int32_t methodId;
    int32_t rows;
};

// Generates with `settings` and reads the sample file back through the engine.
Made sampleAndRead(const ScratchDir& dir, const std::vector<std::string>& settings) {
    std::vector<std::string> args{"sample", writeFactorFile(dir), "-o", dir.file("out.sam"), "-q"};
    args.insert(args.end(), settings.begin(), settings.end());
    const BatchRun run = runInProcess(args);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.err, "");
    PrepConfiguration read;
    EXPECT_EQ(read.readSampleFile(dir.file("out.sam")), 1);
    if (!read.sampler) return {-1, -1};
    EXPECT_EQ(read.samples.columnCount(), 3);
    EXPECT_EQ(run.out, "Generated samples: " + std::to_string(read.sampler->numSamples()) +
                           "\nSample file: " + dir.file("out.sam") + "\n");
    return {read.sampler->methodId(), read.samples.rowCount()};
}

TEST(SampleCommand, EveryMethodWritesASampleFileOfItsSize) {
    ScratchDir dir;
    // Two stochastic factors (k = 2) and a constant.
    const struct {
        std::vector<std::string> settings;
        int32_t methodId;
        int32_t rows;
    } cases[] = {
        {{"--method", "random", "--size", "20", "--seed", "3"}, 5, 20},
        {{"-m", "LATIN", "-n", "25"}, 2, 25},
        {{"-m", "lptau", "-n", "16"}, 3, 16},
        {{"-m", "morris", "--trajectories", "4", "--levels", "6", "--seed", "9"}, 4, 4 * (2 + 1)},
        {{"-m", "replicated-latin", "--base", "10", "--replications", "3"}, 6, 30},
        {{"-m", "sobol", "--base", "16"}, 7, 16 * (2 * 2 + 2)},
        // Order 2 of two factors stops at order 1: A, B and one block per factor.
        {{"-m", "sobol", "--base", "16", "--order", "2"}, 7, 16 * 4},
        {{"-m", "fast", "--fast-mode", "classic", "-n", "401", "--seed", "5"}, 0, 401},
    };
    for (const auto& c : cases) {
        const Made made = sampleAndRead(dir, c.settings);
        EXPECT_EQ(made.methodId, c.methodId) << c.settings[1];
        EXPECT_EQ(made.rows, c.rows) << c.settings[1];
    }

    // FAST on groups: a block for the group and one for b, each at least 65
    // runs long and together within the budget.
    const Made groups = sampleAndRead(dir, {"-m", "fast", "--fast-mode", "groups", "--group", "G=a", "-n", "200"});
    EXPECT_EQ(groups.methodId, 0);
    EXPECT_GE(groups.rows, 65);
    EXPECT_LE(groups.rows, 200);
    PrepConfiguration read;
    ASSERT_EQ(read.readSampleFile(dir.file("out.sam")), 1);
    const auto& fast = static_cast<const FastSampler&>(*read.sampler);
    EXPECT_EQ(fast.analysisMode(), 2);
    EXPECT_EQ(fast.groupNames(), std::vector<std::string>{"G"});
    EXPECT_EQ(fast.elementNames(), std::vector<std::string>{"a"});
}

TEST(SampleCommand, FixedSamplesTakeTheTypedRowsAndTheStartingRow) {
    ScratchDir dir;
    writeFile(dir.file("rows.txt"), "# a b k\n1.5 0.25 0.5\n\n  1.75\t0.5 0.5\n");
    Made made = sampleAndRead(dir, {"-m", "fixed", "--rows", dir.file("rows.txt"), "--starting-row"});
    EXPECT_EQ(made.methodId, 1);
    ASSERT_EQ(made.rows, 3);
    PrepConfiguration read;
    ASSERT_EQ(read.readSampleFile(dir.file("out.sam")), 1);
    // The starting row: the uniforms' medians and the constant, then the file's runs.
    const std::vector<std::vector<double>> expected = {{1.5, 0.5, 0.5}, {1.5, 0.25, 0.5}, {1.75, 0.5, 0.5}};
    for (int32_t r = 0; r < 3; ++r)
        for (int32_t c = 0; c < 3; ++c) {
            double v = 0.0;
            ASSERT_EQ(read.samples.getValue(r, c, &v), 1);
            EXPECT_NEAR(v, expected[size_t(r)][size_t(c)], 1e-6) << r << "," << c;
        }

    // A run of the wrong width fails the command, naming the line.
    writeFile(dir.file("short.txt"), "1.5 0.25 0.5\n1.5 0.25\n");
    const BatchRun bad = runInProcess({"sample", writeFactorFile(dir), "-o", dir.file("bad.sam"), "-m", "fixed",
                                       "--rows", dir.file("short.txt")});
    EXPECT_EQ(bad.status, 1);
    EXPECT_EQ(bad.err, "tarvex-batch: Error reading rows file " + dir.file("short.txt") +
                           ": line 2 holds 2 values for 3 factors\n");
    EXPECT_FALSE(std::filesystem::exists(dir.file("bad.sam")));
}

TEST(SampleCommand, RefusedSettingsGiveTheEngineTextAndLeaveTheFileAlone) {
    ScratchDir dir;
    const std::string fac = writeFactorFile(dir);
    writeFile(dir.file("keep.sam"), "precious");
    const struct {
        std::vector<std::string> settings;
        std::string message;
    } cases[] = {
        {{"-m", "random", "-n", "0"}, "  Seed and Number of executions must be positive values"},
        {{"-m", "random", "-n", "10", "--seed", "0"}, "  Seed and Number of executions must be positive values"},
        {{"-m", "latin", "-n", "10", "--seed", "2147483648"}, "Incorrect value for Seed or Number of executions"},
        {{"-m", "latin"}, "--size is required by the Latin Hypercube method"},
        {{"-m", "latin", "-n", "10", "--levels", "4"}, "--levels does not apply to the Latin Hypercube method"},
        {{"-m", "lptau", "-n", "8", "--seed", "4"}, "--seed does not apply to the QuasiRandom LpTau method"},
        {{"-m", "morris", "--trajectories", "0", "--levels", "4"}, "Num trajectories must be a positive value"},
        {{"-m", "morris", "--trajectories", "4", "--levels", "1"}, "The Morris design needs at least 2 levels."},
        {{"-m", "sobol", "--base", "16", "--order", "3"}, "  Incorrect order number, order too big."},
        {{"-m", "sobol", "--base", "0"}, "Base sample size must be a positive value"},
        {{"-m", "sobol", "--base", "16", "--cheap"}, "--cheap needs --order"},
        {{"-m", "fast", "-n", "0"}, "  Number of executions must be a positive value"},
        {{"-m", "fast", "-n", "129", "--fast-mode", "total"}, "Sample size too small\nThe sample size must be >= 65 per factor/group"},
        {{"-m", "fast", "-n", "200", "--group", "G=a"}, "--group needs --fast-mode groups"},
        {{"-m", "fast", "-n", "300", "--fast-mode", "groups", "--group", "G=a,b"},
         "The first and total order FAST compares at least two factors or groups"},
        {{"-m", "fast", "-n", "300", "--fast-mode", "groups", "--group", "G=a,k"},
         "Group G: k is not a stochastic factor of the list"},
        {{"-m", "replicated-latin", "--base", "10"}, "--replications is required by the Replicated Latin Hypercube method"},
        {{"-m", "fixed"}, "--rows or --starting-row is required by the Fixed samples method"},
    };
    for (const auto& c : cases) {
        std::vector<std::string> args{"sample", fac, "-o", dir.file("keep.sam")};
        args.insert(args.end(), c.settings.begin(), c.settings.end());
        const BatchRun run = runInProcess(args);
        EXPECT_EQ(run.status, 2) << c.message;
        EXPECT_EQ(run.err.substr(0, run.err.find("\nUsage:") + 1), "tarvex-batch: error: " + c.message + "\n");
        EXPECT_NE(run.err.find("\nUsage: tarvex-batch sample [OPTIONS] factors\n"), std::string::npos) << run.err;
        EXPECT_EQ(run.out, "");
    }
    EXPECT_EQ(readFile(dir.file("keep.sam")), "precious");

    // A factor file that cannot be read is a failure with the reader's text.
    const BatchRun missing = runInProcess({"sample", dir.file("none.fac"), "-o", dir.file("keep.sam"), "-m",
                                           "random", "-n", "5"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.err, "tarvex-batch: Error opening factors file\n");
    EXPECT_EQ(readFile(dir.file("keep.sam")), "precious");
}

TEST(SampleCommand, JsonResultAndProgressOnTheErrorStream) {
    ScratchDir dir;
    const BatchRun run = runInProcess({"sample", writeFactorFile(dir), "-o", dir.file("m.sam"), "-m", "morris",
                                       "--trajectories", "5", "--levels", "4", "--json"});
    ASSERT_EQ(run.status, 0) << run.err;
    const nlohmann::json result = nlohmann::json::parse(run.out);
    EXPECT_EQ(result["method"], "Morris");
    EXPECT_EQ(result["methodId"], 4);
    EXPECT_EQ(result["samples"], 15);
    EXPECT_EQ(result["rows"], 15);
    EXPECT_EQ(result["factors"], 3);
    EXPECT_EQ(result["sampleFile"], dir.file("m.sam"));
    // Progress lines, not a redrawn bar: the stream is no terminal here.
    EXPECT_EQ(run.err.rfind("Generating Morris: 0%\nGenerating Morris: 10%\n", 0), 0u) << run.err;
    EXPECT_TRUE(run.err.ends_with("0%\nGenerating Morris: 100%\n")) << run.err;
    EXPECT_EQ(run.err.find('\r'), std::string::npos);

    // A file name that is no UTF-8 (Latin-1 here) is replaced in the JSON
    // text, which stays valid, rather than ending the program.
    const BatchRun latin1 = runInProcess({"sample", writeFactorFile(dir), "-o", dir.file("caf\xe9.sam"), "-m",
                                          "random", "-n", "4", "--json", "-q"});
    ASSERT_EQ(latin1.status, 0) << latin1.err;
    EXPECT_TRUE(std::filesystem::exists(dir.file("caf\xe9.sam")));
    EXPECT_EQ(nlohmann::json::parse(latin1.out)["sampleFile"], dir.file("caf\xef\xbf\xbd.sam"));
}

}  // namespace
}  // namespace tarvex::test
