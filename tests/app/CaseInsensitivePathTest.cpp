#include <gtest/gtest.h>

#include "TestSupport.h"
#include "app/CaseInsensitivePath.h"

using tarvex::resolveIgnoringCase;
using tarvex::test::ScratchDir;
using tarvex::test::writeFile;

TEST(CaseInsensitivePath, DemoMenuNamesReachTheRepairedFiles) {
    ScratchDir demo;
    const std::string d = demo.path().string();
    writeFile(demo.file("levelE.dem"), "");
    writeFile(demo.file("Ishigami.dem"), "");
    writeFile(demo.file("SOBOLG0.dem"), "");
    writeFile(demo.file("sobolG0.dem"), "");
    EXPECT_EQ(resolveIgnoringCase(d, "LevelE.dem"), d + "/levelE.dem");
    EXPECT_EQ(resolveIgnoringCase(d, "Ishigami.dem"), d + "/Ishigami.dem");
    // Several matches: the exact name wins, else the first in name order.
    EXPECT_EQ(resolveIgnoringCase(d, "sobolG0.dem"), d + "/sobolG0.dem");
    EXPECT_EQ(resolveIgnoringCase(d, "SobolG0.dem"), d + "/SOBOLG0.dem");
    // No match, or no such directory: the name as asked.
    EXPECT_EQ(resolveIgnoringCase(d, "Linear.dem"), d + "/Linear.dem");
    EXPECT_EQ(resolveIgnoringCase(d + "/none", "x.dem"), d + "/none/x.dem");
}
