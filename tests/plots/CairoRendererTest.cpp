#include <gtest/gtest.h>

#include <cairo.h>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "TestSupport.h"
#include "common/AtomicFileWriter.h"
#include "plots/CairoRenderer.h"
#include "plots/Colours.h"

using namespace tarvex;
using tarvex::test::readFile;
using tarvex::test::ScratchDir;

namespace {

// A bar of a known colour over the middle of the plot, with titles and long labels.
Figure barFigure() {
    Figure f;
    Axes a;
    a.x.min = 0;
    a.x.max = 10;
    a.y.min = -1e6;
    a.y.max = 1e6;
    a.x.title = "Sample value";
    a.y.title = "Frequency of the output";
    a.title = "Histogram of Y";
    a.bars.push_back({2, 8, -5e5, 5e5, Colours::named("Indian Red"), Colours::black()});
    a.lines.push_back({{{0, -1e6}, {10, 1e6}}, Colours::named("Blue"), LineStyle::Dash, 1});
    a.legend.push_back({"Y at t = 1", Colours::named("Indian Red"), LineStyle::Solid, true});
    f.axes.push_back(a);
    return f;
}

std::string run(const std::string& command) {
    std::string out;
    if (FILE* p = popen(command.c_str(), "r")) {
        char buf[4096];
        size_t n;
        while ((n = fread(buf, 1, sizeof buf, p)) > 0) out.append(buf, n);
        if (pclose(p) != 0) out += "\n<exit status not 0>";
    }
    return out;
}

uint32_t bigEndian(const std::string& s, size_t at) {
    uint32_t v = 0;
    for (int i = 0; i < 4; ++i) v = (v << 8) | static_cast<unsigned char>(s[at + i]);
    return v;
}

}  // namespace

TEST(CairoRenderer, EachFormatByItsExtension) {
    ScratchDir dir;
    CairoRenderer r;
    const Figure f = barFigure();
    for (const char* name : {"f.ps", "f.eps", "f.pdf", "f.svg", "f.PDF", "f.fig", "f.png"})
        ASSERT_EQ(r.renderFile(f, dir.file(name)), 1) << name << ": " << r.errorText();

    EXPECT_EQ(readFile(dir.file("f.ps")).rfind("%!PS-Adobe", 0), 0u);
    EXPECT_EQ(readFile(dir.file("f.fig")).rfind("%!PS-Adobe", 0), 0u);  // unknown: PostScript
    const std::string eps = readFile(dir.file("f.eps"));
    EXPECT_EQ(eps.rfind("%!PS-Adobe-3.0 EPSF-3.0", 0), 0u);
    EXPECT_NE(eps.find("%%BoundingBox:"), std::string::npos);
    EXPECT_EQ(readFile(dir.file("f.pdf")).rfind("%PDF-", 0), 0u);
    EXPECT_EQ(readFile(dir.file("f.PDF")).rfind("%PDF-", 0), 0u);
    const std::string svg = readFile(dir.file("f.svg"));
    EXPECT_NE(svg.find("<svg"), std::string::npos);
    EXPECT_NE(svg.find("width=\"453.543"), std::string::npos);  // 160 mm in points

    // 160 mm at 300 dpi is 1889.76 pixels; 0.75 of that is 1417.3.
    const std::string png = readFile(dir.file("f.png"));
    ASSERT_GT(png.size(), 64u);
    EXPECT_EQ(png.substr(0, 8), std::string("\x89PNG\r\n\x1a\n", 8));
    EXPECT_EQ(bigEndian(png, 16), 1890u);
    EXPECT_EQ(bigEndian(png, 20), 1418u);
    // 300 dots per inch is 11811 per metre, stated in a pHYs chunk that a PNG reader accepts.
    const size_t phys = png.find("pHYs");
    ASSERT_NE(phys, std::string::npos);
    EXPECT_EQ(bigEndian(png, phys + 4), 11811u);
    EXPECT_EQ(bigEndian(png, phys + 8), 11811u);
    cairo_surface_t* image = cairo_image_surface_create_from_png(dir.file("f.png").c_str());
    ASSERT_EQ(cairo_surface_status(image), CAIRO_STATUS_SUCCESS);

    // The bar's middle holds exactly its colour (transforms are those of the last
    // file, the PNG), and nothing is drawn on the picture's
    // edge: no label runs off it.
    const auto& t = r.transforms().at(0);
    const int w = cairo_image_surface_get_width(image), h = cairo_image_surface_get_height(image);
    const int stride = cairo_image_surface_get_stride(image);
    const unsigned char* data = cairo_image_surface_get_data(image);
    auto pixel = [&](int x, int y) {
        const uint32_t v = *reinterpret_cast<const uint32_t*>(data + y * stride + x * 4);
        return Colour{uint8_t(v >> 16), uint8_t(v >> 8), uint8_t(v)};
    };
    EXPECT_EQ(pixel(int(t.toPixelX(3)), int(t.toPixelY(2e5))), (Colour{205, 92, 92}));
    EXPECT_EQ(pixel(int(t.toPixelX(1)), int(t.toPixelY(9e5))), Colours::white());
    // The frame of the plot area lies where the transform says.
    EXPECT_EQ(pixel(int(t.left()), int(t.toPixelY(-9e5))), Colours::black());
    EXPECT_EQ(pixel(int(t.left()) + 8, int(t.toPixelY(-9e5))), Colours::white());
    for (int x = 0; x < w; ++x) {
        ASSERT_EQ(pixel(x, 0), Colours::white()) << x;
        ASSERT_EQ(pixel(x, h - 1), Colours::white()) << x;
    }
    for (int y = 0; y < h; ++y) {
        ASSERT_EQ(pixel(0, y), Colours::white()) << y;
        ASSERT_EQ(pixel(w - 1, y), Colours::white()) << y;
    }
    cairo_surface_destroy(image);
}

TEST(CairoRenderer, PostScriptAndPdfReadBackByOtherTools) {
    ScratchDir dir;
    CairoRenderer r;
    Figure f = barFigure();
    f.axes.push_back(Axes{});  // a second axes with nothing in it says so
    f.columns = 2;
    ASSERT_EQ(r.renderFile(f, dir.file("f.ps")), 1);
    ASSERT_EQ(r.renderFile(f, dir.file("f.pdf")), 1);
    EXPECT_EQ(r.transforms().size(), 2u);
    EXPECT_EQ(run("gs -q -dNOPAUSE -dBATCH -dSAFER -sDEVICE=nullpage '" + dir.file("f.ps") + "' 2>&1"), "");
    const std::string text = run("pdftotext '" + dir.file("f.pdf") + "' - 2>&1");
    for (const char* s : {"Sample value", "Frequency of the output", "Histogram of Y", "Y at t = 1", "No data", "1e+06"})
        EXPECT_NE(text.find(s), std::string::npos) << s << " in:\n" << text;
}

TEST(CairoRenderer, FailedWriteLeavesTheOldFileAndSaysWhy) {
    ScratchDir dir;
    CairoRenderer r;
    for (const char* ext : {".pdf", ".png"}) {
        const std::string p = dir.file(std::string("old") + ext);
        tarvex::test::writeFile(p, "the former picture\n");
        ScopedWriteFailure full(100);
        EXPECT_EQ(r.renderFile(barFigure(), p), 0);
        EXPECT_EQ(r.errorText(), "Cannot write the figure file " + p);
        EXPECT_EQ(readFile(p), "the former picture\n");
    }
    EXPECT_EQ(r.renderFile(barFigure(), dir.file("no/such/dir/f.ps")), 0);
    EXPECT_EQ(r.errorText(), "Cannot write the figure file " + dir.file("no/such/dir/f.ps"));
}

TEST(CairoRenderer, NonFiniteFigureStillRenders) {
    Figure f;
    Axes a;
    a.x.min = NAN;
    a.x.max = INFINITY;
    a.y.scale = Scale::Log;
    a.y.min = -5;
    a.y.max = 0;
    a.lines.push_back({{{NAN, 1}, {INFINITY, 2}, {1, -INFINITY}}, {}, LineStyle::DashDot, NAN});
    a.wedges.push_back({0.5, 0.5, NAN, 0, 90, {}, {}, "w"});
    f.axes.push_back(a);
    f.aspect = NAN;
    ScratchDir dir;
    CairoRenderer r;
    ASSERT_EQ(r.renderFile(f, dir.file("nan.pdf")), 1) << r.errorText();
    EXPECT_NE(run("pdftotext '" + dir.file("nan.pdf") + "' -").find("No data"), std::string::npos);
    cairo_surface_t* s = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 300, 200);
    EXPECT_EQ(r.renderSurface(f, s, 300, 200, 1.0), 1);
    EXPECT_EQ(r.renderSurface(f, nullptr, 300, 200, 1.0), 0);
    cairo_surface_destroy(s);
}
