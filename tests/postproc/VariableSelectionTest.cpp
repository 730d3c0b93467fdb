// Choosing variables: names at times, the dialog's texts and checks,
// expressions over outputs, and the table of values per run.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

#include "PostprocFixtures.h"
#include "postproc/OutputExpression.h"
#include "postproc/OutputTable.h"
#include "postproc/OutputTableBuilder.h"
#include "postproc/VariableSelection.h"

namespace tarvex {
namespace {

std::vector<std::vector<double>> rowsOf(OutputTable& table) {
    std::vector<std::vector<double>> rows;
    std::vector<double> row(static_cast<std::size_t>(table.columnCount()));
    for (int32_t r = 0; r < table.rowCount(); ++r) {
        EXPECT_EQ(table.row(r, row.data()), 1);
        rows.push_back(row);
    }
    return rows;
}

TEST(VariableSelection, NamesTextsAndTimeLists) {
    EXPECT_EQ(maxVariableName("Y"), "Y[max]");
    EXPECT_EQ(timeVariableName("Y", 1.5), "Y[1.5]");
    EXPECT_EQ(timeVariableName("Y", 1234567.0), "Y[1.23457e+06]");
    EXPECT_EQ(timeRangeText(0.0005), " 0.0005");
    EXPECT_EQ(timeRangeText(999.5), "999.500");
    EXPECT_EQ(timeRangeText(1000.0), "  1e+03");
    EXPECT_EQ(availableTimeText(0.1), "        0.10000000000000000555");

    // The upper bound is not reached.
    EXPECT_EQ(multiTimeNames("Y", 0.0, 1.0, 0.25),
              (std::vector<std::string>{"Y[0]", "Y[0.25]", "Y[0.5]", "Y[0.75]"}));
    EXPECT_TRUE(multiTimeNames("Y", 0.0, 1.0, 0.0).empty());
    EXPECT_TRUE(multiTimeNames("Y", 0.0, 1.0, 1e-9).empty());
    EXPECT_TRUE(multiTimeNames("Y", 1.0, 1.0, 0.5).empty());

    EXPECT_EQ(checkSingleTime("2", 0.0, 2.0), "");
    for (const char* bad : {"2.01", "-1", "1.5x", "", "nan"}) EXPECT_EQ(checkSingleTime(bad, 0.0, 2.0), "Wrong value") << bad;

    EXPECT_EQ(checkTimeBounds(" 1 ", "1", "0.25", 0.0, 2.0), "");
    EXPECT_EQ(checkTimeBounds("-0.5", "1", "0.25", 0.0, 2.0), "Wrong bound value");
    EXPECT_EQ(checkTimeBounds("0", "3", "0.25", 0.0, 2.0), "Wrong bound value");
    EXPECT_EQ(checkTimeBounds("1", "0.5", "0.25", 0.0, 2.0), "Wrong bound value");
    EXPECT_EQ(checkTimeBounds("0", "1", "0", 0.0, 2.0), "Wrong interval value");
    EXPECT_EQ(checkTimeBounds("0", "1", "", 0.0, 2.0), "Wrong interval value");
    EXPECT_EQ(checkTimeBounds("0", "1", "1e-9", 0.0, 2.0), "Wrong interval value");
}

TEST(VariableSelection, TimeRangeOfTheResults) {
    test::ScratchDir dir;
    ModelConfiguration shared, different;
    test::readResults(shared, dir, test::kTimedOutput);
    test::readResults(different, dir, "1\nY\ntime = yes\n2\nRUN 0\n2\n0 1\n4 2\nRUN 1\n3\n-1 1\n0.5 2\n4 3\n");
    ASSERT_EQ(shared.timeMode(), 3);
    ASSERT_EQ(different.timeMode(), 2);
    double low = 0, high = 0;
    ASSERT_EQ(outputTimeRange(shared, low, high), 1);
    EXPECT_EQ(low, 0.0);
    EXPECT_EQ(high, 2.0);
    EXPECT_EQ(availableTimes(shared), (std::vector<double>{0.0, 1.0, 2.0}));
    ASSERT_EQ(outputTimeRange(different, low, high), 1);
    EXPECT_EQ(low, -1.0);
    EXPECT_EQ(high, 4.0);
    EXPECT_EQ(availableTimes(different), (std::vector<double>{-1.0, 0.0, 0.5, 4.0}));
    EXPECT_EQ(outputTimeRange(ModelConfiguration(), low, high), 0);
}

TEST(OutputExpression, CheckRefusesWhatCannotBeEvaluatedOrRead) {
    const std::vector<std::string> outputs = {"Y", "Z"};
    for (const char* good : {"Y[max] + Z[0]", "Y / (Z - Y)", "1 / (Y - 1)", "log(Y[2.5]) * 2e3", "Y", "sin(Z[1e-3])"})
        EXPECT_EQ(checkOutputExpression(good, outputs), 1) << good;
    for (const char* bad : {"(Y[max] + 1", "Y[max] +", "", "1 / 0", "Y[abc]", "W[max]", "Y]", "[3]", "Y[max",
                            "Y[1]]", "pow(Y, 2)"})
        EXPECT_EQ(checkOutputExpression(bad, outputs), 0) << bad;

    OutputExpression e;
    ASSERT_EQ(e.parse("Y[max]*2e-3 + Y + Z[1.5] - Ya + exp(Z)", outputs), 1);
    EXPECT_EQ(e.body(), "var0*2e-3 + var1 + var2 - Ya + exp(var3)");
    ASSERT_EQ(e.references().size(), 4u);
    EXPECT_EQ(e.references()[0].kind, OutputReference::kMaximum);
    EXPECT_EQ(e.references()[2].time, 1.5);
    EXPECT_EQ(e.references()[3].output, 1);

    OutputReference r;
    EXPECT_TRUE(parseReference("Z[-0.5]", outputs, r));
    EXPECT_EQ(r.time, -0.5);
    EXPECT_FALSE(parseReference("Z[0] + 1", outputs, r));
}

TEST(OutputTableBuilder, ValuesPerRunForEveryKindOfEntry) {
    test::ScratchDir dir;
    ModelConfiguration model;
    test::readResults(model, dir, test::kTimedOutput);
    OutputTable table;
    std::string error;
    ASSERT_EQ(buildOutputTable(model,
                               {"Y", "Y[max]", "Y[1]", "Y[0.5]", "Z[5]", "Z[-1]", "Y[max] / Z[1] + 2 ** 3",
                                "1 / (Y[max] - 5)"},
                               table, error),
              1)
        << error;
    const auto rows = rowsOf(table);
    ASSERT_EQ(rows.size(), 2u);
    // Run 0: Y 1, 5, 3 and Z 10, 20, 30 at times 0, 1, 2; run 1: Y 2, 4, 8 and Z 40, 50, 60.
    // Y[0.5] lies half way from 1 to 5 and from 2 to 4; Z[5] and Z[-1] take the ends.
    const std::vector<double> run0 = {1, 5, 5, 3, 30, 10}, run1 = {2, 8, 4, 3, 60, 40};
    EXPECT_EQ(std::vector<double>(rows[0].begin(), rows[0].begin() + 6), run0);
    EXPECT_EQ(std::vector<double>(rows[1].begin(), rows[1].begin() + 6), run1);
    EXPECT_DOUBLE_EQ(rows[0][6], 5.0 / 20.0 + 8.0);
    EXPECT_DOUBLE_EQ(rows[1][6], 8.0 / 50.0 + 8.0);
    // A division by zero leaves that run without a value.
    EXPECT_TRUE(std::isnan(rows[0][7]));
    EXPECT_DOUBLE_EQ(rows[1][7], 1.0 / 3.0);

    // Values reach the calculator as "%.15g" texts: 0.123456789012346, whose
    // last digits the expression lifts into view (0.3456789 at full precision).
    ModelConfiguration precise;
    test::readResults(precise, dir, "1\nY\ntime = no\n1\n0.1234567890123456789\n");
    ASSERT_EQ(buildOutputTable(precise, {"(Y - 0.123456789012) * 1e12"}, table, error), 1);
    EXPECT_NEAR(rowsOf(table)[0][0], 0.346, 1e-4);

    // Without a time axis every reference reads the run's one value.
    ModelConfiguration flat;
    test::readResults(flat, dir, "2\nY\nZ\ntime = no\n2\n1 2\n3 4\n");
    ASSERT_EQ(buildOutputTable(flat, {"Y", "Y[max]", "Y[0]", "Z[7] - Y"}, table, error), 1);
    EXPECT_EQ(rowsOf(table), (std::vector<std::vector<double>>{{1, 1, 1, 1}, {3, 3, 3, 1}}));

    EXPECT_EQ(buildOutputTable(model, {}, table, error), 0);
    EXPECT_EQ(error, "   No variable selected.");
    EXPECT_EQ(buildOutputTable(model, {"Y", "W[max] + 1"}, table, error), 0);
    EXPECT_EQ(error, "   Expression can't be evaluated.");
    EXPECT_EQ(table.rowCount(), 0);
    // Results missing from the data file.
    std::filesystem::resize_file(model.dataFile(), 8 * 7);
    EXPECT_EQ(buildOutputTable(model, {"Y"}, table, error), 0);
    EXPECT_EQ(error, "Error reading model output file");
    EXPECT_EQ(table.rowCount(), 0);
}

}  // namespace
}  // namespace tarvex
