#include "plots/gui/PlotWidgets.h"

#include "panels/layer/WidgetRegistry.h"
#include "plots/gui/FigureView.h"

namespace tarvex {

void registerPlotWidgets() {
    WidgetRegistry::add("FigureView", [](QWidget* parent) -> QWidget* { return new FigureView(parent); },
                        GadgetKind::Chart);
}

}  // namespace tarvex
