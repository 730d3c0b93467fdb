// The store's interface: sizes, failures with their texts, modes, copies and
// its working file.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <memory>
#include <regex>
#include <set>
#include <vector>

#include "TestSupport.h"
#include "common/WorkingFile.h"
#include "sampling/sampValues.h"

namespace tarvex {
namespace {

namespace fs = std::filesystem;

// Sets or unsets environment variables for one test and puts them back.
class EnvGuard {
public:
    void set(const char* name, const char* value) {
        remember(name);
        if (value) ::setenv(name, value, 1);
        else ::unsetenv(name);
    }
    ~EnvGuard() {
        for (auto it = saved_.rbegin(); it != saved_.rend(); ++it) {
            if (it->second) ::setenv(it->first.c_str(), it->second->c_str(), 1);
            else ::unsetenv(it->first.c_str());
        }
    }

private:
    void remember(const char* name) {
        const char* old = std::getenv(name);
        saved_.emplace_back(name, old ? std::optional<std::string>(old) : std::nullopt);
    }
    std::vector<std::pair<std::string, std::optional<std::string>>> saved_;
};

std::vector<double> rowOf(double base, int32_t columns) {
    std::vector<double> row(static_cast<size_t>(columns));
    for (int32_t c = 0; c < columns; ++c) row[size_t(c)] = base + c / 8.0;
    return row;
}

TEST(SampValuesAllocate, SizesAndBlockRows) {
    sampValues store;
    EXPECT_EQ(store.columnCount(), 0);
    EXPECT_EQ(store.errorText(), "No errors");
    EXPECT_EQ(store.cacheLimit(), 262144);
    ASSERT_EQ(store.allocate(1), 1);
    EXPECT_EQ(store.blockRows(), 262145);
    EXPECT_EQ(store.columnMode(), 0);

    sampValues twenty;
    ASSERT_EQ(twenty.allocate(20), 1);
    EXPECT_EQ(twenty.blockRows(), 13108);

    sampValues exact;
    ASSERT_EQ(exact.allocate(262144), 1);
    EXPECT_EQ(exact.blockRows(), 2);

    sampValues wide;
    ASSERT_EQ(wide.allocate(262145), 1);
    EXPECT_EQ(wide.blockRows(), 1);
    sampValues wider;
    ASSERT_EQ(wider.allocate(1000000), 1);
    EXPECT_EQ(wider.blockRows(), 1);
}

// A small sample keeps a small file; rows written before the first block
// reached its full length read back after it, by row and by column.
TEST(SampValuesAllocate, FirstBlockGrowsWithTheSample) {
    sampValues store(1000);  // full blocks of 334 rows at 3 columns
    ASSERT_EQ(store.allocate(3), 1);
    for (int r = 0; r < 40; ++r) ASSERT_EQ(store.addRow(rowOf(r, 3).data()), r + 1);
    const sampValues copy(store);  // flushes the window to the file
    EXPECT_LE(std::filesystem::file_size(store.workingFileName()), 64u * 3u * sizeof(double));
    for (int r = 40; r < 700; ++r) ASSERT_EQ(store.addRow(rowOf(r, 3).data()), r + 1);
    double x = 0;
    for (int r = 0; r < 700; r += 13) {
        ASSERT_EQ(store.getColumnValue(r, 2, &x), 1);
        EXPECT_EQ(x, r + 0.25);
    }
    for (int r = 0; r < 700; r += 17) {
        ASSERT_EQ(store.getValue(r, 1, &x), 1);
        EXPECT_EQ(x, r + 0.125);
    }
    ASSERT_EQ(copy.rowCount(), 40);
}

TEST(SampValuesAllocate, FewerThanOneColumnOrTwiceFailsUntilCleared) {
    sampValues store;
    for (const int32_t columns : {0, -4}) {
        EXPECT_EQ(store.allocate(columns), 0);
        EXPECT_EQ(store.errorText(), "Invalid number of factors");
    }
    EXPECT_EQ(store.columnCount(), 0);
    EXPECT_EQ(store.addRow(rowOf(0.0, 2).data()), 0);
    EXPECT_EQ(store.rowCount(), 0);

    ASSERT_EQ(store.allocate(3), 1);
    const auto row = rowOf(1.0, 3);
    ASSERT_EQ(store.addRow(row.data()), 1);

    EXPECT_EQ(store.allocate(5), 0);
    EXPECT_EQ(store.errorText(), "Column number already set. Can't allocate a new sampValues.");
    EXPECT_EQ(store.columnCount(), 3);
    EXPECT_EQ(store.rowCount(), 1);
    double x = 0;
    ASSERT_EQ(store.getValue(0, 2, &x), 1);
    EXPECT_EQ(x, 1.25);

    ASSERT_EQ(store.clear(), 1);
    EXPECT_EQ(store.errorText(), "No errors");
    EXPECT_EQ(store.rowCount(), 0);
    EXPECT_EQ(store.columnCount(), 0);
    ASSERT_EQ(store.allocate(5), 1);
    EXPECT_EQ(store.columnCount(), 5);
    EXPECT_EQ(store.blockRows(), 262144 / 5 + 1);
}


// Every refused position leaves values, counts and the current mode alone.
TEST(SampValuesFailures, PositionsOutsideTheTable) {
    sampValues store(8);
    ASSERT_EQ(store.allocate(2), 1);
    for (int i = 0; i < 10; ++i) {
        const auto row = rowOf(i, 2);
        ASSERT_EQ(store.addRow(row.data()), i + 1);
    }
    double x = 99;
    std::vector<double> buffer(2, 99.0);
    ASSERT_EQ(store.setColumnMode(1), 1);

    const char* const modify = "Wrong element position to modify";
    const char* const element = "Wrong element position.";
    const char* const line = "Wrong line position.";
    auto check = [&](int result, const char* text, int lineNo) {
        EXPECT_EQ(result, 0) << "line " << lineNo;
        EXPECT_EQ(store.errorText(), text) << "line " << lineNo;
    };
    // Consecutive cases have different texts, so each one must set its own.
    check(store.setValue(10, 0, 1.0), modify, __LINE__);
    check(store.getValue(10, 0, &x), element, __LINE__);
    check(store.setValue(-1, 0, 1.0), modify, __LINE__);
    check(store.setRow(10, buffer.data()), line, __LINE__);
    check(store.setValue(0, 2, 1.0), modify, __LINE__);
    check(store.getValue(0, 2, &x), element, __LINE__);
    check(store.setValue(0, -1, 1.0), modify, __LINE__);
    check(store.getValue(-1, 0, &x), element, __LINE__);
    check(store.setRow(-1, buffer.data()), line, __LINE__);
    check(store.setColumnValue(10, 0, 1.0), element, __LINE__);
    check(store.getRow(10, buffer.data()), line, __LINE__);
    check(store.setColumnValue(0, 2, 1.0), element, __LINE__);
    check(store.getRow(-3, buffer.data()), line, __LINE__);
    check(store.getColumnValue(-1, 0, &x), element, __LINE__);
    check(store.setValue(3, 7, 0.0), modify, __LINE__);
    check(store.getColumnValue(0, -1, &x), element, __LINE__);
    EXPECT_EQ(store.rowPointer(10), nullptr);
    EXPECT_EQ(store.errorText(), "Wrong line position.");
    EXPECT_EQ(store.rowPointer(-1), nullptr);
    EXPECT_EQ(x, 99);
    EXPECT_EQ(buffer, std::vector<double>(2, 99.0));
    EXPECT_EQ(store.columnMode(), 1) << "a refused row access must not switch modes";
    EXPECT_EQ(store.rowCount(), 10);
    for (int32_t r = 0; r < 10; ++r) {
        ASSERT_EQ(store.getRow(r, buffer.data()), 1);
        EXPECT_EQ(buffer, rowOf(r, 2));
    }
    EXPECT_EQ(store.errorText(), line) << "a success keeps the last error";
}

TEST(SampValuesOrder, OnlyZeroOrOne) {
    sampValues store;
    EXPECT_EQ(store.order(), 0);
    EXPECT_EQ(store.setOrder(1), 1);
    EXPECT_EQ(store.order(), 1);
    EXPECT_EQ(store.setOrder(2), 0);
    EXPECT_EQ(store.setOrder(-1), 0);
    EXPECT_EQ(store.order(), 1);
    EXPECT_EQ(store.errorText(), "No errors");
    EXPECT_EQ(store.setColumnMode(3), 0);
}

TEST(SampValuesModes, SwitchByThemselves) {
    sampValues store(16);
    ASSERT_EQ(store.allocate(3), 1);
    for (int i = 0; i < 40; ++i) ASSERT_NE(store.addRow(rowOf(i, 3).data()), 0);
    double x = 0;
    ASSERT_EQ(store.getColumnValue(39, 1, &x), 1);
    EXPECT_EQ(x, 39.125);
    EXPECT_EQ(store.columnMode(), 1);
    ASSERT_EQ(store.setColumnValue(3, 2, -1.0), 1);
    ASSERT_EQ(store.getValue(3, 2, &x), 1);
    EXPECT_EQ(x, -1.0);
    EXPECT_EQ(store.columnMode(), 0);
    double* p = store.rowPointer(17);
    ASSERT_NE(p, nullptr);
    p[0] = 1700.0;
    ASSERT_EQ(store.getColumnValue(17, 0, &x), 1) << "a write through rowPointer reaches the columns";
    EXPECT_EQ(x, 1700.0);

    // A copy and a fresh allocation start in row mode; the source keeps its mode.
    sampValues copy(store);
    EXPECT_EQ(store.columnMode(), 1);
    EXPECT_EQ(copy.columnMode(), 0);
    ASSERT_EQ(copy.getValue(17, 0, &x), 1);
    EXPECT_EQ(x, 1700.0);
    store.clear();
    EXPECT_EQ(store.columnMode(), 0);
}

TEST(SampValuesCopies, AssignCopiesOrderAndRowsAndStaysIndependent) {
    sampValues source(16);
    ASSERT_EQ(source.allocate(4), 1);
    ASSERT_EQ(source.setOrder(1), 1);
    for (int i = 0; i < 30; ++i) ASSERT_NE(source.addRow(rowOf(i, 4).data()), 0);
    ASSERT_EQ(source.setColumnValue(29, 3, 7.5), 1);  // dirty column window at copy time

    sampValues target;  // other window size: takes the source's
    ASSERT_EQ(target.allocate(2), 1);
    ASSERT_NE(target.addRow(rowOf(100, 2).data()), 0);
    ASSERT_EQ(target.assign(source), 1);
    EXPECT_EQ(target.order(), 1);
    EXPECT_EQ(target.rowCount(), 30);
    EXPECT_EQ(target.columnCount(), 4);
    EXPECT_EQ(target.blockRows(), source.blockRows());
    double x = 0;
    ASSERT_EQ(target.getValue(29, 3, &x), 1);
    EXPECT_EQ(x, 7.5);

    ASSERT_EQ(target.setValue(0, 0, -5.0), 1);
    ASSERT_EQ(source.getValue(0, 0, &x), 1);
    EXPECT_EQ(x, 0.0);
    ASSERT_EQ(source.setValue(1, 1, -6.0), 1);
    ASSERT_EQ(target.getValue(1, 1, &x), 1);
    EXPECT_EQ(x, 1.125);

    EXPECT_EQ(target.assign(target), 1);
    EXPECT_EQ(target.rowCount(), 30);

    sampValues empty;
    target = empty;
    EXPECT_EQ(target.rowCount(), 0);
    EXPECT_EQ(target.columnCount(), 0);
    EXPECT_EQ(target.order(), 0);
}

TEST(SampValuesCopies, MoveHandsOverTheFile) {
    test::ScratchDir dir;
    EnvGuard env;
    env.set("TEMP", dir.path().c_str());
    sampValues source(16);
    ASSERT_EQ(source.allocate(3), 1);
    for (int i = 0; i < 50; ++i) ASSERT_NE(source.addRow(rowOf(i, 3).data()), 0);
    ASSERT_EQ(source.setColumnValue(49, 2, -3.0), 1);  // still only in the column window
    const std::string file = source.workingFileName();

    sampValues moved(std::move(source));
    EXPECT_EQ(moved.workingFileName(), file);
    EXPECT_EQ(moved.rowCount(), 50);
    double x = 0;
    ASSERT_EQ(moved.getValue(49, 2, &x), 1);
    EXPECT_EQ(x, -3.0);
    ASSERT_EQ(moved.getValue(20, 1, &x), 1);
    EXPECT_EQ(x, 20.125);

    // The moved-from store is empty and usable; it makes a file of its own.
    EXPECT_EQ(source.rowCount(), 0);
    EXPECT_EQ(source.columnCount(), 0);
    ASSERT_EQ(source.allocate(1), 1);
    for (int i = 0; i < 40; ++i) {
        const double v = i;
        ASSERT_EQ(source.addRow(&v), i + 1);
    }
    EXPECT_NE(source.workingFileName(), file);
    ASSERT_EQ(source.getValue(3, 0, &x), 1);
    EXPECT_EQ(x, 3.0);

    const std::string other = source.workingFileName();
    moved = std::move(source);  // the target's old file goes away
    EXPECT_FALSE(fs::exists(file));
    EXPECT_EQ(moved.workingFileName(), other);
    ASSERT_EQ(moved.getValue(39, 0, &x), 1);
    EXPECT_EQ(x, 39.0);
}

TEST(SampValuesFiles, OneFilePerStoreInTempRemovedWithIt) {
    test::ScratchDir dir;
    EnvGuard env;
    env.set("TEMP", dir.path().c_str());
    const std::regex pattern(R"(tmp\d{1,5}_\d{1,5}(_\d+)?\.data)");
    std::string first, second, copied;
    {
        sampValues a, b;
        ASSERT_EQ(a.allocate(2), 1);
        for (int i = 0; i < 300000; ++i) ASSERT_NE(a.addRow(rowOf(i, 2).data()), 0);  // spills to the file
        sampValues c(a);
        first = a.workingFileName();
        second = b.workingFileName();
        copied = c.workingFileName();
        for (const auto& name : {first, second, copied}) {
            EXPECT_EQ(fs::path(name).parent_path(), dir.path());
            EXPECT_TRUE(std::regex_match(fs::path(name).filename().string(), pattern)) << name;
            EXPECT_TRUE(fs::exists(name));
        }
        EXPECT_NE(first, second);
        EXPECT_NE(first, copied);
        EXPECT_NE(second, copied);
        EXPECT_GT(fs::file_size(first), 0u);
    }
    EXPECT_FALSE(fs::exists(first));
    EXPECT_FALSE(fs::exists(second));
    EXPECT_FALSE(fs::exists(copied));
    EXPECT_TRUE(fs::is_empty(dir.path()));
}

TEST(SampValuesFiles, TempThenTmpdirThenSlashTmp) {
    test::ScratchDir temp, tmpdir;
    EnvGuard env;
    env.set("TEMP", temp.path().c_str());
    env.set("TMPDIR", tmpdir.path().c_str());
    EXPECT_EQ(workingDirectory(), temp.path().string());
    env.set("TEMP", nullptr);
    EXPECT_EQ(workingDirectory(), tmpdir.path().string());
    {
        sampValues store;
        EXPECT_EQ(fs::path(store.workingFileName()).parent_path(), tmpdir.path());
    }
    env.set("TEMP", "");
    env.set("TMPDIR", nullptr);
    EXPECT_EQ(workingDirectory(), "/tmp");
}

TEST(SampValuesFiles, NamesTakenAreSkipped) {
    test::ScratchDir dir;
    EnvGuard env;
    env.set("TEMP", dir.path().c_str());
    std::vector<std::unique_ptr<sampValues>> stores;
    std::set<std::string> names;
    for (int i = 0; i < 50; ++i) {
        stores.push_back(std::make_unique<sampValues>());
        names.insert(stores.back()->workingFileName());
    }
    EXPECT_EQ(names.size(), 50u);
}

// Without a usable directory the store still works inside its window, and
// refuses, with the reason, whatever would have to reach the file.
TEST(SampValuesFiles, UnwritableDirectoryFailsCleanly) {
    test::ScratchDir dir;
    EnvGuard env;
    const std::string missing = (dir.path() / "no-such-dir").string();
    env.set("TEMP", missing.c_str());
    sampValues store(4);
    EXPECT_EQ(store.workingFileName(), "");
    ASSERT_EQ(store.allocate(1), 1);
    for (int i = 0; i < 5; ++i) {
        const double x = i;
        ASSERT_EQ(store.addRow(&x), i + 1);
    }
    const double six = 6;
    EXPECT_EQ(store.addRow(&six), 0);
    EXPECT_EQ(store.errorText(), "Cannot create a working file in " + missing + ": No such file or directory");
    EXPECT_EQ(store.rowCount(), 5);
    for (int32_t r = 0; r < 5; ++r) {
        double x = -1;
        ASSERT_EQ(store.getValue(r, 0, &x), 1);
        EXPECT_EQ(x, r);
    }
}

}  // namespace
}  // namespace tarvex
