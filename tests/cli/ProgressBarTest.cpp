#include <gtest/gtest.h>

#include <sstream>

#include "cli/ProgressBar.h"

namespace tarvex::cli {
namespace {

TEST(ProgressBar, PlainLinesAtEachTenthOnly) {
    std::ostringstream out;
    ProgressBar bar(out, false, [] { return 0.0; }, "Generating");
    for (int p = 0; p <= 100; ++p) bar.update(p);
    bar.update(40);   // going back draws nothing
    bar.update(100);  // nor does a repeat
    bar.finish();
    std::string expected;
    for (int t = 0; t <= 100; t += 10) expected += "Generating: " + std::to_string(t) + "%\n";
    EXPECT_EQ(out.str(), expected);

    // A jump over several tenths writes the one reached, and values beyond
    // the ends are held to them.
    std::ostringstream jumps;
    ProgressBar skip(jumps, false, nullptr, "Run");
    skip.update(-5);
    skip.update(37);
    skip.update(250);
    skip.finish();
    skip.update(100);
    EXPECT_EQ(jumps.str(), "Run: 0%\nRun: 30%\nRun: 100%\n");
}

TEST(ProgressBar, TerminalLineShowsBarPercentAndTimeLeft) {
    std::ostringstream out;
    double now = 100.0;  // the origin is the clock at construction
    ProgressBar bar(out, true, [&] { return now; }, "Gen");
    now = 110.0;
    bar.update(25);  // 10 s for a quarter: 30 s to go
    const std::string quarter = "\rGen [" + std::string(7, '#') + std::string(23, ' ') + "]  25%  0:30 left   ";
    EXPECT_EQ(out.str(), quarter);
    now = 130.0;
    bar.update(25);  // no change of percent, no redraw
    EXPECT_EQ(out.str(), quarter);
    now = 240.0;
    bar.update(80);  // 140 s for 80 %: 35 s to go
    bar.update(100);
    bar.finish();
    bar.finish();
    EXPECT_EQ(out.str(), quarter + "\rGen [" + std::string(24, '#') + std::string(6, ' ') + "]  80%  0:35 left   " +
                             "\rGen [" + std::string(30, '#') + "] 100%  done in 2:20   \n");

    // Nothing shown, nothing to close.
    std::ostringstream idle;
    ProgressBar none(idle, true, [] { return 0.0; }, "Gen");
    none.finish();
    EXPECT_EQ(idle.str(), "");
}

TEST(ProgressBar, DurationsRoundToSecondsWithHoursFromAnHourOn) {
    EXPECT_EQ(ProgressBar::formatDuration(0.0), "0:00");
    EXPECT_EQ(ProgressBar::formatDuration(-4.0), "0:00");
    EXPECT_EQ(ProgressBar::formatDuration(59.6), "1:00");
    EXPECT_EQ(ProgressBar::formatDuration(3599.4), "59:59");
    EXPECT_EQ(ProgressBar::formatDuration(3600.0), "1:00:00");
    EXPECT_EQ(ProgressBar::formatDuration(3725.0), "1:02:05");
}

}  // namespace
}  // namespace tarvex::cli
