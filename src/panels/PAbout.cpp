#include "panels/PAbout.h"

#include <cstdio>

namespace tarvex {

PAbout::PAbout(QWidget* parent) : Panel("Tarvex about", "Tarvex About Panel", "PAbout.ui", 0, 0, 360, 220, parent) {
    registerCallback("dismiss", [this] { dismiss(); });
    char line[64];
    std::snprintf(line, sizeof line, "Software Version: %s", kTarvexVersion);
    setLabel("MLText", line);
    setBitmap("IcLogo", "../bitmaps/tarvex.gif");
}

void PAbout::dismiss() {
    if (isModalRunning()) endModal(1);
    else hide();
}

void showAbout(QWidget* parent) {
    PAbout panel(parent);
    panel.moveToCenter();
    panel.showModal();
}

}  // namespace tarvex
