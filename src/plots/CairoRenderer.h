#pragma once
// Draws a Figure with cairo: to a file, in the format its extension names, or onto a
// caller's image surface for the screen. The same layout serves both, measured from
// the real text extents so that no label is ever cut off.
//
// Files are 160 mm wide, their height set by the figure's aspect; PNG files have
// 300 dots per inch. Text is DejaVu Sans at 9 pt, and stays text in PS, EPS and PDF.
#include <cairo.h>

#include <string>
#include <vector>

#include "plots/AxesTransform.h"
#include "plots/Figure.h"
#include "plots/FigureFormat.h"

namespace tarvex {

class CairoRenderer {
public:
    static constexpr double kWidthMillimetres = 160.0;
    static constexpr double kPngDotsPerInch = 300.0;
    static constexpr double kFontPoints = 9.0;
    static constexpr const char* kFontFamily = "DejaVu Sans";

    // The file's width in points and, for PNG, in pixels.
    static double fileWidthPoints() { return kWidthMillimetres / 25.4 * 72.0; }
    static int pngWidthPixels();

    // Writes the figure to `path` beside the old file and renames it over that file
    // only when every byte was written: a failure leaves any former file as it was.
    // 1 on success; 0 with errorText on failure.
    [[nodiscard]] int renderFile(const Figure& figure, const std::string& path);

    // Draws the figure over the whole of `surface`, `width` by `height` pixels, at
    // `pixelsPerPoint` (1.333 for a 96 dpi screen, times its device pixel ratio).
    // 1 on success; 0 with errorText when cairo refuses.
    [[nodiscard]] int renderSurface(const Figure& figure, cairo_surface_t* surface, int width, int height,
                                    double pixelsPerPoint);

    // The data-to-surface transform of each axes of the last rendering, in the
    // surface's units (pixels on an image, points in a vector file), in the order of
    // the figure's axes.
    const std::vector<AxesTransform>& transforms() const { return transforms_; }
    const std::string& errorText() const { return errorText_; }

private:
    void draw(cairo_t* cr, const Figure& guarded, double width, double height, double unitsPerPoint);
    int writeVector(const Figure& guarded, const std::string& path, FigureFormat format);
    int writePng(const Figure& guarded, const std::string& path);

    std::vector<AxesTransform> transforms_;
    std::string errorText_ = "No errors";
};

}  // namespace tarvex
