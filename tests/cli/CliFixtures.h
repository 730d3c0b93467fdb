#pragma once
// The batch tool's tests: factor files made through the engine, the tool run
// in this process with captured streams, and the real program started with
// its exit status.
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "../sampling/SamplingFixtures.h"
#include "TestSupport.h"
#include "cli/BatchApp.h"
#include "cli/Console.h"
#include "correlation/FactorFile.h"
#include "correlation/FactorList.h"

namespace tarvex::test {

struct BatchRun {
    int status = -1;
    std::string out;
    std::string err;
};

// In this process: not a terminal, a clock that stands still.
inline BatchRun runInProcess(const std::vector<std::string>& args) {
    std::ostringstream out, err;
    cli::Console console{out, err, false, [] { return 0.0; }};
    BatchRun run;
    run.status = cli::runBatch(args, console);
    run.out = out.str();
    run.err = err.str();
    return run;
}

// The built program, its streams caught in files of `dir`.
inline BatchRun runProgram(const ScratchDir& dir, const std::vector<std::string>& args) {
    std::string command = "'" TARVEX_BATCH_PROGRAM "'";
    for (const std::string& a : args) {
        std::string quoted = "'";
        for (char c : a) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
        command += " " + quoted + "'";
    }
    command += " >'" + dir.file("stdout.txt") + "' 2>'" + dir.file("stderr.txt") + "'";
    const int raw = std::system(command.c_str());
    BatchRun run;
    run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    run.out = readFile(dir.file("stdout.txt"));
    run.err = readFile(dir.file("stderr.txt"));
    return run;
}

// Two uniform factors, a on [1, 2] and b on [0, 1], and the constant k = 0.5.
inline std::string writeFactorFile(const ScratchDir& dir, const std::string& name = "factors.fac") {
    FactorList list;
    EXPECT_EQ(list.addFactor(testing::uniformFactor("a", 1.0, 2.0)), 1);
    EXPECT_EQ(list.addFactor(testing::uniformFactor("b", 0.0, 1.0)), 1);
    EXPECT_EQ(list.addFactor(testing::constantFactor("k", 0.5)), 1);
    std::string error;
    EXPECT_EQ(saveFactorFile(dir.file(name), list, error), 1) << error;
    return dir.file(name);
}

}  // namespace tarvex::test
