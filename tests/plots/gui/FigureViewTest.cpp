#include <gtest/gtest.h>

#include <QApplication>
#include <QMouseEvent>
#include <QVBoxLayout>

#include "../../panels/PanelTestSupport.h"
#include "TestSupport.h"
#include "factors/Normal.h"
#include "panels/layer/GadgetKind.h"
#include "panels/layer/Panel.h"
#include "panels/layer/SearchPath.h"
#include "plots/Colours.h"
#include "plots/FactorGraph.h"
#include "plots/gui/FigureView.h"

using namespace tarvex;

namespace {

const char* kChartPanel = R"(<?xml version="1.0" encoding="UTF-8"?>
<ui version="4.0">
 <class>PChartTest</class>
 <widget class="QWidget" name="PChartTest">
  <layout class="QVBoxLayout" name="layout">
   <item><widget class="FigureView" name="SpSamples"/></item>
  </layout>
 </widget>
</ui>
)";

Figure lineFigure() {
    Figure f;
    Axes a;
    a.x.min = 0;
    a.x.max = 10;
    a.y.min = -1;
    a.y.max = 1;
    a.x.title = "x";
    a.y.title = "y";
    a.lines.push_back({{{0, -1}, {10, 1}}, Colours::named("Blue"), LineStyle::Solid, 1});
    f.axes.push_back(a);
    return f;
}

void mouse(QWidget& w, QEvent::Type type, QPointF at) {
    const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent e(type, at, w.mapToGlobal(at), Qt::LeftButton, held, Qt::NoModifier);
    QApplication::sendEvent(&w, &e);
}

class FigureViewTest : public ::testing::Test, public test::PanelTestBase {};

}  // namespace

TEST_F(FigureViewTest, LoadedFromAPanelFileAsTheChartGadget) {
    test::ScratchDir dir;
    test::writeFile(dir.file("PChartTest.ui"), kChartPanel);
    SearchPath::append(dir.path().string());
    Panel panel("PChartTest", "Chart", "PChartTest.ui", 0, 0, 500, 360, nullptr);
    auto* view = qobject_cast<FigureView*>(panel.getObject("SpSamples"));
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(gadgetKindOf(view), GadgetKind::Chart);
    EXPECT_STREQ(gadgetKindName(GadgetKind::Chart), "chart");

    Normal n;
    Figure f;
    FactorGraph g;
    ASSERT_EQ(g.density(n, f), 1);
    view->setFigure(f);
    test::saveShot(*panel.window(), "figure-view");
}

TEST_F(FigureViewTest, MouseMapsToDataThroughTheDrawnAxes) {
    for (qreal ratio : {1.0, 2.0}) {
        FigureView view;
        view.setPixelRatio(ratio);
        view.resize(400, 300);
        view.setFigure(lineFigure());
        const QImage& image = view.image();
        // The picture has the device's pixels: twice the widget's size at ratio 2.
        EXPECT_EQ(image.size(), QSize(qRound(400 * ratio), qRound(300 * ratio))) << ratio;
        const AxesTransform& t = view.transforms().at(0);
        // The frame is drawn where the transform puts the plot area's edges: the pixel
        // holding each edge is at least half covered by the line, and its neighbours
        // a few pixels off are background.
        const int midY = int(t.toPixelY(0.25));  // between ticks
        for (double edge : {t.left(), t.left() + t.width()}) {
            EXPECT_LT(qGray(image.pixel(int(edge), midY)), 128) << ratio;
            EXPECT_EQ(qGray(image.pixel(int(edge) + 4, midY)), 255) << ratio;
            EXPECT_EQ(qGray(image.pixel(int(edge) - 4, midY)), 255) << ratio;
        }

        const QPointF topLeft(t.left() / ratio, t.top() / ratio);
        const QPointF bottomRight((t.left() + t.width()) / ratio, (t.top() + t.height()) / ratio);
        Point p;
        ASSERT_EQ(view.toData(topLeft, 0, p), 1);
        EXPECT_NEAR(p.x, 0.0, 1e-9);
        EXPECT_NEAR(p.y, 1.0, 1e-9);
        ASSERT_EQ(view.toData(bottomRight, 0, p), 1);
        EXPECT_NEAR(p.x, 10.0, 1e-9);
        EXPECT_NEAR(p.y, -1.0, 1e-9);
        EXPECT_EQ(view.toData(topLeft, 1, p), 0);
        EXPECT_EQ(view.axesAt(QPointF(1, 1)), -1);
        EXPECT_EQ(view.axesAt((topLeft + bottomRight) / 2), 0);
    }
}

TEST_F(FigureViewTest, RubberBandSelectsInDataWithoutRedrawing) {
    FigureView view;
    view.resize(400, 300);
    view.setFigure(lineFigure());
    view.show();
    QApplication::processEvents();
    const AxesTransform t = view.transforms().at(0);
    const int renders = view.renderCount();
    EXPECT_EQ(renders, 1);

    std::vector<double> got;
    QObject::connect(&view, &FigureView::regionSelected, [&](int axes, double x0, double y0, double x1, double y1) {
        got = {double(axes), x0, y0, x1, y1};
    });
    // From a quarter of the plot area to well past its bottom right corner: the band
    // stops at the plot area.
    const QPointF start(t.left() + t.width() / 4, t.top() + t.height() / 4);
    mouse(view, QEvent::MouseButtonPress, start);
    mouse(view, QEvent::MouseMove, start + QPointF(50, 40));
    EXPECT_FALSE(view.rubberBand().isEmpty());
    view.repaint();
    mouse(view, QEvent::MouseMove, QPointF(399, 299));
    view.repaint();
    mouse(view, QEvent::MouseButtonRelease, QPointF(399, 299));
    view.repaint();
    EXPECT_EQ(view.renderCount(), renders);
    EXPECT_TRUE(view.rubberBand().isEmpty());

    // One pixel of the 400-wide widget is a few hundredths of the data.
    ASSERT_EQ(got.size(), 5u);
    EXPECT_EQ(got[0], 0.0);
    EXPECT_NEAR(got[1], 2.5, 0.05);
    EXPECT_NEAR(got[2], -1.0, 0.02);
    EXPECT_NEAR(got[3], 10.0, 0.05);
    EXPECT_NEAR(got[4], 0.5, 0.02);

    // A new figure or a new size draws again, once.
    view.resize(420, 300);
    view.repaint();
    EXPECT_EQ(view.renderCount(), renders + 1);
    view.setFigure(lineFigure());
    view.repaint();
    view.repaint();
    EXPECT_EQ(view.renderCount(), renders + 2);
}
