#pragma once
// Pictures by the names the panels use ("../bitmaps/oleagg.gif", "../help/fast.bmp"),
// found through the panel search path.
#include <QPixmap>
#include <string>

namespace tarvex {

class Bitmaps {
public:
    // Declares that pictures with this file suffix are read. Returns 1 when the image
    // library can read the format, else 0 (the pictures we ship do not depend on it,
    // since lookups fall back to PNG).
    static int registerReader(const std::string& suffix);
    static bool isRegistered(const std::string& suffix);

    // The picture, or a null pixmap when no file of that name (or its PNG or SVG
    // stand-in) exists or it can't be decoded. Needs the GUI application.
    static QPixmap read(const std::string& name);
};

}  // namespace tarvex
