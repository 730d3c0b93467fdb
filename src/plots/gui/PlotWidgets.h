#pragma once
// Makes the plots' widget classes known to the panel loader, so that panel files can
// name them ("FigureView", the chart gadget). Call once at start, before any panel
// that holds a chart is loaded; calling again does no harm.
namespace tarvex {

void registerPlotWidgets();

}  // namespace tarvex
