#pragma once
// Shared set-up of the GUI tests: one QApplication for the whole test program (on the
// offscreen platform that ctest selects), the staged installation tree as the panel
// search path, scripted dialogs, and modal waits replaced by a hook.
#include <QApplication>
#include <QDir>
#include <QWidget>
#include <functional>
#include <memory>
#include <string>

#include "common/Environment.h"
#include "panels/layer/Dialogs.h"
#include "panels/layer/EventQueue.h"
#include "panels/layer/HelpSystem.h"
#include "panels/layer/Panel.h"
#include "panels/layer/ScriptedDialogs.h"
#include "panels/layer/SearchPath.h"
#include "plots/gui/PlotWidgets.h"

namespace tarvex::test {

inline QApplication& qtApp() {
    static int argc = 1;
    static char name[] = "test_panels";
    static char* argv[] = {name, nullptr};
    // Never deleted: widgets of static lifetime may outlive any exit order.
    static QApplication* app = new QApplication(argc, argv);
    return *app;
}

inline std::string stageDir() { return TARVEX_STAGE_DIR; }

// The search path of an installation at `root`, in the program's order.
inline void useInstallation(const std::string& root) {
    SearchPath::clear();
    for (const char* d : {"/Preprocessor/PrepPanels", "/Tarvex/TarvexPanels", "/Postprocessor/VelsPanels", "/ILOG"})
        SearchPath::append(root + d);
}

// Installs scripted dialogs for the scope of a test and returns them.
class DialogScript {
public:
    DialogScript() {
        auto d = std::make_unique<ScriptedDialogs>();
        dialogs_ = d.get();
        Dialogs::install(std::move(d));
    }
    ~DialogScript() { Dialogs::install(nullptr); }
    ScriptedDialogs* operator->() { return dialogs_; }
    ScriptedDialogs& operator*() { return *dialogs_; }

private:
    ScriptedDialogs* dialogs_;
};

// Replaces modal waits for the scope of a test.
class ModalHook {
public:
    explicit ModalHook(std::function<int(Panel&)> hook) { Panel::setModalHook(std::move(hook)); }
    ~ModalHook() { Panel::setModalHook(nullptr); }
};

// Replaces what a long operation's drain of the event queue does, for the scope of a
// test: the hook sees the progress panel as the user would at that step, and may press
// its stop button or click elsewhere.
class DrainHook {
public:
    explicit DrainHook(std::function<int()> hook) { EventQueue::setDrainHook(std::move(hook)); }
    ~DrainHook() { EventQueue::setDrainHook(nullptr); }
    DrainHook(const DrainHook&) = delete;
    DrainHook& operator=(const DrainHook&) = delete;
};

// Keeps a picture of a panel as the user sees it, when the run asks for pictures:
// TARVEX_SHOT_DIR names the folder (the tests run on a virtual X display then, e.g.
//   TARVEX_SHOT_DIR=docs/screenshots QT_QPA_PLATFORM=xcb xvfb-run -a build/tests/test_panels
// ). Returns whether a picture was written.
inline bool saveShot(QWidget& widget, const std::string& name) {
    const QByteArray dir = qgetenv("TARVEX_SHOT_DIR");
    if (dir.isEmpty()) return false;
    QDir().mkpath(QString::fromLocal8Bit(dir));
    widget.show();
    QApplication::processEvents();
    return widget.grab().save(QString::fromLocal8Bit(dir) + "/" + QString::fromStdString(name) + ".png");
}

// Sets up the usual environment of a panel test.
class PanelTestBase {
public:
    PanelTestBase() {
        qtApp();
        registerPlotWidgets();
        useInstallation(stageDir());
    }
    ~PanelTestBase() { HelpSystem::shutdown(); }
};

}  // namespace tarvex::test
