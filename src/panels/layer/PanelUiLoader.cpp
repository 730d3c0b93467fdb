#include "panels/layer/PanelUiLoader.h"

#include <QWidget>

#include "panels/layer/WidgetRegistry.h"

namespace tarvex {

QWidget* PanelUiLoader::createWidget(const QString& className, QWidget* parent, const QString& name) {
    if (QWidget* w = WidgetRegistry::create(className.toStdString(), parent)) {
        w->setObjectName(name);
        return w;
    }
    return QUiLoader::createWidget(className, parent, name);
}

}  // namespace tarvex
