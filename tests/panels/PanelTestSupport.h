#pragma once
// Shared set-up of the GUI tests: one QApplication for the whole test program (on the
// offscreen platform that ctest selects), the staged installation tree as the panel
// search path, scripted dialogs, and modal waits replaced by a hook.
#include <QApplication>
#include <functional>
#include <memory>
#include <string>

#include "common/Environment.h"
#include "panels/layer/Dialogs.h"
#include "panels/layer/HelpSystem.h"
#include "panels/layer/Panel.h"
#include "panels/layer/ScriptedDialogs.h"
#include "panels/layer/SearchPath.h"

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

// Sets up the usual environment of a panel test.
class PanelTestBase {
public:
    PanelTestBase() {
        qtApp();
        useInstallation(stageDir());
    }
    ~PanelTestBase() { HelpSystem::shutdown(); }
};

}  // namespace tarvex::test
