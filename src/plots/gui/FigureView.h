#pragma once
// The chart gadget: shows a Figure as the cairo renderer draws it, into a cairo image
// surface that a QImage wraps without a copy. The picture is redrawn only when the
// figure, the size or the device pixel ratio changes; a rubber band drawn over it
// costs no redraw. Mouse positions map to data through the very transforms that drew
// the axes.
#include <QImage>
#include <QPoint>
#include <QWidget>
#include <vector>

#include "plots/AxesTransform.h"
#include "plots/CairoRenderer.h"
#include "plots/Figure.h"

namespace tarvex {

class FigureView : public QWidget {
    Q_OBJECT

public:
    explicit FigureView(QWidget* parent = nullptr);

    void setFigure(const Figure& figure);
    const Figure& figure() const { return figure_; }

    // The axes whose plot area holds a widget position, or -1.
    int axesAt(const QPointF& position);
    // The data coordinates of a widget position in the given axes (the position may
    // lie outside its plot area); 0 when there is no such axes.
    [[nodiscard]] int toData(const QPointF& position, int axes, Point& data);
    // The transforms of the last picture, in device pixels.
    const std::vector<AxesTransform>& transforms();

    // The picture as shown, rendering it first if it is out of date.
    const QImage& image();
    // How many times the figure has been rendered.
    int renderCount() const { return renders_; }
    // The ratio used instead of the screen's when positive (pictures at a chosen
    // resolution, and tests); 0 restores the screen's.
    void setPixelRatio(qreal ratio);
    qreal pixelRatio() const;

    // Whether dragging draws a rubber band (on by default).
    void setRubberBandEnabled(bool on) { bandEnabled_ = on; }
    // The band being dragged, in widget coordinates; empty when none.
    QRect rubberBand() const;
    const std::string& errorText() const { return renderer_.errorText(); }
    QSize sizeHint() const override { return {400, 300}; }

signals:
    // A rubber band released over an axes: the rectangle in its data coordinates,
    // clamped to the plot area.
    void regionSelected(int axes, double xMin, double yMin, double xMax, double yMax);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void renderIfNeeded();

    Figure figure_;
    CairoRenderer renderer_;
    QImage image_;
    bool dirty_ = true;
    QSize renderedSize_;
    qreal renderedRatio_ = 0.0;
    qreal ratioOverride_ = 0.0;
    int renders_ = 0;
    bool bandEnabled_ = true;
    bool banding_ = false;
    int bandAxes_ = -1;
    QPoint bandStart_;
    QPoint bandEnd_;
};

}  // namespace tarvex
