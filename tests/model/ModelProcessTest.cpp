#include "model/ModelProcess.h"

#include <PollUntilDone.h>
#include <TestSupport.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

using namespace tarvex;
using tarvex::test::ScratchDir;

namespace {

std::string script(const ScratchDir& dir, const std::string& name, const std::string& body) {
    std::string path = dir.file(name);
    tarvex::test::writeFile(path, "#!/bin/sh\n" + body);
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    return path;
}


}  // namespace

TEST(ModelProcess, ExitCodeOfAFailingModelIsReported) {
    ScratchDir dir;
    ModelProcess p;
    ASSERT_EQ(p.start(script(dir, "fail.sh", "exit 3\n"), "in.sam", dir.path().string()), 1);
    int steps = 0;
    EXPECT_EQ(tarvex::test::pollUntilDone(p, [&] { ++steps; return true; }), tarvex::test::Ended::Finished);
    EXPECT_EQ(p.exitCode(), 3);
    EXPECT_EQ(p.state(), ModelProcess::State::Exited);
}

TEST(ModelProcess, ModelGetsSampleFileAndRunsInWorkingDirectory) {
    ScratchDir dir;
    ScratchDir work;
    // A model that echoes its argument and its directory into an output file of the usual form.
    std::string exe = script(dir, "model.sh",
                             "printf '1\\ny\\ntime = no\\n1\\n%s\\n' \"$1\" > out.txt\n"
                             "pwd >> out.txt\n");
    ModelProcess p;
    ASSERT_EQ(p.start(exe, "my sample.sam", work.path().string()), 1);
    EXPECT_EQ(tarvex::test::pollUntilDone(p), tarvex::test::Ended::Finished);
    EXPECT_EQ(p.exitCode(), 0);
    std::string out = tarvex::test::readFile(work.file("out.txt"));
    EXPECT_EQ(out, "1\ny\ntime = no\n1\nmy sample.sam\n" +
                       std::filesystem::canonical(work.path()).string() + "\n");
}

TEST(ModelProcess, StopKillsARunningModelWithExitCodeOne) {
    ScratchDir dir;
    ModelProcess p;
    ASSERT_EQ(p.start(script(dir, "slow.sh", "exec sleep 30\n"), "s.sam", dir.path().string()), 1);
    pid_t pid = p.pid();
    ASSERT_GT(pid, 0);
    int steps = 0;
    EXPECT_EQ(tarvex::test::pollUntilDone(p, [&] { return ++steps < 3; }), tarvex::test::Ended::Stopped);
    EXPECT_EQ(steps, 3);
    EXPECT_EQ(p.exitCode(), 1);
    // Reaped, so the pid no longer names our child.
    EXPECT_EQ(kill(pid, 0), -1);
}

TEST(ModelProcess, DeathBySignalIsANonZeroExitCode) {
    ScratchDir dir;
    ModelProcess p;
    ASSERT_EQ(p.start(script(dir, "die.sh", "kill -TERM $$\nsleep 5\n"), "s.sam", ""), 1);
    EXPECT_EQ(tarvex::test::pollUntilDone(p), tarvex::test::Ended::Finished);
    EXPECT_EQ(p.exitCode(), 128 + SIGTERM);
}

TEST(ModelProcess, LoadFailuresCarryErrnoAndCommandLine) {
    ScratchDir dir;
    ModelProcess missing;
    EXPECT_EQ(missing.start(dir.file("nothere"), "a b.sam", dir.path().string()), 0);
    EXPECT_EQ(missing.errorText(), "The model execution process can't be loaded.\nError 2\ncmd: \"" +
                                       dir.file("nothere") + "\" \"a b.sam\"");
    EXPECT_EQ(missing.state(), ModelProcess::State::NotStarted);

    std::string plain = dir.file("plain.txt");
    tarvex::test::writeFile(plain, "not a program\n");
    ModelProcess denied;
    EXPECT_EQ(denied.start(plain, "s.sam", ""), 0);
    EXPECT_EQ(denied.errorText(), "The model execution process can't be loaded.\nError 13\ncmd: \"" + plain +
                                      "\" \"s.sam\"");

    ModelProcess badDir;
    EXPECT_EQ(badDir.start(script(dir, "ok.sh", "exit 0\n"), "s.sam", dir.file("no-such-dir")), 0);
    EXPECT_NE(badDir.errorText().find("Error 2\n"), std::string::npos);
}

TEST(ModelProcess, DestroyingARunningProcessKillsIt) {
    ScratchDir dir;
    pid_t pid;
    {
        ModelProcess p;
        ASSERT_EQ(p.start(script(dir, "slow.sh", "exec sleep 30\n"), "s.sam", ""), 1);
        pid = p.pid();
        EXPECT_EQ(p.poll(), ModelProcess::State::Running);
    }
    EXPECT_EQ(kill(pid, 0), -1);
}

TEST(ModelProcess, RelativeExecutableIsFoundFromOurDirectory) {
    ScratchDir dir;
    ScratchDir work;
    script(dir, "rel.sh", "echo ran > marker.txt\n");
    tarvex::test::CurrentDirGuard here(dir.path());
    ModelProcess p;
    // The model runs in `work`, but its path is relative to where we stand.
    ASSERT_EQ(p.start("./rel.sh", "s.sam", work.path().string()), 1) << p.errorText();
    EXPECT_EQ(tarvex::test::pollUntilDone(p), tarvex::test::Ended::Finished);
    EXPECT_EQ(p.exitCode(), 0);
    EXPECT_EQ(tarvex::test::readFile(work.file("marker.txt")), "ran\n");
}
