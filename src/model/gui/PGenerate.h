#pragma once
// The progress of a sample generation or an internal model run: a gauge with its
// percentage, a heading and a file line, and a stop button. The loop that shows the
// panel owns it; stop only raises the flag that loop looks at, and hides the panel.
#include <cstdint>
#include <string>

#include "panels/layer/Panel.h"

namespace tarvex {

class PGenerate : public Panel {
public:
    static constexpr int kWidth = 376;
    static constexpr int kHeight = 156;

    PGenerate(const std::string& name, const std::string& title, QWidget* parent = nullptr);

    // A value in [0, 100] goes to the gauge and, truncated, as "%d%%" to MlPercentage;
    // anything else (a NaN included) is ignored.
    void setPercentage(double value);

    // The user's stop, also what closing the window does.
    virtual void stop();

    // 1 until the user stops.
    int32_t continueRun = 1;
};

}  // namespace tarvex
