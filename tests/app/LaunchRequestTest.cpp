// Parsing the launch request Tarvex.ini.
#include <gtest/gtest.h>

#include <string>

#include "TestSupport.h"
#include "app/LaunchRequest.h"

using tarvex::LaunchRequest;
using tarvex::test::ScratchDir;
using tarvex::test::writeFile;
using Kind = LaunchRequest::Kind;

namespace {

LaunchRequest parse(const std::string& content, int expectedResult = 1) {
    ScratchDir dir;
    writeFile(dir.file("Tarvex.ini"), content);
    LaunchRequest request;
    EXPECT_EQ(request.read(dir.file("Tarvex.ini")), expectedResult);
    return request;
}

}  // namespace

TEST(LaunchRequest, BlanksAfterTheLabelAreSkippedAndInnerBlanksKept) {
    const LaunchRequest r = parse("External sample file:    a b.txt\n");
    ASSERT_EQ(r.immediate.size(), 1u);
    EXPECT_EQ(r.immediate[0], (LaunchRequest::Entry{Kind::ExternalSampleFile, "a b.txt"}));

    // The same line with leading blanks holds no label.
    EXPECT_TRUE(parse("  External sample file:    a b.txt\n").empty());
    // Tabs count as blanks; trailing blanks belong to the value.
    EXPECT_EQ(parse("Internal model:\t m.imd  \n").internalModel, "m.imd  ");
    // No blank at all after the label.
    EXPECT_EQ(parse("Internal model:m.imd\n").internalModel, "m.imd");
}

TEST(LaunchRequest, ImmediateKindsInFileOrderAndRememberedValues) {
    const LaunchRequest r = parse(
        "; written by a driver script\n"
        "Tarvex configuration file: /r/one.spc\n"
        "External model executable: Excel Application\n"
        "Tarvex sample file: /s/a.sam\n"
        "random text Tarvex sample file: /no.sam\n"
        "\n"
        "External sample file: /s/ext.txt\n"
        "Tarvex sample file: /s/b.sam\n"
        "External model output file: /o/out.txt\n"
        "Internal model: /m/first.imd\n"
        "Internal model: /m/second.imd\n"
        "tarvex sample file: /lower/case.sam\n");
    const std::vector<LaunchRequest::Entry> expected = {
        {Kind::TarvexConfigurationFile, "/r/one.spc"},
        {Kind::TarvexSampleFile, "/s/a.sam"},
        {Kind::ExternalSampleFile, "/s/ext.txt"},
        {Kind::TarvexSampleFile, "/s/b.sam"},
    };
    EXPECT_EQ(r.immediate, expected);
    EXPECT_EQ(r.externalModelExecutable, "Excel Application");
    EXPECT_TRUE(r.usesSpreadsheet());
    EXPECT_EQ(r.externalModelOutputFile, "/o/out.txt");
    EXPECT_EQ(r.internalModel, "/m/second.imd");  // a later line replaces an earlier one
}

TEST(LaunchRequest, EmptyValueIsNoEntry) {
    const LaunchRequest r = parse(
        "Internal model: /m/kept.imd\n"
        "Internal model:    \n"
        "Tarvex sample file:\n"
        "External model executable: \t\n"
        "External model output file: out.txt\n");
    EXPECT_TRUE(r.immediate.empty());
    EXPECT_EQ(r.internalModel, "/m/kept.imd");
    EXPECT_EQ(r.externalModelExecutable, "");
    EXPECT_FALSE(r.usesSpreadsheet());
    EXPECT_EQ(r.externalModelOutputFile, "out.txt");
}

TEST(LaunchRequest, MissingOrEmptyFileIsNoRequest) {
    LaunchRequest request;
    request.internalModel = "left over";
    EXPECT_EQ(request.read("/nonexistent-dir/Tarvex.ini"), 0);
    EXPECT_TRUE(request.empty());
    EXPECT_TRUE(parse("", 0).empty());
    // A file of blank lines is a request, with nothing in it.
    EXPECT_TRUE(parse("\n\n", 1).empty());
}

TEST(LaunchRequest, CrlfLinesAndOverLongLines) {
    EXPECT_EQ(parse("Internal model: m.imd\r\n").internalModel, "m.imd");

    // A line of exactly 1023 characters is read whole.
    const std::string label = "Tarvex sample file: ";
    const std::string value1023(1023 - label.size(), 'v');
    LaunchRequest r = parse(label + value1023 + "\nInternal model: after.imd\n");
    ASSERT_EQ(r.immediate.size(), 1u);
    EXPECT_EQ(r.immediate[0].path, value1023);
    EXPECT_EQ(r.internalModel, "after.imd");

    // A longer line ends the reading: what came before stands, nothing after it counts.
    r = parse("External sample file: first.txt\n" + label + value1023 + "w\nInternal model: after.imd\n");
    ASSERT_EQ(r.immediate.size(), 1u);
    EXPECT_EQ(r.immediate[0].path, "first.txt");
    EXPECT_EQ(r.internalModel, "");

    // An over-long first line is a failed first read: no request.
    EXPECT_TRUE(parse(std::string(2000, 'x') + "\nInternal model: m\n", 0).empty());
}
