#include <gtest/gtest.h>

#include <cmath>

#include "plots/AxesTransform.h"
#include "plots/FigureGuard.h"

using namespace tarvex;

TEST(FigureGuard, NothingNonFiniteSurvives) {
    Axes a;
    a.x.min = NAN;
    a.x.max = 4;
    a.y.min = 0;
    a.y.max = INFINITY;
    a.lines.push_back({{{0, 0}, {1, 1}, {2, NAN}, {3, 3}, {4, 4}, {5, INFINITY}, {6, 6}}, {}, LineStyle::Solid, 1});
    a.markers.push_back({{{1, 1}, {NAN, 2}, {-INFINITY, 0}}, MarkerShape::Circle, 3, {}, true});
    a.bars.push_back({0, 1, 0, INFINITY, {}, {}});
    a.texts.push_back({NAN, 1, "lost", {}, HAlign::Left, VAlign::Bottom, 0});
    EXPECT_EQ(FigureGuard::apply(a), 7);
    // The line breaks at each gap: 0-1, 3-4, and the lone 6 goes.
    ASSERT_EQ(a.lines.size(), 2u);
    EXPECT_EQ(a.lines[0].points.size(), 2u);
    EXPECT_EQ(a.lines[1].points[0].x, 3.0);
    ASSERT_EQ(a.markers.size(), 1u);
    EXPECT_EQ(a.markers[0].points.size(), 1u);
    EXPECT_TRUE(a.bars.empty());
    EXPECT_TRUE(a.texts.empty());
    EXPECT_TRUE(std::isfinite(a.x.min) && a.x.min < a.x.max);
    EXPECT_TRUE(std::isfinite(a.y.max) && a.y.min < a.y.max);
    EXPECT_TRUE(a.message.empty());

    // On a log axis, values at or below zero cannot be drawn either.
    Axes log;
    log.y.scale = Scale::Log;
    log.y.min = 1;
    log.y.max = 100;
    log.markers.push_back({{{0.5, 0.0}, {0.5, -1.0}}, MarkerShape::Square, 3, {}, true});
    FigureGuard::apply(log);
    EXPECT_TRUE(log.markers.empty());
    EXPECT_EQ(log.message, "No data");

    // A log range that isn't positive turns linear rather than taking a log of it.
    Axes bad;
    bad.x.scale = Scale::Log;
    bad.x.min = -1;
    bad.x.max = 10;
    bad.message = "kept";
    FigureGuard::apply(bad);
    EXPECT_EQ(bad.x.scale, Scale::Linear);
    EXPECT_EQ(bad.message, "kept");
}

TEST(AxesTransform, CornersAndRoundTripsOnLinearAndLogAxes) {
    AxisSpec x, y;
    x.min = -2;
    x.max = 6;
    y.min = 10;
    y.max = 1000;
    y.scale = Scale::Log;
    const AxesTransform t(50, 20, 400, 300, x, y);
    EXPECT_DOUBLE_EQ(t.toPixelX(-2), 50);
    EXPECT_DOUBLE_EQ(t.toPixelX(6), 450);
    EXPECT_DOUBLE_EQ(t.toPixelY(10), 320);  // bottom: y grows downwards
    EXPECT_DOUBLE_EQ(t.toPixelY(1000), 20);
    EXPECT_DOUBLE_EQ(t.toPixelY(100), 170);  // a decade is half the height
    EXPECT_NEAR(t.toDataX(250), 2.0, 1e-12);
    EXPECT_NEAR(t.toDataY(170), 100.0, 1e-9);
    EXPECT_TRUE(t.contains(50, 20));
    EXPECT_FALSE(t.contains(49.9, 20));

    // Ranges near the largest double stay finite.
    AxisSpec huge;
    huge.min = -1e308;
    huge.max = 1e308;
    const AxesTransform h(0, 0, 100, 100, huge, huge);
    EXPECT_DOUBLE_EQ(h.toPixelX(0), 50);
    EXPECT_DOUBLE_EQ(h.toDataX(100), 1e308);
}
