// The store against a plain in-memory table: random mixes of every access
// family, mode switches, copies and text round trips, for tables from one
// column to more columns than the window.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <sstream>
#include <vector>

#include "sampling/sampValues.h"

namespace tarvex {
namespace {

struct Model {
    int32_t columns = 0;
    std::vector<double> cells;
    int32_t rows() const { return columns ? int32_t(cells.size() / size_t(columns)) : 0; }
    double& at(int32_t r, int32_t c) { return cells[size_t(r) * size_t(columns) + size_t(c)]; }
};

bool sameBits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }

// Every cell by rows and by columns; reports the first difference only.
void expectSame(sampValues& store, Model& model, const char* where) {
    ASSERT_EQ(store.rowCount(), model.rows()) << where;
    ASSERT_EQ(store.columnCount(), model.columns) << where;
    std::vector<double> row(size_t(model.columns));
    for (int32_t r = 0; r < model.rows(); ++r) {
        ASSERT_EQ(store.getRow(r, row.data()), 1) << where;
        for (int32_t c = 0; c < model.columns; ++c)
            ASSERT_TRUE(sameBits(row[size_t(c)], model.at(r, c))) << where << " row pass at " << r << "," << c;
    }
    for (int32_t c = 0; c < model.columns; ++c)
        for (int32_t r = 0; r < model.rows(); ++r) {
            double x = -1;
            ASSERT_EQ(store.getColumnValue(r, c, &x), 1) << where;
            ASSERT_TRUE(sameBits(x, model.at(r, c))) << where << " column pass at " << r << "," << c;
        }
}

class Driver {
public:
    Driver(int32_t cacheLimit, int32_t columns, uint32_t seed) : store_(cacheLimit), random_(seed) {
        model_.columns = columns;
        EXPECT_EQ(store_.allocate(columns), 1);
    }

    double value() {
        // Full-precision doubles of varied magnitude and sign, never NaN.
        std::uniform_real_distribution<double> mantissa(-1.0, 1.0);
        std::uniform_int_distribution<int> exponent(-30, 30);
        return std::ldexp(mantissa(random_), exponent(random_));
    }
    int32_t pick(int32_t n) { return std::uniform_int_distribution<int32_t>(0, n - 1)(random_); }

    void appendRows(int32_t n) {
        std::vector<double> row(size_t(model_.columns));
        for (int32_t i = 0; i < n; ++i) {
            for (auto& x : row) x = value();
            model_.cells.insert(model_.cells.end(), row.begin(), row.end());
            ASSERT_EQ(store_.addRow(row.data()), model_.rows());
        }
    }

    // A row chosen so that accesses land both near and far from the last one.
    int32_t row() {
        if (model_.rows() == 0) return 0;
        if (pick(3) == 0) last_ = std::clamp(last_ + pick(9) - 4, 0, model_.rows() - 1);
        else last_ = pick(model_.rows());
        return last_;
    }

    void step() {
        const int32_t rows = model_.rows();
        const int32_t columns = model_.columns;
        std::vector<double> buffer(static_cast<size_t>(columns));
        switch (rows == 0 ? 0 : pick(14)) {
        case 0: appendRows(1 + pick(3)); break;
        case 1: {
            const int32_t r = row(), c = pick(columns);
            const double x = value();
            ASSERT_EQ(store_.setValue(r, c, x), 1);
            model_.at(r, c) = x;
            break;
        }
        case 2: {
            const int32_t r = row(), c = pick(columns);
            double x = 0;
            ASSERT_EQ(store_.getValue(r, c, &x), 1);
            ASSERT_TRUE(sameBits(x, model_.at(r, c))) << "getValue " << r << "," << c;
            break;
        }
        case 3: {
            const int32_t r = row();
            for (auto& x : buffer) x = value();
            ASSERT_EQ(store_.setRow(r, buffer.data()), 1);
            std::copy(buffer.begin(), buffer.end(), &model_.at(r, 0));
            break;
        }
        case 4: {
            const int32_t r = row();
            ASSERT_EQ(store_.getRow(r, buffer.data()), 1);
            for (int32_t c = 0; c < columns; ++c)
                ASSERT_TRUE(sameBits(buffer[size_t(c)], model_.at(r, c))) << "getRow " << r << "," << c;
            break;
        }
        case 5: {
            const int32_t r = row();
            double* p = store_.rowPointer(r);
            ASSERT_NE(p, nullptr);
            for (int32_t c = 0; c < columns; ++c) ASSERT_TRUE(sameBits(p[c], model_.at(r, c))) << "rowPointer";
            const int32_t c = pick(columns);
            p[c] = value();
            model_.at(r, c) = p[c];
            break;
        }
        case 6:
        case 7: {
            // A short column run, as the value pass does it.
            const int32_t c = pick(columns);
            const int32_t first = row();
            const int32_t end = std::min(rows, first + 1 + pick(40));
            for (int32_t r = first; r < end; ++r) {
                double x = 0;
                ASSERT_EQ(store_.getColumnValue(r, c, &x), 1);
                ASSERT_TRUE(sameBits(x, model_.at(r, c))) << "getColumnValue " << r << "," << c;
                if (pick(2)) {
                    x = value();
                    ASSERT_EQ(store_.setColumnValue(r, c, x), 1);
                    model_.at(r, c) = x;
                }
            }
            break;
        }
        case 8: {
            const int32_t mode = pick(2);
            ASSERT_EQ(store_.setColumnMode(mode), 1);
            ASSERT_EQ(store_.columnMode(), mode);
            break;
        }
        case 9: {
            // A copy is independent of its source in both directions.
            sampValues copy(store_);
            ASSERT_EQ(copy.columnMode(), 0);
            Model copyModel = model_;
            ASSERT_NO_FATAL_FAILURE(expectSame(copy, copyModel, "copy"));
            ASSERT_EQ(copy.setValue(0, 0, 12345.0), 1);
            break;
        }
        case 10: {
            sampValues target(64);
            std::vector<double> scrap(3, 7.0);
            ASSERT_EQ(target.allocate(3), 1);
            ASSERT_NE(target.addRow(scrap.data()), 0);
            ASSERT_EQ(target.assign(store_), 1);
            ASSERT_NO_FATAL_FAILURE(expectSame(target, model_, "assign"));
            break;
        }
        case 11: {
            // Text round trip of values chosen to survive ten digits exactly.
            const int32_t r = row(), c = pick(columns);
            const double x = double(pick(2000000) - 1000000) / 64.0;
            ASSERT_EQ(store_.setValue(r, c, x), 1);
            model_.at(r, c) = x;
            break;
        }
        default: appendRows(1 + pick(2 * store_.blockRows())); break;
        }
    }

    void run(int32_t steps) {
        for (int32_t i = 0; i < steps; ++i) {
            ASSERT_NO_FATAL_FAILURE(step()) << "step " << i;
            if (::testing::Test::HasFatalFailure()) return;
        }
        ASSERT_NO_FATAL_FAILURE(expectSame(store_, model_, "final"));
    }

    sampValues store_;
    Model model_;

private:
    std::mt19937 random_;
    int32_t last_ = 0;
};

struct Shape {
    int32_t cacheLimit;
    int32_t columns;
    int32_t steps;
};

void PrintTo(const Shape& shape, std::ostream* out) {
    *out << "window " << shape.cacheLimit << ", " << shape.columns << " columns";
}

class RandomAccess : public ::testing::TestWithParam<Shape> {};

TEST_P(RandomAccess, MatchesInMemoryTable) {
    const Shape shape = GetParam();
    for (uint32_t seed : {1u, 2u, 3u}) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        Driver driver(shape.cacheLimit, shape.columns, seed);
        driver.run(shape.steps);
        if (HasFatalFailure()) return;
    }
}

// Small windows give many blocks and column segments with little data; the
// last shapes have more columns than the window holds (one row per block).
INSTANTIATE_TEST_SUITE_P(SmallWindows, RandomAccess,
                         ::testing::Values(Shape{16, 1, 1500}, Shape{16, 3, 1500}, Shape{16, 7, 1500},
                                           Shape{64, 5, 1500}, Shape{10, 11, 1000}, Shape{16, 40, 800},
                                           Shape{1, 2, 800}));

// The default window: twenty columns and one over several blocks, and more
// columns than the window holds.
TEST(RandomAccessFullWindow, SeveralBlocksAndMoreColumnsThanTheWindow) {
    struct Case {
        int32_t columns, blockRows, rows, steps;
        uint32_t seed;
    } const cases[] = {{20, 13108, 3 * 13108 + 77, 40, 11}, {1, 262145, 2 * 262145 + 1000, 30, 12}, {262144 + 9, 1, 4, 15, 13}};
    for (const Case& c : cases) {
        SCOPED_TRACE(::testing::Message() << c.columns << " columns");
        Driver driver(sampValues::defaultCacheLimit, c.columns, c.seed);
        ASSERT_EQ(driver.store_.blockRows(), c.blockRows);
        driver.appendRows(c.rows);
        driver.run(c.steps);
        if (HasFatalFailure()) return;
    }
}

// A whole table written column by column after the rows exist, then read
// back by rows: the pattern of the value pass.
TEST(ColumnPass, WritesThatRowsSeeAfterwards) {
    sampValues store(100);
    ASSERT_EQ(store.allocate(6), 1);
    std::vector<double> zero(6, 0.0);
    for (int i = 0; i < 1000; ++i) ASSERT_NE(store.addRow(zero.data()), 0);
    for (int32_t c = 0; c < 6; ++c)
        for (int32_t r = 0; r < 1000; ++r) ASSERT_EQ(store.setColumnValue(r, c, r * 10.0 + c), 1);
    std::vector<double> row(6);
    for (int32_t r = 999; r >= 0; --r) {
        ASSERT_EQ(store.getRow(r, row.data()), 1);
        for (int32_t c = 0; c < 6; ++c) ASSERT_EQ(row[size_t(c)], r * 10.0 + c);
    }
}

}  // namespace
}  // namespace tarvex
