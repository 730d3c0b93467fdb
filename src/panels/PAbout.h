#pragma once
// The about panel: the program's version.
#include "panels/layer/Panel.h"

namespace tarvex {

inline constexpr const char* kTarvexVersion = "2.2.1";

class PAbout : public Panel {
public:
    explicit PAbout(QWidget* parent = nullptr);
    virtual void dismiss();
};

// Shows the panel centred and waits until it is closed.
void showAbout(QWidget* parent = nullptr);

}  // namespace tarvex
