#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <memory>

#include "TestSupport.h"
#include "factors/Beta.h"
#include "factors/Constant.h"
#include "factors/Discrete.h"
#include "factors/Exponential.h"
#include "factors/Normal.h"
#include "factors/Relation.h"
#include "factors/Uniform.h"
#include "plots/CairoRenderer.h"
#include "plots/FactorGraph.h"

using namespace tarvex;

namespace {

// Every coordinate of the figure is finite, it renders, and its largest y.
double checkDrawable(const Figure& f, const std::string& what) {
    double top = -INFINITY;
    EXPECT_EQ(f.axes.size(), 1u) << what;
    for (const Axes& a : f.axes) {
        for (double v : {a.x.min, a.x.max, a.y.min, a.y.max}) EXPECT_TRUE(std::isfinite(v)) << what;
        EXPECT_LT(a.x.min, a.x.max) << what;
        for (const Polyline& l : a.lines)
            for (const Point& p : l.points) {
                EXPECT_TRUE(std::isfinite(p.x) && std::isfinite(p.y)) << what;
                top = std::max(top, p.y);
            }
        for (const Markers& m : a.markers)
            for (const Point& p : m.points) EXPECT_TRUE(std::isfinite(p.x) && std::isfinite(p.y)) << what;
    }
    tarvex::test::ScratchDir dir;
    CairoRenderer r;
    EXPECT_EQ(r.renderFile(f, dir.file("f.png")), 1) << what << ": " << r.errorText();
    return top;
}

std::unique_ptr<Discrete> discrete(std::initializer_list<std::pair<double, double>> points) {
    auto d = std::make_unique<Discrete>();
    d->clear();
    for (auto [x, w] : points) EXPECT_EQ(d->addPoint(std::make_unique<Interval>(x, x, w)), 1);
    return d;
}

}  // namespace

TEST(FactorGraph, NormalOverItsTruncatedSpan) {
    Normal n;  // mean 0, sd 1, truncated at 0.001 and 0.999
    Figure f;
    FactorGraph g;
    ASSERT_EQ(g.density(n, f), 1);
    // The 0.999 quantile of the standard normal is 3.090232.
    EXPECT_NEAR(f.axes[0].x.min, -3.090232, 1e-5);
    EXPECT_NEAR(f.axes[0].x.max, 3.090232, 1e-5);
    EXPECT_NEAR(checkDrawable(f, "normal density"), 1 / std::sqrt(2 * M_PI), 1e-4);
    // Range 6.18: a step of 1 gives "%.1f"; a density to 0.42: step 0.05, "%.2f".
    EXPECT_EQ(f.axes[0].x.tickFormat, "%.1f");
    EXPECT_EQ(f.axes[0].y.tickFormat, "%.2f");

    ASSERT_EQ(g.cumulative(n, f), 1);
    const auto& pts = f.axes[0].lines.at(0).points;
    EXPECT_NEAR(pts.front().y, 0.001, 1e-7);
    EXPECT_NEAR(pts.back().y, 0.999, 1e-7);
    checkDrawable(f, "normal cumulative");

    // Exponential: its lower end, where the left truncation is 0, up to -ln(0.001)/lambda.
    Exponential e;
    ASSERT_EQ(e.setLambda(2.0), 1);
    ASSERT_EQ(g.density(e, f), 1);
    EXPECT_NEAR(f.axes[0].x.min, 0.0, 1e-12);
    EXPECT_NEAR(f.axes[0].x.max, -std::log(0.001) / 2.0, 1e-6);
    EXPECT_NEAR(checkDrawable(f, "exponential"), 2.0, 1e-9);
}

TEST(FactorGraph, DiscreteStemsAndSteps) {
    auto d = discrete({{1, 0.2}, {2, 0.5}, {4, 0.3}});
    Figure f;
    FactorGraph g;
    ASSERT_EQ(g.density(*d, f), 1);
    const Axes& a = f.axes[0];
    ASSERT_EQ(a.lines.size(), 3u);
    EXPECT_EQ(a.lines[1].points.front().x, 2.0);
    EXPECT_EQ(a.lines[1].points.back().y, 0.5);
    EXPECT_LT(a.x.min, 1.0);  // the outer stems stand off the frame
    EXPECT_GT(a.x.max, 4.0);
    EXPECT_NEAR(checkDrawable(f, "discrete"), 0.5, 1e-12);

    ASSERT_EQ(g.cumulative(*d, f), 1);
    const auto& steps = f.axes[0].lines.at(0).points;
    // Flat at 0 up to the first point, then a rise of each weight at each point.
    const double want[][2] = {{1, 0}, {1, 0.2}, {2, 0.2}, {2, 0.7}, {4, 0.7}, {4, 1.0}};
    ASSERT_EQ(steps.size(), 8u);
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(steps[i + 1].x, want[i][0]) << i;
        EXPECT_NEAR(steps[i + 1].y, want[i][1], 1e-12) << i;
    }
    checkDrawable(f, "discrete cumulative");

    // A constant is one point of mass 1, on a range widened about it.
    Constant c;
    c.value = 5.0;
    ASSERT_EQ(g.density(c, f), 1);
    EXPECT_LT(f.axes[0].x.min, 5.0);
    EXPECT_GT(f.axes[0].x.max, 5.0);
    EXPECT_EQ(checkDrawable(f, "constant"), 1.0);
    ASSERT_EQ(g.cumulative(c, f), 1);
    checkDrawable(f, "constant cumulative");
}

TEST(FactorGraph, UniformStepsWithTheirJumps) {
    Uniform u;
    u.clear();
    ASSERT_EQ(u.addInterval(std::make_unique<Interval>(0, 1, 0.4)), 1);
    ASSERT_EQ(u.addInterval(std::make_unique<Interval>(2, 4, 0.6)), 1);
    Figure f;
    FactorGraph g;
    ASSERT_EQ(g.density(u, f), 1);
    // Heights 0.4 on [0,1] and 0.3 on [2,4], zero across the gap.
    bool sawFirst = false, sawSecond = false, sawGap = false;
    for (const Point& p : f.axes[0].lines.at(0).points) {
        sawFirst = sawFirst || (p.x == 0.0 && std::fabs(p.y - 0.4) < 1e-12);
        sawSecond = sawSecond || (p.x == 4.0 && std::fabs(p.y - 0.3) < 1e-12);
        sawGap = sawGap || (p.x == 2.0 && p.y == 0.0);
    }
    EXPECT_TRUE(sawFirst && sawSecond && sawGap);
    EXPECT_NEAR(checkDrawable(f, "uniform"), 0.4, 1e-12);
    ASSERT_EQ(g.cumulative(u, f), 1);
    checkDrawable(f, "uniform cumulative");
}

TEST(FactorGraph, DegenerateLawsStayDrawable) {
    Figure f;
    FactorGraph g;
    // A truncation a millionth wide: the curve is nearly flat at the normal's peak.
    Normal narrow;
    ASSERT_EQ(narrow.setTruncations(0.5, 0.500001), 1);
    ASSERT_EQ(g.density(narrow, f), 1);
    EXPECT_NEAR(checkDrawable(f, "narrow"), 1 / std::sqrt(2 * M_PI), 1e-6);
    ASSERT_EQ(g.cumulative(narrow, f), 1);
    checkDrawable(f, "narrow cumulative");

    // Beta(0.5, 0.5) has poles at both ends: the y axis is clipped well below them, and
    // the curve is drawn to the top edge.
    Beta b;
    ASSERT_EQ(b.setParameters(0.5, 0.5, 0.0, 1.0), 1);
    ASSERT_EQ(g.density(b, f), 1);
    const double top = f.axes[0].y.max;
    EXPECT_GT(top, 1 / M_PI);  // the density's least value, at the middle
    EXPECT_LT(top, 20.0);
    EXPECT_GT(checkDrawable(f, "beta pole"), top);
    EXPECT_EQ(f.axes[0].lines.size(), 1u);  // no gap where the pole was

    // No span, no graph: the warning, word for word, in the figure too.
    Relation r;
    EXPECT_EQ(g.density(r, f), 0);
    EXPECT_EQ(g.errorText(), "Warning. Can't display function graph: undeflow error");
    EXPECT_EQ(f.axes.at(0).message, g.errorText());
    EXPECT_EQ(g.cumulative(r, f), 0);
    auto none = discrete({});
    EXPECT_EQ(g.density(*none, f), 0);
    EXPECT_EQ(g.errorText(), kUnderflowWarning);
}

// With TARVEX_FIGURE_DIR set, keeps the pictures of the documentation there: density
// and cumulative side by side, of a Normal and of a Discrete factor.
TEST(FactorGraph, DocumentationPictures) {
    const char* dir = std::getenv("TARVEX_FIGURE_DIR");
    if (!dir) GTEST_SKIP() << "TARVEX_FIGURE_DIR not set";
    Normal n;
    ASSERT_EQ(n.setName("porosity"), 1);
    ASSERT_EQ(n.setMean(0.25), 1);
    ASSERT_EQ(n.setStdDeviation(0.04), 1);
    auto d = discrete({{1, 0.2}, {2, 0.5}, {4, 0.3}});
    ASSERT_EQ(d->setName("layers"), 1);
    const std::pair<const Factor*, const char*> examples[] = {{&n, "normal-factor.png"}, {d.get(), "discrete-factor.png"}};
    for (const auto& [factor, name] : examples) {
        FactorGraph g;
        Figure density, cumulative;
        ASSERT_EQ(g.density(*factor, density), 1);
        ASSERT_EQ(g.cumulative(*factor, cumulative), 1);
        Figure both;
        both.columns = 2;
        both.aspect = 0.45;
        both.axes = {density.axes[0], cumulative.axes[0]};
        CairoRenderer r;
        EXPECT_EQ(r.renderFile(both, std::string(dir) + "/" + name), 1) << r.errorText();
    }
}
