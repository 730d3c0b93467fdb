#include "panels/PMainPanel.h"

#include "app/ConfigDatFile.h"
#include "common/Environment.h"
#include "panels/layer/HelpSystem.h"
#include "panels/PAbout.h"
#include "panels/PLogFile.h"
#include "panels/TarvexApplication.h"

namespace tarvex {

PMainPanel::PMainPanel(const std::string& name, const std::string& title, int x, int y, int width, int height,
                       const std::string& directory, QWidget* parent)
    : PMainPanelBase(name, title, x, y, width, height, parent), mainDirectory_(directory) {
    // 1. Size, the end of the program when the window closes, the remembered state.
    setFixedSize(730, 480);
    setDestroyCallback([](Panel& panel) { terminateProgram(panel); });
    // Without an installation directory there is no config.dat to read or write.
    if (!Environment::instance().mainDir().empty())
        configDat_ = std::make_unique<ConfigDatFile>(Environment::instance());
    setBackground("gray");

    setButtonBitmap("BVelsFile", enabledBitmap, ButtonState::Sensitive);
    setButtonBitmap("BOld", enabledBitmap, ButtonState::Sensitive);
    setButtonBitmap("BImport", enabledBitmap, ButtonState::Sensitive);
    setButtonBitmap("BVelsFile", disabledBitmap, ButtonState::Insensitive);
    setButtonBitmap("BOld", disabledBitmap, ButtonState::Insensitive);
    setButtonBitmap("BImport", disabledBitmap, ButtonState::Insensitive);
    setBitmap("IcArrow1", "../bitmaps/arrow.gif");
    setBitmap("IcArrow2", "../bitmaps/arrowDown.gif");

    // 2. Nothing to generate, load, run or analyse yet.
    for (const char* g : {"BGenerate", "BOld", "BVisualize", "BImport", "BSelectInput", "BSeeLog", "BStart",
                          "BAbortMonteCarlo", "BAnalyse", "TeExternalConf"})
        setSensitive(g, false);
    setMenuItemSensitive("MnMenu", kFileMenu, kQuickSaveItem, false);
    setMenuItemSensitive("MnMenu", kDemoMenu, kDemoOnlyItem, false);

    // 3. The welcome state.
    setLabel("MlPrepVels", "Welcome to Tarvex software.");
    setText("TeConfiguration", "No configuration loaded");
    setVisible("IcArrow1", false);
    setVisible("IcArrow2", false);
    bindKey(Qt::Key_F1, [] { HelpSystem::openIndex(); });

    // 4. The launch request.
    readLaunchRequest();
}

PMainPanel::~PMainPanel() = default;

// The immediate entries run their operations at once, each on its own path and without
// a file chooser; the model entries are kept for the run controller.
void PMainPanel::readLaunchRequest() {
    launching = 1;
    if (Environment::instance().mainDir().empty() || !launchRequest_.read(Environment::instance().launchRequestPath())) {
        launching = 0;
        return;
    }
    for (const LaunchRequest::Entry& entry : launchRequest_.immediate) {
        launchPath = entry.path;
        switch (entry.kind) {
            case LaunchRequest::Kind::TarvexSampleFile: oldGeneration(); break;
            case LaunchRequest::Kind::ExternalSampleFile: importGeneration(); break;
            case LaunchRequest::Kind::TarvexConfigurationFile: velsFile(); break;
        }
    }
    launching = 0;
}

void PMainPanel::help() { HelpSystem::openIndex(); }

void PMainPanel::helpSearch() { HelpSystem::openSearch(""); }

void PMainPanel::AboutTarvex() { showAbout(window()); }

void PMainPanel::seeLog() { showLog(window()); }

void PMainPanel::terminate() { terminateProgram(*this); }

}  // namespace tarvex
