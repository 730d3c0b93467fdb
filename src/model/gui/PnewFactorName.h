#pragma once
// Asks for a new name of a model input. The model judges the name; this panel only
// collects it.
#include <string>

#include "panels/layer/Panel.h"

namespace tarvex {

class PnewFactorName : public Panel {
public:
    explicit PnewFactorName(const std::string& current, QWidget* parent = nullptr);
    // The name typed, once accepted.
    std::string newName() const { return getLabel("TeNewName"); }
};

}  // namespace tarvex
