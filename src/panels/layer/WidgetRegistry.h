#pragma once
// Widget classes that panel files may name besides Qt's own, each with the function
// that makes one and the gadget kind it is. The panel layer knows no such class
// itself: the layers above register theirs at start (the plots register their chart,
// FigureView), and the panel loader asks here before it asks Qt.
#include <functional>
#include <string>

#include "panels/layer/GadgetKind.h"

class QWidget;

namespace tarvex {

class WidgetRegistry {
public:
    using Factory = std::function<QWidget*(QWidget* parent)>;

    // Registers (or replaces) the class `className`.
    static void add(const std::string& className, Factory factory, GadgetKind kind);
    // A new widget of a registered class, or null for any other class name.
    static QWidget* create(const std::string& className, QWidget* parent);
    // The gadget kind registered for a class name; None when it is not registered.
    static GadgetKind kindOf(const std::string& className);
};

}  // namespace tarvex
