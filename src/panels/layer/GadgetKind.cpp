#include "panels/layer/GadgetKind.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QRadioButton>
#include <QTabWidget>
#include <QTableWidget>
#include <QTextEdit>

#include "panels/layer/WidgetRegistry.h"

namespace tarvex {

namespace {
bool hasPrefix(const QString& name, const char* prefix) {
    const QString p = QString::fromLatin1(prefix);
    return name.size() > p.size() && name.startsWith(p) && name.at(p.size()).isUpper();
}
}  // namespace

GadgetKind gadgetKindOf(const QObject* o) {
    if (!o) return GadgetKind::None;
    const QString name = o->objectName();
    for (const QMetaObject* m = o->metaObject(); m; m = m->superClass()) {
        // Registered by the name panel files use, without the namespace.
        const std::string cls = m->className();
        const GadgetKind registered = WidgetRegistry::kindOf(cls.substr(cls.rfind(':') == std::string::npos ? 0 : cls.rfind(':') + 1));
        if (registered != GadgetKind::None) return registered;
        if (m == &QWidget::staticMetaObject) break;
    }
    if (qobject_cast<const QCheckBox*>(o)) return GadgetKind::Toggle;
    if (qobject_cast<const QRadioButton*>(o)) return GadgetKind::Toggle;
    if (qobject_cast<const QAbstractButton*>(o)) return GadgetKind::Button;
    if (qobject_cast<const QLineEdit*>(o)) {
        if (o->property("numberField").toBool() || hasPrefix(name, "N")) return GadgetKind::NumberField;
        return GadgetKind::TextField;
    }
    if (qobject_cast<const QPlainTextEdit*>(o) || qobject_cast<const QTextEdit*>(o)) return GadgetKind::Text;
    if (qobject_cast<const QLabel*>(o)) return hasPrefix(name, "Ic") ? GadgetKind::Icon : GadgetKind::MessageLabel;
    if (auto* c = qobject_cast<const QComboBox*>(o)) return c->isEditable() ? GadgetKind::ComboBox : GadgetKind::OptionMenu;
    if (qobject_cast<const QListWidget*>(o)) return GadgetKind::StringList;
    if (qobject_cast<const QTableWidget*>(o)) return GadgetKind::Matrix;
    if (qobject_cast<const QTabWidget*>(o)) return GadgetKind::Notebook;
    if (qobject_cast<const QMenuBar*>(o)) return GadgetKind::MenuBar;
    if (qobject_cast<const QProgressBar*>(o)) return GadgetKind::Gauge;
    if (qobject_cast<const QGroupBox*>(o) || qobject_cast<const QFrame*>(o)) {
        if (!o->findChildren<QRadioButton*>(QString(), Qt::FindDirectChildrenOnly).isEmpty())
            return GadgetKind::Selector;
        return GadgetKind::Frame;
    }
    if (qobject_cast<const QWidget*>(o)) return GadgetKind::Frame;
    return GadgetKind::Other;
}

const char* gadgetKindName(GadgetKind kind) {
    switch (kind) {
        case GadgetKind::None: return "none";
        case GadgetKind::Button: return "button";
        case GadgetKind::TextField: return "text field";
        case GadgetKind::NumberField: return "number field";
        case GadgetKind::Text: return "text";
        case GadgetKind::MessageLabel: return "message label";
        case GadgetKind::Icon: return "icon";
        case GadgetKind::Toggle: return "toggle";
        case GadgetKind::Selector: return "selector";
        case GadgetKind::OptionMenu: return "option menu";
        case GadgetKind::ComboBox: return "combo box";
        case GadgetKind::StringList: return "string list";
        case GadgetKind::Matrix: return "matrix";
        case GadgetKind::Notebook: return "notebook";
        case GadgetKind::MenuBar: return "menu bar";
        case GadgetKind::Gauge: return "gauge";
        case GadgetKind::Chart: return "chart";
        case GadgetKind::Frame: return "frame";
        case GadgetKind::Other: return "other";
    }
    return "other";
}

}  // namespace tarvex
