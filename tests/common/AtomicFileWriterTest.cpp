// Saves that fail midway leave the former file as it was; links and devices
// are written through; permissions survive a replacement.
#include <gtest/gtest.h>

#include <filesystem>
#include <ostream>
#include <sys/stat.h>

#include "TestSupport.h"
#include "common/AtomicFileWriter.h"

namespace tarvex {
namespace {

namespace fs = std::filesystem;

std::size_t entriesIn(const fs::path& dir) {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(dir), fs::directory_iterator()));
}

TEST(AtomicFileWriter, AFailureAtAnyByteLeavesTheFormerFile) {
    test::ScratchDir dir;
    const std::string path = dir.file("data.txt");
    test::writeFile(path, "former\n");
    ::chmod(path.c_str(), 0640);
    const std::string text(200000, 'n');  // several buffers' worth
    const auto writer = [&text](std::ostream& out) { out << text; };
    for (int64_t bytes : {int64_t{0}, int64_t{1}, int64_t{65536}, int64_t{199999}}) {
        ScopedWriteFailure failure(bytes);
        EXPECT_EQ(writeFileAtomically(path, writer), WriteOutcome::WriteFailed) << bytes;
        EXPECT_EQ(test::readFile(path), "former\n") << bytes;
        EXPECT_EQ(entriesIn(dir.path()), 1u) << "no temporary file is left";
    }
    {
        ScopedWriteFailure enough(200000);
        EXPECT_EQ(writeFileAtomically(path, writer), WriteOutcome::Written);
    }
    EXPECT_EQ(test::readFile(path), text);
    struct stat st {};
    ASSERT_EQ(::stat(path.c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0640u);

    // A writer that fails its stream fails the save.
    EXPECT_EQ(saveFileAtomically(path, [](std::ostream& out) { out.setstate(std::ios::badbit); }), 0);
    EXPECT_EQ(test::readFile(path), text);
}

TEST(AtomicFileWriter, LinksAndDevicesStayWhatTheyAre) {
    test::ScratchDir dir;
    const std::string target = dir.file("target.txt");
    const std::string link = dir.file("link.txt");
    test::writeFile(target, "old");
    fs::create_symlink(target, link);
    EXPECT_EQ(saveFileAtomically(link, [](std::ostream& out) { out << "new"; }), 1);
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(test::readFile(target), "new");

    EXPECT_EQ(saveFileAtomically("/dev/null", [](std::ostream& out) { out << "gone"; }), 1);
    EXPECT_TRUE(fs::is_character_file("/dev/null"));

    // A directory, or a directory that is not there, is not a file to save.
    EXPECT_EQ(writeFileAtomically(dir.path().string(), [](std::ostream&) {}), WriteOutcome::OpenFailed);
    EXPECT_EQ(writeFileAtomically(dir.file("missing/x.txt"), [](std::ostream&) {}), WriteOutcome::OpenFailed);
}

}  // namespace
}  // namespace tarvex
