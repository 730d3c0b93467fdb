#include "model/gui/PnewFactorName.h"

namespace tarvex {

PnewFactorName::PnewFactorName(const std::string& current, QWidget* parent)
    : Panel("PnewFactorName", "New input name", "PnewFactorName.ui", 0, 0, 300, 100, parent) {
    setLabel("TeNewName", current);
    registerCallback("ok", [this] { endModal(1); });
    registerCallback("cancel", [this] { endModal(0); });
}

}  // namespace tarvex
