#include "plots/gui/FigureView.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <algorithm>
#include <cairo.h>

namespace tarvex {

namespace {

void destroySurface(void* surface) { cairo_surface_destroy(static_cast<cairo_surface_t*>(surface)); }

}  // namespace

FigureView::FigureView(QWidget* parent) : QWidget(parent) {
    setMinimumSize(120, 90);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void FigureView::setFigure(const Figure& figure) {
    figure_ = figure;
    dirty_ = true;
    update();
}

void FigureView::setPixelRatio(qreal ratio) {
    ratioOverride_ = ratio > 0.0 ? ratio : 0.0;
    update();
}

qreal FigureView::pixelRatio() const { return ratioOverride_ > 0.0 ? ratioOverride_ : devicePixelRatioF(); }

void FigureView::renderIfNeeded() {
    const qreal ratio = pixelRatio();
    const QSize logical = size().expandedTo(QSize(1, 1));
    if (!dirty_ && logical == renderedSize_ && ratio == renderedRatio_ && !image_.isNull()) return;
    const int w = std::max(1, qRound(logical.width() * ratio));
    const int h = std::max(1, qRound(logical.height() * ratio));
    // cairo's ARGB32 is Qt's premultiplied ARGB32, row for row with cairo's stride;
    // the image owns the surface and destroys it with its last copy.
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, w, h);
    const double pixelsPerPoint = ratio * logicalDpiX() / 72.0;
    (void)renderer_.renderSurface(figure_, surface, w, h, pixelsPerPoint);
    image_ = QImage(cairo_image_surface_get_data(surface), w, h, cairo_image_surface_get_stride(surface),
                    QImage::Format_ARGB32_Premultiplied, destroySurface, surface);
    image_.setDevicePixelRatio(ratio);
    renderedSize_ = logical;
    renderedRatio_ = ratio;
    dirty_ = false;
    ++renders_;
}

const QImage& FigureView::image() {
    renderIfNeeded();
    return image_;
}

const std::vector<AxesTransform>& FigureView::transforms() {
    renderIfNeeded();
    return renderer_.transforms();
}

int FigureView::axesAt(const QPointF& position) {
    const qreal r = pixelRatio();
    const auto& ts = transforms();
    for (size_t i = 0; i < ts.size(); ++i)
        if (ts[i].contains(position.x() * r, position.y() * r)) return static_cast<int>(i);
    return -1;
}

int FigureView::toData(const QPointF& position, int axes, Point& data) {
    const auto& ts = transforms();
    if (axes < 0 || axes >= static_cast<int>(ts.size())) return 0;
    const qreal r = pixelRatio();
    data = ts[static_cast<size_t>(axes)].toData(Point{position.x() * r, position.y() * r});
    return 1;
}

QRect FigureView::rubberBand() const {
    if (!banding_) return {};
    return QRect(bandStart_, bandEnd_).normalized();
}

void FigureView::paintEvent(QPaintEvent*) {
    renderIfNeeded();
    QPainter p(this);
    p.drawImage(QPointF(0, 0), image_);
    const QRect band = rubberBand();
    if (!band.isEmpty()) {
        p.setPen(QPen(Qt::black, 1, Qt::DashLine));
        p.setBrush(QColor(0, 0, 255, 40));
        p.drawRect(band);
    }
}

void FigureView::mousePressEvent(QMouseEvent* event) {
    if (!bandEnabled_ || event->button() != Qt::LeftButton) return QWidget::mousePressEvent(event);
    bandAxes_ = axesAt(event->position());
    if (bandAxes_ < 0) return;
    banding_ = true;
    bandStart_ = bandEnd_ = event->position().toPoint();
    update();
}

void FigureView::mouseMoveEvent(QMouseEvent* event) {
    if (!banding_) return QWidget::mouseMoveEvent(event);
    // The band stays inside the plot area it started in.
    const AxesTransform& t = transforms()[static_cast<size_t>(bandAxes_)];
    const qreal r = pixelRatio();
    const QPointF p = event->position();
    bandEnd_ = QPoint(qRound(std::clamp(p.x(), t.left() / r, (t.left() + t.width()) / r)),
                      qRound(std::clamp(p.y(), t.top() / r, (t.top() + t.height()) / r)));
    update();
}

void FigureView::mouseReleaseEvent(QMouseEvent* event) {
    if (!banding_) return QWidget::mouseReleaseEvent(event);
    mouseMoveEvent(event);
    const QRect band = rubberBand();
    banding_ = false;
    update();
    if (band.width() < 2 || band.height() < 2) return;
    Point a, b;
    if (!toData(bandStart_, bandAxes_, a) || !toData(bandEnd_, bandAxes_, b)) return;
    emit regionSelected(bandAxes_, std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y));
}

}  // namespace tarvex
