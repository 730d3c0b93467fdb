#include "model/gui/PGenerate.h"

#include <cstdio>

namespace tarvex {

PGenerate::PGenerate(const std::string& name, const std::string& title, QWidget* parent)
    : Panel(name, title, "PGenerate.ui", 0, 0, kWidth, kHeight, parent) {
    registerCallback("stop", [this] { stop(); });
    // Closing the window is the stop button: the loop, not the window, ends the panel.
    setDestroyCallback([](Panel& panel) { static_cast<PGenerate&>(panel).stop(); });
}

void PGenerate::setPercentage(double value) {
    if (!(value >= 0.0 && value <= 100.0)) return;
    const int percent = static_cast<int>(value);
    char text[16];
    std::snprintf(text, sizeof text, "%d%%", percent);
    setLabel("MlPercentage", text);
    setGaugeValue("RgPercentage", percent);
}

void PGenerate::stop() {
    continueRun = 0;
    hide();
}

}  // namespace tarvex
