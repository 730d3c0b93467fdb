#pragma once
// The loader of panel files: Qt's, asking the WidgetRegistry first for the classes
// the program adds (the chart gadget).
#include <QUiLoader>

namespace tarvex {

class PanelUiLoader : public QUiLoader {
public:
    using QUiLoader::QUiLoader;
    QWidget* createWidget(const QString& className, QWidget* parent = nullptr, const QString& name = QString()) override;
};

}  // namespace tarvex
