// The start from ./Tarvex.cfg: reading, the mark rule, the first-start repair of the
// demonstration files and the message for a start-up file that can't be used.
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <sstream>
#include <string>

#include "TestSupport.h"
#include "app/DemoRepair.h"
#include "common/Environment.h"
#include "app/EnvironmentStart.h"
#include "app/StartupFile.h"

namespace fs = std::filesystem;
using tarvex::DemoRepair;
using tarvex::Environment;
using tarvex::EnvironmentStart;
using tarvex::StartupFile;
using tarvex::test::CurrentDirGuard;
using tarvex::test::readFile;
using tarvex::test::ScratchDir;
using tarvex::test::writeFile;

namespace {

const char* const kMessage =
    "    Error opening PrepVels configuration file.\n"
    "Can't open PrepVels.cfg in the current directory.\n"
    "\t Terminating.\n";

// An installation with a Demo folder, and a separate directory the program starts in.
struct Installation {
    ScratchDir install;
    ScratchDir work;
    Installation() { fs::create_directories(install.path() / "Demo"); }
    std::string dem(const std::string& name) const { return install.file("Demo/" + name + ".dem"); }
    void writeCfg(const std::string& content) const { writeFile(work.file("Tarvex.cfg"), content); }
    std::string cfg() const { return readFile(work.file("Tarvex.cfg")); }
    void writeAllDemos(const std::string& content) const {
        for (const char* name : DemoRepair::kCaseNames) writeFile(dem(name), content);
    }
};

int startIn(const Installation& inst, Environment& env, std::string* errText = nullptr, EnvironmentStart* out = nullptr) {
    CurrentDirGuard here(inst.work.path());
    EnvironmentStart start;
    std::ostringstream err;
    const int proceed = start.run(err, env);
    if (errText) *errText = err.str();
    if (out) *out = start;
    return proceed;
}

}  // namespace

// A missing file, or one whose first line can't be used: the message, status 0,
// no installation directory, and no file written or repaired.
TEST(EnvironmentStart, MissingOrUnusableStartupFileGivesTheMessageAndTouchesNothing) {
    const std::string tooLong = std::string(1024, 'x') + "\n0\n";
    for (const std::optional<std::string>& content :
         {std::optional<std::string>(), std::optional(tooLong), std::optional<std::string>(""), std::optional<std::string>("\n0\n")}) {
        Installation inst;
        if (content) inst.writeCfg(*content);
        inst.writeAllDemos("[MAINDIR]/Demo/a.spc\n");
        Environment env;
        std::string err;
        EnvironmentStart start;
        EXPECT_EQ(startIn(inst, env, &err, &start), 0);
        EXPECT_EQ(start.exitStatus, 0);
        EXPECT_EQ(err, kMessage);
        EXPECT_TRUE(env.mainDir().empty());
        if (content) {
            EXPECT_EQ(inst.cfg(), *content);
        }
        EXPECT_EQ(std::distance(fs::directory_iterator(inst.work.path()), fs::directory_iterator()), content ? 1 : 0);
        EXPECT_EQ(readFile(inst.dem("Ishigami")), "[MAINDIR]/Demo/a.spc\n");
    }
}

TEST(EnvironmentStart, FirstLineOfExactly1023CharactersIsAccepted) {
    ScratchDir work;
    const std::string dir = "/" + std::string(1022, 'd');  // names no directory: the repair finds nothing
    writeFile(work.file("Tarvex.cfg"), dir + "\n5\n");
    StartupFile file;
    ASSERT_EQ(file.read(work.file("Tarvex.cfg")), 1);
    EXPECT_EQ(file.installLine, dir);
    EXPECT_EQ(file.mark, 5);
}

TEST(EnvironmentStart, MarkZeroRepairsOnceAndBecomesOne) {
    Installation inst;
    const std::string dir = inst.install.path().string();
    inst.writeCfg(dir + "\n0\n");
    const std::string delivered =
        "3\nx1\n[MAINDIR]/Demo/ishigami.spc\n  keep [this] line\nstuff [MAINDIR]/Demo/b.sam tail\n";
    inst.writeAllDemos(delivered);

    Environment env;
    EnvironmentStart start;
    ASSERT_EQ(startIn(inst, env, nullptr, &start), 1);
    EXPECT_EQ(start.repaired, 1);
    EXPECT_EQ(inst.cfg(), dir + "\n1\n");
    // Placeholder lines take MainDir plus what follows the first ']'; other lines stay;
    // the file gains exactly one empty line at its end.
    const std::string expected = "3\nx1\n" + dir + "/Demo/ishigami.spc\n  keep [this] line\n" + dir +
                                 "/Demo/b.sam tail\n\n";
    for (const char* name : DemoRepair::kCaseNames) {
        EXPECT_EQ(readFile(inst.dem(name)), expected) << name;
        EXPECT_FALSE(fs::exists(inst.install.path() / "Demo" / (std::string(name) + "2.dem"))) << name;
    }

    // The second start finds the mark 1: no repair, no further empty line.
    ASSERT_EQ(startIn(inst, env, nullptr, &start), 1);
    EXPECT_EQ(start.repaired, 0);
    EXPECT_EQ(inst.cfg(), dir + "\n1\n");
    EXPECT_EQ(readFile(inst.dem("Ishigami")), expected);
}

// The mark after the directory line: a number other than 0 keeps the files as
// they are (the file written back with plain line ends); 0, no number or an
// unreadable one repairs them and becomes 1.
TEST(EnvironmentStart, MarkDecidesTheRepair) {
    struct Case {
        const char* after;  // what follows the directory on its line
        bool repaired;
        const char* written;  // what follows the directory in the file written back
    };
    const Case cases[] = {
        {"\n7\n", false, "\n7\n"},        {"\r\n-3\r\n", false, "\n-3\n"},
        {"\nabc\n", true, "\n1\n"},       {"\n", true, "\n1\n"},
        {"\n99999999999\n", true, "\n1\n"},
    };
    for (const Case& c : cases) {
        Installation inst;
        const std::string dir = inst.install.path().string();
        inst.writeCfg(dir + c.after);
        writeFile(inst.dem("linear"), "[MAINDIR]/Demo/l.spc\n");
        Environment env;
        EnvironmentStart start;
        ASSERT_EQ(startIn(inst, env, nullptr, &start), 1) << c.after;
        EXPECT_EQ(env.mainDir(), dir);
        EXPECT_EQ(start.repaired, c.repaired ? 1 : 0) << c.after;
        EXPECT_EQ(readFile(inst.dem("linear")), c.repaired ? dir + "/Demo/l.spc\n\n" : "[MAINDIR]/Demo/l.spc\n") << c.after;
        EXPECT_EQ(inst.cfg(), dir + c.written) << c.after;
    }
}

TEST(EnvironmentStart, RelativeInstallationDirectoryIsResolvedAgainstTheStartDirectory) {
    ScratchDir work;
    fs::create_directories(work.path() / "inst" / "Demo");
    writeFile(work.file("Tarvex.cfg"), "inst/\n0\n");
    writeFile(work.file("inst/Demo/sobolG3.dem"), "[MAINDIR]/Demo/g3.spc\n");
    Environment env;
    {
        CurrentDirGuard here(work.path());
        EnvironmentStart start;
        std::ostringstream err;
        ASSERT_EQ(start.run(err, env), 1);
    }
    const std::string abs = (work.path() / "inst").string();
    EXPECT_EQ(env.mainDir(), abs);
    EXPECT_EQ(readFile(work.file("inst/Demo/sobolG3.dem")), abs + "/Demo/g3.spc\n\n");
    // The directory line is written back as the user gave it.
    EXPECT_EQ(readFile(work.file("Tarvex.cfg")), "inst/\n1\n");
}

TEST(EnvironmentStart, PanelSearchPathInOrder) {
    Environment env;
    env.setMainDir("/opt/tarvex/");
    EXPECT_EQ(env.mainDir(), "/opt/tarvex");
    const std::vector<std::string> expected = {"/opt/tarvex/Preprocessor/PrepPanels", "/opt/tarvex/Tarvex/TarvexPanels",
                                               "/opt/tarvex/Postprocessor/VelsPanels", "/opt/tarvex/ILOG"};
    EXPECT_EQ(env.panelSearchPath(), expected);
    EXPECT_EQ(env.configDatPath(), "/opt/tarvex/config.dat");
    EXPECT_EQ(env.launchRequestPath(), "/opt/tarvex/Tarvex.ini");
}

TEST(DemoRepair, MissingDemFileBecomesEmptyAndIshigamiKeepsItsCapital) {
    Installation inst;
    const std::string dir = inst.install.path().string();
    writeFile(inst.dem("levelE"), "[MAINDIR]/Demo/levelE.sam\n");
    // A lower-case ishigami.dem is not the repair's file: Ishigami.dem appears empty
    // beside it and the other stays as it was.
    writeFile(inst.dem("ishigami"), "[MAINDIR]/lower\n");
    DemoRepair::repairAll(dir);
    EXPECT_EQ(readFile(inst.dem("levelE")), dir + "/Demo/levelE.sam\n\n");
    for (const char* name : {"Ishigami", "linear", "sobolG0", "sobolG1", "sobolG2", "sobolG3"}) {
        ASSERT_TRUE(fs::exists(inst.dem(name))) << name;
        EXPECT_EQ(fs::file_size(inst.dem(name)), 0u) << name;
    }
    EXPECT_EQ(readFile(inst.dem("ishigami")), "[MAINDIR]/lower\n");
    // Exactly the seven files and the stray one; no temporary file stays.
    EXPECT_EQ(std::distance(fs::directory_iterator(inst.install.path() / "Demo"), fs::directory_iterator()), 8);
}

TEST(DemoRepair, LineAndFileEndRules) {
    EXPECT_EQ(DemoRepair::repairLine("[MAINDIR]/Demo/ishigami.spc", "/x"), "/x/Demo/ishigami.spc");
    EXPECT_EQ(DemoRepair::repairLine("a]b MAINDIR c]d", "/x"), "/xb MAINDIR c]d");  // the first ']' anywhere
    EXPECT_EQ(DemoRepair::repairLine("MAINDIR without bracket", "/x"), "MAINDIR without bracket");
    EXPECT_EQ(DemoRepair::repairLine("maindir]/lower case", "/x"), "maindir]/lower case");
    EXPECT_EQ(DemoRepair::repairLine("", "/x"), "");

    ScratchDir inst;
    fs::create_directories(inst.path() / "Demo");
    const std::string dir = inst.path().string();
    const auto repaired = [&](const std::string& content) {
        writeFile(inst.file("Demo/sobolG1.dem"), content);
        EXPECT_EQ(DemoRepair::repairFile(dir, "sobolG1"), 1);
        return readFile(inst.file("Demo/sobolG1.dem"));
    };
    EXPECT_EQ(repaired("a\nb\n"), "a\nb\n\n");
    EXPECT_EQ(repaired("a\nb"), "a\nb\n");  // no final line end: the last read ends the file
    EXPECT_EQ(repaired(""), "\n");
    EXPECT_EQ(repaired("[MAINDIR]/a\r\n"), dir + "/a\r\n\n");  // bytes behind ']' kept as they are
    const std::string longLine(5000, 'q');
    EXPECT_EQ(repaired(longLine + "\n[MAINDIR]/z\n"), longLine + "\n" + dir + "/z\n\n");
}

TEST(DemoRepair, WithoutDemoDirectoryNothingIsWritten) {
    ScratchDir inst;
    DemoRepair::repairAll(inst.path().string());
    EXPECT_TRUE(fs::is_empty(inst.path()));
}
