// The staged installation tree and the start script.
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "TestSupport.h"

namespace fs = std::filesystem;
using tarvex::test::readFile;
using tarvex::test::ScratchDir;
using tarvex::test::writeFile;

namespace {

const char* const kTreeDirs[] = {"Preprocessor/PrepPanels", "Tarvex/TarvexPanels", "Postprocessor/VelsPanels",
                                 "ILOG", "Demo", "bitmaps", "help"};

// Runs the start script from `work` and returns its exit status; output goes to files.
int runStartScript(const ScratchDir& work, const std::string& args) {
    const std::string script = std::string(TARVEX_SOURCE_DIR) + "/scripts/tarvex-start.sh";
    const std::string cmd = "cd '" + work.path().string() + "' && bash '" + script + "' " + args +
                            " >out.txt 2>err.txt";
    const int rc = std::system(cmd.c_str());
    return WIFEXITED(rc) ? WEXITSTATUS(rc) : -1;
}

}  // namespace

TEST(InstallationTree, StagedTreeHasTheSevenDirectories) {
    for (const char* d : kTreeDirs) EXPECT_TRUE(fs::is_directory(fs::path(TARVEX_STAGE_DIR) / d)) << d;
}

TEST(StartScript, WritesAFreshStartupFileWithMarkZeroAndSaysWhenTheProgramIsMissing) {
    ScratchDir install;
    ScratchDir work;
    EXPECT_EQ(runStartScript(work, "'" + install.path().string() + "/'"), 1);
    EXPECT_EQ(readFile(work.file("Tarvex.cfg")), install.path().string() + "\n0\n");
    EXPECT_NE(readFile(work.file("err.txt")).find("is not built"), std::string::npos);
}

TEST(StartScript, KeepsAnExistingStartupFileAndStartsTheProgram) {
    ScratchDir install;
    ScratchDir work;
    fs::create_directories(install.path() / "bin");
    const std::string program = install.file("bin/tarvex");
    writeFile(program, "#!/bin/sh\necho \"args:$*\"\ncat Tarvex.cfg\n");
    fs::permissions(program, fs::perms::owner_all);
    writeFile(work.file("Tarvex.cfg"), install.path().string() + "\n1\n");

    EXPECT_EQ(runStartScript(work, "'" + install.path().string() + "' one 'two three'"), 0);
    EXPECT_EQ(readFile(work.file("out.txt")), "args:one two three\n" + install.path().string() + "\n1\n");
    EXPECT_EQ(readFile(work.file("Tarvex.cfg")), install.path().string() + "\n1\n");
}

TEST(StartScript, RefusesAMissingInstallationDirectory) {
    ScratchDir work;
    EXPECT_EQ(runStartScript(work, "/nonexistent/tarvex"), 2);
    EXPECT_EQ(runStartScript(work, ""), 2);
    EXPECT_FALSE(fs::exists(work.path() / "Tarvex.cfg"));
}
