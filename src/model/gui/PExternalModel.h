#pragma once
// The progress of an external model run: the executable and the sample file it reads,
// and an animation of seven icons that moves one frame at every look at the process.
// Like PGenerate, stop only raises the flag the waiting loop looks at.
#include <QPixmap>
#include <array>
#include <cstdint>
#include <string>

#include "panels/layer/Panel.h"

namespace tarvex {

class PExternalModel : public Panel {
public:
    static constexpr int kWidth = 430;
    static constexpr int kHeight = 220;
    static constexpr int kFrames = 14;
    static constexpr int kIcons = 7;

    PExternalModel(const std::string& name, const std::string& title, QWidget* parent = nullptr);

    // The next frame: the counter goes 1, 2, ..., 14, 0, 1, ... (so frame 0 shows at
    // two steps in a row of every cycle); icon i (from 1) shows frame
    // (counter + i - 1) modulo 14.
    void step();
    int frameCounter() const { return counter_; }
    // The frame of index i (0 to 13), read from "../bitmaps/task<i+1>.bmp".
    const QPixmap& frame(int i) const { return frames_[static_cast<size_t>(i)]; }

    virtual void stop();

    int32_t continueRun = 1;

private:
    std::array<QPixmap, kFrames> frames_;
    int counter_ = 0;
};

}  // namespace tarvex
