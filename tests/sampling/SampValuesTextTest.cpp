// The store's text form: exact lines, round trips in both orders, and
// refusal of bad texts.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include "sampling/sampValues.h"

namespace tarvex {
namespace {

void fill(sampValues& store, const std::vector<std::vector<double>>& rows) {
    ASSERT_EQ(store.allocate(int32_t(rows.front().size())), 1);
    for (const auto& row : rows) ASSERT_GT(store.addRow(row.data()), 0);
}

std::string textOf(const sampValues& store) {
    std::ostringstream out;
    out << store;
    return out.str();
}

const std::vector<std::vector<double>> kSmall = {{1.0, 0.5, -2.25}, {1.0 / 3.0, 1e-12, 123456789012.0}};

TEST(SampValuesText, ByRunAndByFactorLines) {
    sampValues store;
    fill(store, kSmall);
    std::ostringstream out;
    out << store;
    EXPECT_EQ(out.str(), "2\n3\n0\n1\t0.5\t-2.25\t\n0.3333333333\t1e-12\t1.23456789e+11\t\n");
    EXPECT_EQ(out.precision(), 10) << "the writer leaves the stream at ten digits";
    ASSERT_EQ(store.setOrder(1), 1);
    EXPECT_EQ(textOf(store), "2\n3\n1\n1\t0.3333333333\t\n0.5\t1e-12\t\n-2.25\t1.23456789e+11\t\n");
}

TEST(SampValuesText, EmptyStores) {
    sampValues none;
    EXPECT_EQ(textOf(none), "0\n0\n0\n");
    sampValues noRows;
    ASSERT_EQ(noRows.allocate(4), 1);
    ASSERT_EQ(noRows.setOrder(1), 1);
    EXPECT_EQ(textOf(noRows), "0\n4\n1\n");

    std::istringstream in("0\n4\n1\nnext\n");
    sampValues back;
    in >> back;
    ASSERT_FALSE(in.fail());
    EXPECT_EQ(back.rowCount(), 0);
    EXPECT_EQ(back.columnCount(), 4);
    EXPECT_EQ(back.order(), 1);
    std::string rest;
    std::getline(in, rest);
    EXPECT_EQ(rest, "next");
}

// Values that ten significant digits carry exactly come back bit for bit;
// any other value comes back as printf's "%.10g" and strtod make it.
class TextRoundTrip : public ::testing::TestWithParam<std::tuple<int32_t, int32_t, int32_t, int32_t>> {};

TEST_P(TextRoundTrip, BothOrders) {
    const auto [cacheLimit, columns, rows, order] = GetParam();
    sampValues store(cacheLimit);
    ASSERT_EQ(store.allocate(columns), 1);
    std::vector<double> row(static_cast<size_t>(columns));
    std::vector<double> expected;
    uint64_t state = 88172645463325252ull;
    for (int32_t r = 0; r < rows; ++r) {
        for (int32_t c = 0; c < columns; ++c) {
            state ^= state << 13;
            state ^= state >> 7;
            state ^= state << 17;
            double x = (double(state >> 11) / 9007199254740992.0 - 0.5) * std::ldexp(1.0, int(state % 40) - 20);
            if ((r + c) % 3 == 0) x = double(int64_t(state % 2000001) - 1000000) / 256.0;  // exact in ten digits
            row[size_t(c)] = x;
            char text[64];
            std::snprintf(text, sizeof text, "%.10g", x);
            expected.push_back(std::strtod(text, nullptr));
        }
        ASSERT_EQ(store.addRow(row.data()), r + 1);
    }
    ASSERT_EQ(store.setOrder(order), 1);
    std::stringstream text;
    text << store << "after\n";

    sampValues back(cacheLimit == 16 ? 262144 : 16);  // the reader's window need not match
    text >> back;
    ASSERT_FALSE(text.fail());
    std::string rest;
    std::getline(text, rest);
    EXPECT_EQ(rest, "after");
    ASSERT_EQ(back.rowCount(), rows);
    ASSERT_EQ(back.columnCount(), columns);
    EXPECT_EQ(back.order(), order);
    std::vector<double> got(static_cast<size_t>(columns));
    for (int32_t r = 0; r < rows; ++r) {
        ASSERT_EQ(back.getRow(r, got.data()), 1);
        for (int32_t c = 0; c < columns; ++c)
            ASSERT_EQ(got[size_t(c)], expected[size_t(r) * size_t(columns) + size_t(c)]) << r << "," << c;
    }
    // And the text of what was read is the text that was written.
    std::ostringstream again;
    again << back;
    std::string first = text.str();
    first.resize(first.size() - std::string("after\n").size());
    EXPECT_EQ(again.str(), first);
}

INSTANTIATE_TEST_SUITE_P(Shapes, TextRoundTrip,
                         ::testing::Combine(::testing::Values(16), ::testing::Values(1, 3, 20),
                                            ::testing::Values(1, 7, 100), ::testing::Values(0, 1)));
INSTANTIATE_TEST_SUITE_P(FullWindow, TextRoundTrip,
                         ::testing::Combine(::testing::Values(262144), ::testing::Values(20),
                                            ::testing::Values(30000), ::testing::Values(0, 1)));

TEST(SampValuesText, InfinityAndNanSurvive) {
    sampValues store;
    const double inf = std::numeric_limits<double>::infinity();
    fill(store, {{inf, -inf, std::nan("")}, {-0.0, 5e-324, 1.7976931348623157e308}});
    for (int32_t order : {0, 1}) {
        ASSERT_EQ(store.setOrder(order), 1);
        std::stringstream text;
        text << store;
        sampValues back;
        text >> back;
        ASSERT_FALSE(text.fail()) << text.str();
        std::vector<double> x(3);
        ASSERT_EQ(back.getRow(0, x.data()), 1);
        EXPECT_EQ(x[0], inf);
        EXPECT_EQ(x[1], -inf);
        EXPECT_TRUE(std::isnan(x[2]));
        ASSERT_EQ(back.getRow(1, x.data()), 1);
        EXPECT_TRUE(x[0] == 0.0 && std::signbit(x[0]));
        EXPECT_EQ(x[1], std::numeric_limits<double>::denorm_min());
        EXPECT_EQ(x[2], std::numeric_limits<double>::max()) << "written as 1.797693135e+308";
    }
}

// A read replaces what the store held.
TEST(SampValuesText, ReaderTakesAnyWhiteSpaceAndPlusSigns) {
    std::istringstream in("2 2 1\n+1.5 2e1\n\n 3\t-4.25e-1\nnext");
    sampValues store;
    fill(store, {{9.0, 9.0, 9.0, 9.0}});
    in >> store;
    ASSERT_FALSE(in.fail());
    EXPECT_EQ(store.columnCount(), 2);
    // By factor: the first two numbers are column 0.
    std::vector<double> row(2);
    ASSERT_EQ(store.getRow(0, row.data()), 1);
    EXPECT_EQ(row, (std::vector<double>{1.5, 3.0}));
    ASSERT_EQ(store.getRow(1, row.data()), 1);
    EXPECT_EQ(row, (std::vector<double>{20.0, -0.425}));
    std::string rest;
    std::getline(in, rest);
    EXPECT_EQ(rest, "next");
}

// Each bad text fails the stream and leaves an empty store, whatever the
// store held before.
TEST(SampValuesText, BadTextsLeaveAnEmptyStore) {
    const char* const texts[] = {
        "",
        "3\n",
        "-1\n2\n0\n",
        "2\n-2\n0\n",
        "2\n2\n2\n1\t2\t\n3\t4\t\n",
        "2\n0\n0\n",
        "2\n2\n0\n1\t2\t\n3\t\n",
        "2\n2\n1\n1\t2\t\n3\t\n",
        "2\n2\n0\n1\t2\t\n3\tabc\t\n",
        "2\n2\n1\n1\t2\t\nx\t4\t\n",
        "2\n2\n0\n1\t2\t\n3\t4.5.6\t\n",
        "two\n2\n0\n",
        "99999999999\n2\n0\n",
        "2000000000\n2000000000\n1\n1\t2\t\n",
        "1000000\n3\n1\n0.5\t",
        "3\n1000000000\n0\n1\t2\t3\t\n",
        "1\n2\n0\n1\t1e999\t\n",
        "1\n2\n0\n1\t-1.797693136e308\t\n",
    };
    for (const char* text : texts) {
        SCOPED_TRACE(::testing::Message() << '"' << text << '"');
        sampValues store(16);
        fill(store, {{1.0, 2.0}, {3.0, 4.0}, {5.0, 6.0}});
        std::istringstream in(text);
        in >> store;
        EXPECT_TRUE(in.fail());
        EXPECT_EQ(store.rowCount(), 0);
        EXPECT_EQ(store.columnCount(), 0);
        // Empty, and usable again.
        ASSERT_EQ(store.allocate(1), 1);
        const double one = 1.0;
        EXPECT_EQ(store.addRow(&one), 1);
    }
}

}  // namespace
}  // namespace tarvex
