// The "Save table" cells and the standard sheet every class writes.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>

#include "TestStats.h"
#include "postproc/ResultTable.h"

namespace tarvex {
namespace {

TEST(ResultTable, CellsSwitchToShortFormOutsideTheReadableRange) {
    EXPECT_EQ(formatIndexValue(0.5), "0.5000");
    EXPECT_EQ(formatIndexValue(-0.001), "-0.0010");
    EXPECT_EQ(formatIndexValue(10000.0), "10000.0000");
    EXPECT_EQ(formatIndexValue(0.0009), " 0.0009");
    EXPECT_EQ(formatIndexValue(12345.0), "1.23e+04");
    EXPECT_EQ(formatIndexValue(0.0), "      0");
    EXPECT_EQ(formatIndexValue(-std::nan("")), "    nan");
    EXPECT_EQ(formatIndexValue(-std::numeric_limits<double>::infinity()), "   -inf");

    std::ostringstream out;
    writeTableCell(out, "PEAR");
    writeTableCell(out, "0.1000", true);
    writeTableCell(out, "a name longer than twenty");
    EXPECT_EQ(out.str(), "                PEAR\t              0.1000*\ta name longer than twenty\t");
}

TEST(ResultTable, SheetHasAVariableRowThenOneRowPerShownRecord) {
    test::LayoutStats stats;
    stats.variableCount = 2;
    stats.computed = 1;
    stats.records = {{"X1", kUncertainFactor, {0.25, 9, 0.5, 9}, {}},
                     {"X2", kConstantFactor, {0, 0, 0, 0}, {}},
                     {"X3", kCorrelatedFactor, {0, 0, 0, 0}, {}}};
    ResultTableRequest request;
    request.variables = {1};
    request.variableNames = {"Y"};
    request.records = {0, 1, 7};  // 7 is past the end and dropped
    std::ostringstream out;
    stats.writeTable(out, request);
    EXPECT_EQ(out.str(),
              "                    \t                   Y\t\n"
              "                  X1\t              0.5000\t\n"
              "                  X2\t            Constant\t\n");
    request.records.clear();
    std::ostringstream all;
    stats.writeTable(all, request);
    EXPECT_NE(all.str().find("   Correlated factor\t\n"), std::string::npos);
}

}  // namespace
}  // namespace tarvex
