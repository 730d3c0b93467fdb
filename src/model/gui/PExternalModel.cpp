#include "model/gui/PExternalModel.h"

#include <cstdio>

#include "panels/layer/Bitmaps.h"

namespace tarvex {

PExternalModel::PExternalModel(const std::string& name, const std::string& title, QWidget* parent)
    : Panel(name, title, "PExternalModel.ui", 0, 0, kWidth, kHeight, parent) {
    registerCallback("stop", [this] { stop(); });
    setDestroyCallback([](Panel& panel) { static_cast<PExternalModel&>(panel).stop(); });
    for (int i = 0; i < kFrames; ++i) {
        char bitmap[40];
        std::snprintf(bitmap, sizeof bitmap, "../bitmaps/task%d.bmp", i + 1);
        frames_[static_cast<size_t>(i)] = Bitmaps::read(bitmap);
    }
}

void PExternalModel::step() {
    if (++counter_ > kFrames) counter_ = 0;
    for (int i = 0; i < kIcons; ++i) {
        const std::string icon = "icon" + std::to_string(i + 1);
        setBitmap(icon, frames_[static_cast<size_t>((counter_ + i) % kFrames)]);
        redraw(icon);
    }
}

void PExternalModel::stop() {
    continueRun = 0;
    hide();
}

}  // namespace tarvex
