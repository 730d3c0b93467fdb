// Starting the desktop program: the display check, and whole starts of the real
// executable in a scratch directory.
#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <optional>

#include "TestSupport.h"
#include "panels/TarvexApplication.h"

using namespace tarvex;
using namespace tarvex::test;
namespace fs = std::filesystem;

namespace {

// Sets or removes environment variables for the scope of a test.
class EnvGuard {
public:
    void set(const char* name, const char* value) {
        if (!saved_.count(name)) {
            const char* old = std::getenv(name);
            saved_[name] = old ? std::optional<std::string>(old) : std::nullopt;
        }
        if (value) setenv(name, value, 1);
        else unsetenv(name);
    }
    ~EnvGuard() {
        for (const auto& [name, value] : saved_) {
            if (value) setenv(name.c_str(), value->c_str(), 1);
            else unsetenv(name.c_str());
        }
    }

private:
    std::map<std::string, std::optional<std::string>> saved_;
};

bool available(std::vector<std::string> args) {
    args.insert(args.begin(), "tarvex");
    std::vector<char*> argv;
    for (std::string& a : args) argv.push_back(a.data());
    argv.push_back(nullptr);
    return TarvexApplication::displayAvailable(static_cast<int>(args.size()), argv.data());
}

TEST(DisplayCheck, FollowsThePlatformQtWouldChoose) {
    EnvGuard env;
    env.set("QT_QPA_PLATFORM", nullptr);
    env.set("DISPLAY", nullptr);
    env.set("WAYLAND_DISPLAY", nullptr);
    EXPECT_FALSE(available({}));                      // X11 by default, and no X display named
    env.set("DISPLAY", ":4711");                      // named but nothing listens there
    EXPECT_FALSE(available({}));
    EXPECT_FALSE(available({"-display", ":4712"}));
    env.set("QT_QPA_PLATFORM", "offscreen");
    EXPECT_TRUE(available({}));
    EXPECT_FALSE(available({"-platform", "xcb"}));    // the argument wins over the variable
    env.set("QT_QPA_PLATFORM", "xcb:dpi=96;offscreen");  // a list: the first that works
    EXPECT_TRUE(available({}));
    env.set("QT_QPA_PLATFORM", "wayland");
    EXPECT_FALSE(available({}));
    env.set("XDG_RUNTIME_DIR", "/nonexistent");
    env.set("WAYLAND_DISPLAY", "wayland-0");
    EXPECT_FALSE(available({}));
    env.set("QT_QPA_PLATFORM", "minimal");
    EXPECT_TRUE(available({}));
}

struct ProgramRun {
    int status = -1000;
    std::string err;
};

// Runs the staged program in `cwd` with exactly the environment given.
ProgramRun runTarvex(const fs::path& cwd, const std::vector<std::string>& env) {
    ProgramRun r;
    const fs::path errFile = cwd / ".stderr";
    const pid_t pid = fork();
    if (pid == 0) {
        if (chdir(cwd.c_str()) != 0) _exit(101);
        FILE* err = std::freopen(errFile.c_str(), "w", stderr);
        if (!err) _exit(102);
        std::vector<std::string> e = env;
        std::vector<char*> envp;
        for (std::string& s : e) envp.push_back(s.data());
        envp.push_back(nullptr);
        std::string program = TARVEX_PROGRAM;
        char* argv[] = {program.data(), nullptr};
        execve(program.c_str(), argv, envp.data());
        _exit(103);
    }
    int status = 0;
    waitpid(pid, &status, 0);
    if (WIFEXITED(status)) r.status = WEXITSTATUS(status);
    r.err = readFile(errFile.string());
    fs::remove(errFile);
    return r;
}

std::vector<std::string> baseEnv() {
    std::vector<std::string> env = {"PATH=/usr/bin:/bin", "HOME=/tmp", "XDG_RUNTIME_DIR=/tmp"};
    return env;
}

// A copy of the staged installation, so that a start may write into it.
fs::path copyInstallation(const ScratchDir& dir) {
    const fs::path inst = dir.path() / "inst";
    fs::copy(TARVEX_STAGE_DIR, inst, fs::copy_options::recursive);
    return inst;
}

std::vector<std::string> listing(const fs::path& dir) {
    std::vector<std::string> names;
    for (const auto& e : fs::recursive_directory_iterator(dir)) names.push_back(e.path().string());
    std::sort(names.begin(), names.end());
    return names;
}

TEST(ProgramStart, WithoutADisplayItEndsWithMinusOneAndTouchesNoFile) {
    ScratchDir dir;
    const fs::path inst = copyInstallation(dir);
    const std::string cfg = inst.string() + "\n0\n";
    writeFile(dir.file("Tarvex.cfg"), cfg);
    const auto before = listing(dir.path());
    const auto cfgTime = fs::last_write_time(dir.file("Tarvex.cfg"));

    ProgramRun r = runTarvex(dir.path(), baseEnv());  // no DISPLAY, no platform: X11 is missed
    EXPECT_EQ(r.status, 255);                  // -1
    EXPECT_EQ(r.err, "");
    EXPECT_EQ(readFile(dir.file("Tarvex.cfg")), cfg);
    EXPECT_EQ(fs::last_write_time(dir.file("Tarvex.cfg")), cfgTime);
    EXPECT_EQ(listing(dir.path()), before);

    auto env = baseEnv();
    env.push_back("DISPLAY=:4711");  // named, but no server: Qt would abort here
    r = runTarvex(dir.path(), env);
    EXPECT_EQ(r.status, 255);
    EXPECT_EQ(readFile(dir.file("Tarvex.cfg")), cfg);
    EXPECT_EQ(listing(dir.path()), before);
}

TEST(ProgramStart, WithoutTheStartupFileItSaysSoAndEndsWithZero) {
    ScratchDir dir;
    auto env = baseEnv();
    env.push_back("QT_QPA_PLATFORM=offscreen");
    ProgramRun r = runTarvex(dir.path(), env);
    EXPECT_EQ(r.status, 0);
    EXPECT_NE(r.err.find("    Error opening PrepVels configuration file.\n"
                         "Can't open PrepVels.cfg in the current directory.\n"
                         "\t Terminating."),
              std::string::npos)
        << r.err;
}

TEST(ProgramStart, AWholeStartShowsTheMainPanelAndEndsInOrder) {
    ScratchDir dir;
    const fs::path inst = copyInstallation(dir);
    writeFile(dir.file("Tarvex.cfg"), inst.string() + "\n0\n");
    auto env = baseEnv();
    env.push_back("QT_QPA_PLATFORM=offscreen");
    env.push_back("TARVEX_SCREENSHOT=" + dir.file("main.png"));
    ProgramRun r = runTarvex(dir.path(), env);
    EXPECT_EQ(r.status, 0) << r.err;
    // The mark moved to 1, config.dat was written when the panel went.
    EXPECT_EQ(readFile(dir.file("Tarvex.cfg")), inst.string() + "\n1\n");
    EXPECT_EQ(readFile((inst / "config.dat").string()), "\n\n\n\n\n");
    EXPECT_TRUE(fs::exists(dir.file("main.png")));
}

}  // namespace
