#include "plots/CairoRenderer.h"

#include <cairo-pdf.h>
#include <cairo-ps.h>
#include <cairo-svg.h>

#include <algorithm>
#include <cmath>
#include <ostream>

#include "common/AtomicFileWriter.h"
#include "plots/AxesPainter.h"
#include "plots/FigureGuard.h"
#include "plots/PngDensity.h"

namespace tarvex {

namespace {

constexpr double kFigurePad = 4.0;

cairo_status_t toStream(void* closure, const unsigned char* data, unsigned int length) {
    auto* out = static_cast<std::ostream*>(closure);
    out->write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(length));
    return out->good() ? CAIRO_STATUS_SUCCESS : CAIRO_STATUS_WRITE_ERROR;
}

cairo_status_t toString(void* closure, const unsigned char* data, unsigned int length) {
    static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(data), length);
    return CAIRO_STATUS_SUCCESS;
}

// Grey antialiasing and unhinted metrics: text measures the same on every surface,
// so a figure is laid out alike on paper and on screen.
void setTextOptions(cairo_t* cr) {
    cairo_font_options_t* options = cairo_font_options_create();
    cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    cairo_set_font_options(cr, options);
    cairo_font_options_destroy(options);
    cairo_set_antialias(cr, CAIRO_ANTIALIAS_GOOD);
}

std::string cairoText(cairo_status_t status) { return cairo_status_to_string(status); }

}  // namespace

int CairoRenderer::pngWidthPixels() {
    return static_cast<int>(std::lround(kWidthMillimetres / 25.4 * kPngDotsPerInch));
}

void CairoRenderer::draw(cairo_t* cr, const Figure& figure, double width, double height, double unitsPerPoint) {
    transforms_.clear();
    setTextOptions(cr);
    cairo_set_source_rgb(cr, 1, 1, 1);
    cairo_paint(cr);
    cairo_scale(cr, unitsPerPoint, unitsPerPoint);
    const double w = width / unitsPerPoint, h = height / unitsPerPoint;
    AxesPainter painter(cr, kFontPoints);
    double top = 0.0;
    if (!figure.title.empty()) {
        cairo_set_source_rgb(cr, 0, 0, 0);
        painter.text(figure.title, w / 2, kFigurePad, HAlign::Centre, VAlign::Top, 0.0, w - 2 * kFigurePad, true);
        top = kFigurePad + painter.lineHeight();
    }
    const int columns = std::max(1, figure.columns);
    const int rows = std::max(1, figure.rows());
    const double cellWidth = w / columns;
    const double cellHeight = (h - top) / rows;
    for (size_t i = 0; i < figure.axes.size(); ++i) {
        const int row = static_cast<int>(i) / columns, column = static_cast<int>(i) % columns;
        const AxesTransform t =
            painter.paint(figure.axes[i], column * cellWidth, top + row * cellHeight, cellWidth, cellHeight);
        // Kept in the surface's own units.
        transforms_.emplace_back(t.left() * unitsPerPoint, t.top() * unitsPerPoint, t.width() * unitsPerPoint,
                                 t.height() * unitsPerPoint, figure.axes[i].x, figure.axes[i].y);
    }
}

int CairoRenderer::renderSurface(const Figure& figure, cairo_surface_t* surface, int width, int height,
                                 double pixelsPerPoint) {
    if (!surface || width <= 0 || height <= 0 || !(pixelsPerPoint > 0.0) || !std::isfinite(pixelsPerPoint)) {
        errorText_ = "No surface to draw the figure on";
        return 0;
    }
    Figure guarded = figure;
    FigureGuard::apply(guarded);
    cairo_t* cr = cairo_create(surface);
    draw(cr, guarded, width, height, pixelsPerPoint);
    const cairo_status_t status = cairo_status(cr);
    cairo_destroy(cr);
    cairo_surface_flush(surface);
    if (status != CAIRO_STATUS_SUCCESS) {
        errorText_ = "The figure can't be drawn: " + cairoText(status);
        return 0;
    }
    errorText_ = "No errors";
    return 1;
}

int CairoRenderer::renderFile(const Figure& figure, const std::string& path) {
    Figure guarded = figure;
    FigureGuard::apply(guarded);
    const FigureFormat format = figureFormatOf(path);
    const int ok = format == FigureFormat::Png ? writePng(guarded, path) : writeVector(guarded, path, format);
    if (ok) errorText_ = "No errors";
    return ok;
}

int CairoRenderer::writeVector(const Figure& guarded, const std::string& path, FigureFormat format) {
    const double w = fileWidthPoints(), h = w * guarded.aspect;
    cairo_status_t status = CAIRO_STATUS_SUCCESS;
    const WriteOutcome outcome = writeFileAtomically(path, [&](std::ostream& out) {
        cairo_surface_t* surface = nullptr;
        switch (format) {
            case FigureFormat::Pdf: surface = cairo_pdf_surface_create_for_stream(toStream, &out, w, h); break;
            case FigureFormat::Svg: surface = cairo_svg_surface_create_for_stream(toStream, &out, w, h); break;
            default:
                surface = cairo_ps_surface_create_for_stream(toStream, &out, w, h);
                cairo_ps_surface_set_eps(surface, format == FigureFormat::Eps ? 1 : 0);
                break;
        }
        cairo_t* cr = cairo_create(surface);
        draw(cr, guarded, w, h, 1.0);
        status = cairo_status(cr);
        cairo_destroy(cr);
        cairo_surface_finish(surface);
        if (status == CAIRO_STATUS_SUCCESS) status = cairo_surface_status(surface);
        cairo_surface_destroy(surface);
        if (status != CAIRO_STATUS_SUCCESS) out.setstate(std::ios::badbit);
    });
    if (outcome == WriteOutcome::Written) return 1;
    errorText_ = "Cannot write the figure file " + path;
    if (status != CAIRO_STATUS_SUCCESS && status != CAIRO_STATUS_WRITE_ERROR) errorText_ += ": " + cairoText(status);
    return 0;
}

int CairoRenderer::writePng(const Figure& guarded, const std::string& path) {
    const int wpx = pngWidthPixels();
    const int hpx = std::max(1, static_cast<int>(std::lround(wpx * guarded.aspect)));
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, wpx, hpx);
    cairo_t* cr = cairo_create(surface);
    draw(cr, guarded, wpx, hpx, kPngDotsPerInch / 72.0);
    cairo_status_t status = cairo_status(cr);
    cairo_destroy(cr);
    std::string png;
    if (status == CAIRO_STATUS_SUCCESS) status = cairo_surface_write_to_png_stream(surface, toString, &png);
    cairo_surface_destroy(surface);
    if (status != CAIRO_STATUS_SUCCESS) {
        errorText_ = "The figure can't be drawn: " + cairoText(status);
        return 0;
    }
    png = withPixelDensity(png, kPngDotsPerInch);
    if (!saveFileAtomically(path, [&](std::ostream& out) { out.write(png.data(), static_cast<std::streamsize>(png.size())); })) {
        errorText_ = "Cannot write the figure file " + path;
        return 0;
    }
    return 1;
}

}  // namespace tarvex
