// The two line-length rules side by side at their boundaries, the helpers
// that take part of a line, and the count guard against a real file.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "TestSupport.h"
#include "common/TextLines.h"

namespace tarvex {
namespace {

TEST(TextLines, BufferRuleKeepsSizeMinusOneWithTheCarriageReturnCounted) {
    std::string line;
    // A buffer of 6 bytes holds 5 characters.
    std::istringstream fits("12345\nnext\n");
    EXPECT_TRUE(readLineInBuffer(fits, line, 6));
    EXPECT_EQ(line, "12345");
    EXPECT_TRUE(readLineInBuffer(fits, line, 6));
    EXPECT_EQ(line, "next");

    std::istringstream tooLong("123456\nnext\n");
    EXPECT_FALSE(readLineInBuffer(tooLong, line, 6));
    EXPECT_EQ(line, "12345");
    EXPECT_FALSE(readLineInBuffer(tooLong, line, 6)) << "a failed stream stays failed";

    // The carriage return of a Windows line end takes a place in the buffer.
    std::istringstream crlf("1234\r\n12345\r\n");
    EXPECT_TRUE(readLineInBuffer(crlf, line, 6));
    EXPECT_EQ(line, "1234");
    EXPECT_FALSE(readLineInBuffer(crlf, line, 6));

    // Text after a NUL is not kept; a last line without a line end is read;
    // nothing left at all fails.
    std::istringstream nul(std::string("ab\0cd\nlast", 10));
    EXPECT_TRUE(readLineInBuffer(nul, line, 20));
    EXPECT_EQ(line, "ab");
    EXPECT_TRUE(readLineInBuffer(nul, line, 20));
    EXPECT_EQ(line, "last");
    EXPECT_FALSE(readLineInBuffer(nul, line, 20));

    std::istringstream any("x\n");
    EXPECT_FALSE(readLineInBuffer(any, line, 1)) << "a buffer of one byte holds nothing";
}

TEST(TextLines, MaxRuleKeepsMaxWithoutCountingTheCarriageReturn) {
    std::string line;
    const std::string longest(1023, 'a');
    std::istringstream fits(longest + "\r\n" + longest + "\nb\n");
    EXPECT_TRUE(readLineUpTo(fits, line, 1023));
    EXPECT_EQ(line, longest);
    EXPECT_TRUE(readLineUpTo(fits, line, 1023));
    EXPECT_EQ(line, longest);
    EXPECT_TRUE(readLineUpTo(fits, line, 1023));
    EXPECT_EQ(line, "b");
    EXPECT_FALSE(readLineUpTo(fits, line, 1023));

    for (std::size_t extra : {std::size_t{1}, std::size_t{2}, std::size_t{100000}}) {
        std::istringstream tooLong(std::string(1023 + extra, 'z') + "\nafter\n");
        EXPECT_FALSE(readLineUpTo(tooLong, line, 1023)) << extra;
        EXPECT_EQ(line, std::string(1023, 'z'));
        EXPECT_FALSE(readLineUpTo(tooLong, line, 1023)) << "nothing after a line that is too long";
    }
}

TEST(TextLines, TakingPartsOfLines) {
    std::string line;
    // A limit cuts a line; the rest stays for the next take.
    std::istringstream in("abcdef\r\nxy=12\nlast");
    EXPECT_TRUE(takeLine(in, line, 4));
    EXPECT_EQ(line, "abcd");
    EXPECT_TRUE(takeLine(in, line, 10));
    EXPECT_EQ(line, "ef");
    EXPECT_TRUE(takeThrough(in, '=', 10));
    EXPECT_TRUE(takeLine(in, line, 10));
    EXPECT_EQ(line, "12");
    EXPECT_TRUE(takeLine(in, line, 10)) << "the last line needs no line end";
    EXPECT_EQ(line, "last");
    EXPECT_FALSE(takeLine(in, line, 10));

    // skipLine does not fail at the end; passLine does when nothing is left.
    std::istringstream skip("one\n\n");
    skipLine(skip);
    EXPECT_TRUE(passLine(skip)) << "an empty line is a line";
    skipLine(skip);
    EXPECT_FALSE(skip.fail());
    EXPECT_FALSE(passLine(skip));
}

TEST(TextLines, CountsAreCheckedAgainstWhatIsLeft) {
    test::ScratchDir dir;
    const std::string path = dir.file("counts.txt");
    test::writeFile(path, "3\n1 2 3\n");
    std::ifstream in(path);
    int count = 0;
    in >> count;
    // Six bytes are left: three two-byte numbers fit, four do not.
    EXPECT_TRUE(countFitsInput(in, 3, 2));
    EXPECT_FALSE(countFitsInput(in, 4, 2));
    EXPECT_FALSE(countFitsInput(in, 2000000000, 1));
    EXPECT_FALSE(countFitsInput(in, -1, 1));
    // The check leaves the reading position where it was.
    int a = 0, b = 0, c = 0;
    EXPECT_TRUE(in >> a >> b >> c);
    EXPECT_EQ(a + b + c, 6);
}

}  // namespace
}  // namespace tarvex
