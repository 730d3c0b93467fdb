#pragma once
// Which kind of gadget a widget of a panel file is. Panels name their gadgets with a
// kind prefix (B, T, Te, Ml, Ma, Ic, O, Se/Sel, Rg, Mn, N, Sl, F); the widget class
// decides the kind, and the prefix settles the cases one class serves twice. Classes
// of the layers above (the chart) take the kind they were registered with.
#include <string>

class QObject;

namespace tarvex {

enum class GadgetKind {
    None,          // no such gadget
    Button,        // QPushButton, QToolButton
    TextField,     // QLineEdit
    NumberField,   // QLineEdit named N..., or carrying the property numberField
    Text,          // QPlainTextEdit, QTextEdit (and QTextBrowser)
    MessageLabel,  // QLabel
    Icon,          // QLabel named Ic...
    Toggle,        // QCheckBox
    Selector,      // QGroupBox or QFrame holding radio buttons; its value is an index
    OptionMenu,    // QComboBox, not editable
    ComboBox,      // QComboBox, editable
    StringList,    // QListWidget
    Matrix,        // QTableWidget
    Notebook,      // QTabWidget
    MenuBar,       // QMenuBar
    Gauge,         // QProgressBar
    Chart,         // the plots' FigureView, known through the WidgetRegistry
    Frame,         // any other container
    Other
};

GadgetKind gadgetKindOf(const QObject* object);
const char* gadgetKindName(GadgetKind kind);

}  // namespace tarvex
