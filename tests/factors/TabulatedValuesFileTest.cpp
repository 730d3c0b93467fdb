// Tabulated values files of the Discrete, Uniform and LogUniform panels.
#include <gtest/gtest.h>

#include <sstream>
#include <sys/stat.h>

#include "TestSupport.h"
#include "factors/Discrete.h"
#include "factors/TabulatedValuesFile.h"
#include "factors/Uniform.h"

namespace tarvex {
namespace {

TEST(TabulatedValues, WritesAndReadsBothKinds) {
    test::ScratchDir dir;
    std::string err;
    std::vector<TabulatedRow> rows{{0.5, 1.5, 0.25}, {1.5, 2.123456789, 0.75}};
    const std::string intervals = dir.file("u.fac");
    ASSERT_EQ(saveTabulatedValues(intervals, TabulatedKind::Intervals, rows, err), 1);
    EXPECT_EQ(test::readFile(intervals), "2\n0.5\t1.5\t0.25\n1.5\t2.12346\t0.75\n");
    std::vector<TabulatedRow> back;
    ASSERT_EQ(loadTabulatedValues(intervals, TabulatedKind::Intervals, back, err), 1);
    ASSERT_EQ(back.size(), 2u);
    EXPECT_EQ(back[1].right, 2.12346);
    EXPECT_EQ(back[1].weight, 0.75);

    const std::string points = dir.file("d.fac");
    ASSERT_EQ(saveTabulatedValues(points, TabulatedKind::Points, tabulatedRows(Discrete()), err), 1);
    EXPECT_EQ(test::readFile(points), "2\n0\t0.5\n1\t0.5\n");
    ASSERT_EQ(loadTabulatedValues(points, TabulatedKind::Points, back, err), 1);
    ASSERT_EQ(back.size(), 2u);
    EXPECT_EQ(back[1].left, 1.0);
    EXPECT_EQ(back[1].right, 2.0);
    EXPECT_EQ(back[1].weight, 0.5);

    // Rows of a factor, read in free white space.
    EXPECT_EQ(tabulatedRows(Uniform()).size(), 1u);
    std::istringstream in("1   3 4\n   0.5");
    ASSERT_EQ(readTabulatedValues(in, TabulatedKind::Intervals, back), 1);
    EXPECT_EQ(back[0].right, 4.0);
}

TEST(TabulatedValues, FailuresKeepRowsAndFiles) {
    test::ScratchDir dir;
    std::string err;
    std::vector<TabulatedRow> rows{{7, 8, 1}};
    EXPECT_EQ(loadTabulatedValues(dir.file("missing"), TabulatedKind::Points, rows, err), 0);
    EXPECT_EQ(err, "Error opening tabulated values file");

    for (const char* bad : {"", "x\n", "-1\n", "3\n1\t0.5\n2\t0.5\n", "2\n1\tw\n"}) {
        test::writeFile(dir.file("bad"), bad);
        err.clear();
        EXPECT_EQ(loadTabulatedValues(dir.file("bad"), TabulatedKind::Points, rows, err), 0) << bad;
        EXPECT_EQ(err, "Error reading tabulated values file");
        ASSERT_EQ(rows.size(), 1u);
        EXPECT_EQ(rows[0].left, 7.0);
    }

    EXPECT_EQ(saveTabulatedValues(dir.file("no/such/dir/t.fac"), TabulatedKind::Points, rows, err), 0);
    EXPECT_EQ(err, "Error opening saving file");
    // A file the user may not write keeps its content.
    const std::string locked = dir.file("locked.fac");
    test::writeFile(locked, "old");
    ::chmod(locked.c_str(), 0444);
    if (::access(locked.c_str(), W_OK) != 0) {  // not when the tests run as root
        EXPECT_EQ(saveTabulatedValues(locked, TabulatedKind::Points, rows, err), 0);
        EXPECT_EQ(err, "Error opening saving file");
        EXPECT_EQ(test::readFile(locked), "old");
    }
    // A full device fails while writing.
    if (::access("/dev/full", W_OK) == 0) {
        std::vector<TabulatedRow> many(5000, TabulatedRow{1.25, 2.5, 0.125});
        EXPECT_EQ(saveTabulatedValues("/dev/full", TabulatedKind::Intervals, many, err), 0);
        EXPECT_EQ(err, "Error writing tabulated values file");
    }
}

} // namespace
} // namespace tarvex
