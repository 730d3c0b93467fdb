// The four remembered directories: setters that move the current directory, and
// config.dat read when its holder is made and written when it goes.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "TestSupport.h"
#include "app/ConfigDatFile.h"
#include "common/Environment.h"
#include "common/RememberedDirectories.h"

namespace fs = std::filesystem;
using tarvex::ConfigDatFile;
using tarvex::Environment;
using tarvex::RememberedDirectories;
using tarvex::test::CurrentDirGuard;
using tarvex::test::readFile;
using tarvex::test::ScratchDir;
using tarvex::test::writeFile;

namespace {

// An installation plus four existing directories a..d.
struct Tree {
    ScratchDir install;
    ScratchDir dirs;
    Environment env;
    Tree() {
        for (const char* d : {"a", "b", "c", "d"}) fs::create_directories(dirs.path() / d);
        env.setMainDir(install.path().string());
    }
    std::string dir(const char* name) const { return dirs.file(name); }
};

// Prep, Vels, Model and ModelOutput in file order, "-" for one not set.
std::vector<std::string> remembered(const RememberedDirectories& d) {
    std::vector<std::string> all;
    for (int i = 0; i < RememberedDirectories::kCount; ++i) {
        const auto which = static_cast<RememberedDirectories::Which>(i);
        all.push_back(d.isSet(which) ? d.get(which) : "-");
    }
    return all;
}

using Strings = std::vector<std::string>;

}  // namespace

TEST(RememberedDirectories, SetterMovesTheCurrentDirectoryOrChangesNothing) {
    Tree t;
    CurrentDirGuard guard(fs::current_path());
    RememberedDirectories dirs;
    EXPECT_FALSE(dirs.isSet(RememberedDirectories::Prep));

    EXPECT_EQ(dirs.setPrepDirectory(t.dir("a")), 1);
    EXPECT_EQ(dirs.prepDirectory(), t.dir("a"));
    EXPECT_EQ(fs::current_path(), fs::path(t.dir("a")));

    // A missing directory, a file and an empty text fail: value and current directory stay.
    writeFile(t.dirs.file("file.txt"), "x");
    for (const std::string& bad : {t.dir("gone"), t.dirs.file("file.txt"), std::string("")}) {
        EXPECT_EQ(dirs.setPrepDirectory(bad), 0) << bad;
        EXPECT_EQ(dirs.prepDirectory(), t.dir("a"));
        EXPECT_EQ(fs::current_path(), fs::path(t.dir("a")));
    }

    // A relative text is resolved against the current directory and kept as given.
    EXPECT_EQ(dirs.setVelsDirectory("../b"), 1);
    EXPECT_EQ(dirs.velsDirectory(), "../b");
    EXPECT_EQ(fs::current_path(), fs::path(t.dir("b")));
    EXPECT_EQ(dirs.prepDirectory(), t.dir("a"));
}

TEST(ConfigDat, RoundTripWithNullAsEmptyLineAndOneExtraEmptyLine) {
    Tree t;
    CurrentDirGuard guard(fs::current_path());
    ASSERT_EQ(t.env.directories().setPrepDirectory(t.dir("a")), 1);
    ASSERT_EQ(t.env.directories().setModelOutputDirectory(t.dir("d")), 1);
    const std::string path = t.env.configDatPath();
    ASSERT_EQ(ConfigDatFile::write(path, t.env.directories()), 1);
    EXPECT_EQ(readFile(path), t.dir("a") + "\n\n\n" + t.dir("d") + "\n\n");

    RememberedDirectories back;
    ASSERT_EQ(ConfigDatFile::read(path, back), 1);
    EXPECT_EQ(remembered(back), (Strings{t.dir("a"), "-", "-", t.dir("d")}));
    // The current directory is the last listed one that exists.
    EXPECT_EQ(fs::current_path(), fs::path(t.dir("d")));
}

TEST(ConfigDat, ReadAtConstructionWrittenAtDestruction) {
    Tree t;
    CurrentDirGuard guard(fs::current_path());
    writeFile(t.env.configDatPath(), t.dir("a") + "\n" + t.dir("b") + "\n" + t.dir("c") + "\n" + t.dir("d") + "\n\n");
    {
        ConfigDatFile holder(t.env);
        EXPECT_EQ(remembered(t.env.directories()), (Strings{t.dir("a"), t.dir("b"), t.dir("c"), t.dir("d")}));
        EXPECT_EQ(fs::current_path(), fs::path(t.dir("d")));
        ASSERT_EQ(t.env.directories().setVelsDirectory(t.dir("c")), 1);
        writeFile(t.env.configDatPath(), "overwritten when the holder goes\n");
    }
    EXPECT_EQ(readFile(t.env.configDatPath()),
              t.dir("a") + "\n" + t.dir("c") + "\n" + t.dir("c") + "\n" + t.dir("d") + "\n\n");
}

TEST(ConfigDat, ShortFileSetsWhatIsThereAndNothingElse) {
    Tree t;
    CurrentDirGuard guard(fs::current_path());
    ASSERT_EQ(t.env.directories().setModelDirectory(t.dir("c")), 1);  // set earlier in the run
    writeFile(t.env.configDatPath(), t.dir("a") + "\n" + t.dir("b"));  // two lines, no final line end
    { ConfigDatFile holder(t.env); }
    EXPECT_EQ(remembered(t.env.directories()), (Strings{t.dir("a"), t.dir("b"), t.dir("c"), "-"}));
    EXPECT_EQ(readFile(t.env.configDatPath()), t.dir("a") + "\n" + t.dir("b") + "\n" + t.dir("c") + "\n\n\n");
}

TEST(ConfigDat, VanishedDirectoriesStayNullAndTheRestApply) {
    Tree t;
    CurrentDirGuard guard(fs::current_path());
    writeFile(t.env.configDatPath(), t.dir("a") + "\n" + t.dir("gone") + "\n" + t.dir("c") + "\n" + t.dir("gone2") + "\n\n");
    { ConfigDatFile holder(t.env); }
    EXPECT_EQ(remembered(t.env.directories()), (Strings{t.dir("a"), "-", t.dir("c"), "-"}));
    EXPECT_EQ(fs::current_path(), fs::path(t.dir("c")));
    EXPECT_EQ(readFile(t.env.configDatPath()), t.dir("a") + "\n\n" + t.dir("c") + "\n\n\n");
}

TEST(ConfigDat, MissingFileLeavesTheDirectoriesNullAndIsWrittenAtTheEnd) {
    Tree t;
    const fs::path before = fs::current_path();
    {
        ConfigDatFile holder(t.env);
        EXPECT_EQ(remembered(t.env.directories()), Strings(4, "-"));
        EXPECT_EQ(fs::current_path(), before);
    }
    EXPECT_EQ(readFile(t.env.configDatPath()), "\n\n\n\n\n");
}

TEST(ConfigDat, OverLongLineStopsTheReading) {
    Tree t;
    CurrentDirGuard guard(fs::current_path());
    // An over-long line that is nevertheless a real directory: it is not applied, and
    // neither is anything after it.
    std::string deep = t.dirs.path().string();
    while (deep.size() <= 1100) deep += "/dddddddddddddddddddddddddddddddddddddddd";
    fs::create_directories(deep);
    writeFile(t.env.configDatPath(), t.dir("a") + "\n" + deep + "\n" + t.dir("c") + "\n" + t.dir("d") + "\n\n");
    { ConfigDatFile holder(t.env); }
    EXPECT_EQ(remembered(t.env.directories()), (Strings{t.dir("a"), "-", "-", "-"}));
    EXPECT_EQ(fs::current_path(), fs::path(t.dir("a")));
}

TEST(ConfigDat, WithoutInstallationDirectoryNothingIsReadOrWritten) {
    Environment env;  // MainDir never set
    const fs::path before = fs::current_path();
    { ConfigDatFile holder(env); }
    EXPECT_FALSE(fs::exists("/config.dat"));
    EXPECT_EQ(fs::current_path(), before);
}
