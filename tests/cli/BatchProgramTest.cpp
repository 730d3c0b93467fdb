#include <gtest/gtest.h>

#include "CliFixtures.h"

namespace tarvex::test {
namespace {

bool hasLine(const std::string& text, const std::string& start) {
    return text.rfind(start, 0) == 0 || text.find("\n" + start) != std::string::npos;
}

TEST(BatchProgram, HelpAndVersionSucceedOnStandardOutput) {
    ScratchDir dir;
    const BatchRun help = runProgram(dir, {"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.err, "");
    EXPECT_TRUE(hasLine(help.out, "Usage: tarvex-batch [OPTIONS] SUBCOMMAND\n")) << help.out;
    // Every subcommand on a line of its own, with what it does.
    EXPECT_TRUE(hasLine(help.out, "  sample                      Generate a sample")) << help.out;
    EXPECT_TRUE(hasLine(help.out, "  analyse, analyze            Uncertainty and sensitivity analysis")) << help.out;
    EXPECT_TRUE(hasLine(help.out, "  run                         Run a project's model")) << help.out;
    EXPECT_TRUE(hasLine(help.out, "  compose                     Make a project (.psc)")) << help.out;
    EXPECT_TRUE(hasLine(help.out, "  example                     Run a built-in example")) << help.out;

    for (const char* sub : {"sample", "analyse", "example"}) {
        const BatchRun subHelp = runProgram(dir, {sub, "--help"});
        EXPECT_EQ(subHelp.status, 0) << sub;
        EXPECT_TRUE(hasLine(subHelp.out, std::string("Usage: tarvex-batch ") + sub + " [OPTIONS] ")) << subHelp.out;
        EXPECT_NE(subHelp.out.find("--json"), std::string::npos) << sub;
    }

    const BatchRun version = runProgram(dir, {"--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.out.rfind("tarvex-batch ", 0), 0u) << version.out;
}

TEST(BatchProgram, BadUsageExitsWithTwoAndAUsageLine) {
    ScratchDir dir;
    const std::string fac = writeFactorFile(dir);
    const struct {
        std::vector<std::string> args;
        std::string error;
        std::string usage;
    } cases[] = {
        {{}, "A subcommand is required", "Usage: tarvex-batch [OPTIONS] SUBCOMMAND"},
        {{"simulate"}, "Unknown subcommand: simulate",
         "Usage: tarvex-batch [OPTIONS] SUBCOMMAND"},
        {{"sample", fac, "-o", dir.file("x.sam"), "-m", "random", "-n", "5", "--bogus"},
         "The following argument was not expected: --bogus", "Usage: tarvex-batch sample [OPTIONS] factors"},
        {{"sample", fac, "-m", "random", "-n", "5"}, "--output is required", "Usage: tarvex-batch sample [OPTIONS] factors"},
        {{"sample", fac, "-o", dir.file("x.sam"), "-m", "halton", "-n", "5"}, "--method: halton not in {",
         "Usage: tarvex-batch sample [OPTIONS] factors"},
        {{"sample", fac, "-o", dir.file("x.sam"), "-m", "random", "-n", "many"}, "Could not convert: --size = many",
         "Usage: tarvex-batch sample [OPTIONS] factors"},
        {{"analyse", fac},
         "Cannot analyse " + fac +
             ": analyse reads post-processor files (.spc), projects (.psc) and demonstration cases (.dem)",
         "Usage: tarvex-batch analyse [OPTIONS] input"},
        {{"analyse", dir.file("x.spc"), "--confidence", "0.8"}, "--confidence: 0.8 not in {",
         "Usage: tarvex-batch analyse [OPTIONS] input"},
    };
    for (const auto& c : cases) {
        const BatchRun run = runProgram(dir, c.args);
        EXPECT_EQ(run.status, 2) << c.error;
        EXPECT_EQ(run.out, "") << c.error;
        EXPECT_EQ(run.err.rfind("tarvex-batch: error: " + c.error, 0), 0u) << run.err;
        EXPECT_TRUE(hasLine(run.err, c.usage + "\n")) << run.err;
    }
    EXPECT_FALSE(std::filesystem::exists(dir.file("x.sam")));
}

TEST(BatchProgram, FailuresExitWithOneAndTheProgramsMessage) {
    ScratchDir dir;
    const std::string fac = writeFactorFile(dir);
    writeFile(dir.file("bad.fac"), "Default Truncations:\n0.001\t0.999\n\n1 Distributions:\nGaussian\nx\n\n1\t0\t1\n");
    // A directory where the sample file should go cannot be written.
    std::filesystem::create_directory(dir.file("taken.sam"));
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {{"sample", dir.file("none.fac"), "-o", dir.file("x.sam"), "-m", "latin", "-n", "5"},
         "Error opening factors file\n"},
        {{"sample", dir.file("bad.fac"), "-o", dir.file("x.sam"), "-m", "latin", "-n", "5"},
         "Error reading factors file\n"},
        {{"sample", fac, "-o", dir.file("taken.sam"), "-m", "latin", "-n", "5", "-q"},
         "Error trying to write to the Sample file.\nIs it locked by another application?\n"},
        {{"analyse", dir.file("none.spc")}, "  Error reading UA/SA file\n"},
    };
    for (const auto& [args, message] : cases) {
        const BatchRun run = runProgram(dir, args);
        EXPECT_EQ(run.status, 1) << message;
        EXPECT_EQ(run.err, "tarvex-batch: " + message);
    }

    // And a success, for contrast: the result on standard output only.
    const BatchRun made = runProgram(dir, {"sample", fac, "-o", dir.file("x.sam"), "-m", "latin", "-n", "5", "-q"});
    EXPECT_EQ(made.status, 0) << made.err;
    EXPECT_EQ(made.out, "Generated samples: 5\nSample file: " + dir.file("x.sam") + "\n");
    EXPECT_EQ(made.err, "");
}

}  // namespace
}  // namespace tarvex::test
