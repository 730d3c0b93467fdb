// The main panel: its gadgets, its window after construction, its help, log and about
// panels, and its end. The workflow's states are walked in MainWorkflowTest.
#include <gtest/gtest.h>

#include <QAction>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QPointer>
#include <QPushButton>
#include <filesystem>
#include <map>

#include "PanelTestSupport.h"
#include "TestSupport.h"
#include "common/Environment.h"
#include "panels/PMainPanel.h"

using namespace tarvex;
using namespace tarvex::test;

namespace {

const char* kTitle = "Tarvex: Simulation environment for uncertainty and sensitivity analysis";

class MainPanelTest : public ::testing::Test, public PanelTestBase {
protected:
    std::unique_ptr<PMainPanel> make() {
        return std::make_unique<PMainPanel>("PMainPanel", kTitle, 30, 154, 500, 500, "/opt/tarvex");
    }
};

TEST_F(MainPanelTest, EveryGadgetExistsWithItsKind) {
    auto panel = make();
    ASSERT_EQ(panel->isLoaded(), 1) << panel->errorText();
    const std::map<std::string, GadgetKind> gadgets = {
        {"MnMenu", GadgetKind::MenuBar},          {"MlPrepVels", GadgetKind::MessageLabel},
        {"TeConfiguration", GadgetKind::Text},    {"TeExternalConf", GadgetKind::Text},
        {"SelSamplesSource", GadgetKind::Selector}, {"BMonteCarlo", GadgetKind::Button},
        {"BConfigure", GadgetKind::Button},       {"BGenerate", GadgetKind::Button},
        {"BOld", GadgetKind::Button},             {"TOldGeneration", GadgetKind::TextField},
        {"BImport", GadgetKind::Button},          {"TImportFile", GadgetKind::TextField},
        {"BVisualize", GadgetKind::Button},       {"BSelectInput", GadgetKind::Button},
        {"BStart", GadgetKind::Button},           {"BAbortMonteCarlo", GadgetKind::Button},
        {"BSeeLog", GadgetKind::Button},          {"BAnalyse", GadgetKind::Button},
        {"BVelsFile", GadgetKind::Button},        {"TVelsFile", GadgetKind::TextField},
        {"IcArrow1", GadgetKind::Icon},           {"IcArrow2", GadgetKind::Icon}};
    for (const auto& [name, kind] : gadgets)
        EXPECT_EQ(panel->kindOf(name), kind) << name << " is a " << gadgetKindName(panel->kindOf(name));

    // The selector's entries: 0 external file, 1 saved file, 2 new configuration.
    EXPECT_EQ(panel->selectorIndex("SelSamplesSource"), 2);
    EXPECT_EQ(panel->setSelectorIndex("SelSamplesSource", 0), 1);
    EXPECT_EQ(panel->setSelectorIndex("SelSamplesSource", 3), 0);

    // Each button fires its own callback.
    const std::map<std::string, std::string> buttons = {
        {"BMonteCarlo", "monteCarlo"}, {"BConfigure", "configure"}, {"BGenerate", "generate"},
        {"BOld", "oldGeneration"},     {"BImport", "importGeneration"}, {"BVisualize", "visualize"},
        {"BSelectInput", "selectInput"}, {"BStart", "start"},       {"BAbortMonteCarlo", "abortMonteCarlo"},
        {"BSeeLog", "seeLog"},         {"BAnalyse", "analyse"},     {"BVelsFile", "velsFile"}};
    for (const auto& [button, callback] : buttons)
        EXPECT_EQ(panel->getObject(button)->property("callback").toString().toStdString(), callback) << button;
    EXPECT_EQ(panel->getObject("SelSamplesSource")->property("callback").toString(), "changeSel");

    // Every registered callback is reachable from the panel file, and nothing else is.
    std::vector<std::string> wired = panel->wiredCallbacks();
    std::vector<std::string> registered(std::begin(PMainPanelBase::kCallbacks), std::end(PMainPanelBase::kCallbacks));
    std::sort(wired.begin(), wired.end());
    std::sort(registered.begin(), registered.end());
    EXPECT_EQ(wired, registered);
}

TEST_F(MainPanelTest, ConstructionLeavesTheWelcomeState) {
    auto panel = make();
    EXPECT_EQ(panel->title(), kTitle);
    EXPECT_EQ(panel->window()->pos(), QPoint(30, 154));
    EXPECT_EQ(panel->window()->size(), QSize(730, 480));
    EXPECT_EQ(panel->window()->minimumSize(), QSize(730, 480));
    EXPECT_EQ(panel->window()->maximumSize(), QSize(730, 480));
    EXPECT_EQ(panel->mainDirectory(), "/opt/tarvex");

    // The quick save item: first menu, item 2; the demo-only item: second menu, item 5.
    ASSERT_NE(panel->menuItem("MnMenu", 0, 2), nullptr);
    EXPECT_EQ(panel->menuItem("MnMenu", 0, 2)->property("callback").toString(), "quickSave");
    ASSERT_NE(panel->menuItem("MnMenu", 1, 5), nullptr);
    EXPECT_EQ(panel->menuItem("MnMenu", 1, 5)->property("callback").toString(), "abortMonteCarlo");

    EXPECT_EQ(panel->getLabel("MlPrepVels"), "Welcome to Tarvex software.");
    EXPECT_EQ(panel->getText("TeConfiguration"), "No configuration loaded");
    EXPECT_EQ(panel->isVisible("IcArrow1"), 0);
    EXPECT_EQ(panel->isVisible("IcArrow2"), 0);
    EXPECT_EQ(panel->launching, 0);
    // The load buttons carry the folder picture in both states.
    for (const char* b : {"BVelsFile", "BOld", "BImport"}) {
        const QIcon icon = qobject_cast<QPushButton*>(panel->getObject(b))->icon();
        EXPECT_FALSE(icon.pixmap(QSize(24, 20), QIcon::Normal).isNull()) << b;
        EXPECT_FALSE(icon.pixmap(QSize(24, 20), QIcon::Disabled).isNull()) << b;
    }
}

TEST_F(MainPanelTest, EveryCallbackHasItsOperation) {
    // The registration order of the panel file.
    const std::vector<std::string> order = {
        "ishigami", "loadCfg", "analyse", "sobol1", "AboutTarvex", "help", "seeLog", "visualize", "oldGeneration",
        "helpSearch", "linear", "changeSel", "selectInput", "monteCarlo", "configure", "quickSave", "generate",
        "sobol3", "levelE", "resetConfiguration", "velsFile", "start", "sobol0", "saveCfg", "importGeneration",
        "sobol2", "abortMonteCarlo", "terminate"};
    EXPECT_EQ(std::vector<std::string>(std::begin(PMainPanelBase::kCallbacks), std::end(PMainPanelBase::kCallbacks)),
              order);
    // None of them is left to the trace line of an unimplemented callback.
    DialogScript dialogs;
    ModalHook hook([](Panel&) { return 0; });
    auto panel = make();
    testing::internal::CaptureStderr();
    for (const std::string& cb : order)
        if (cb != "terminate") panel->invokeCallback(cb);
    EXPECT_EQ(testing::internal::GetCapturedStderr().find("method ..."), std::string::npos);
    HelpSystem::shutdown();
}

TEST_F(MainPanelTest, HelpEntryPointsOpenTheirPages) {
    auto panel = make();
    HelpSystem::shutdown();
    QKeyEvent f1(QEvent::KeyPress, Qt::Key_F1, Qt::NoModifier);
    QCoreApplication::sendEvent(panel->getGadget("TVelsFile"), &f1);
    EXPECT_EQ(HelpSystem::currentPage(), "index.html");
    ASSERT_NE(HelpSystem::viewer(), nullptr);
    EXPECT_EQ(HelpSystem::viewer()->isShown(), 1);

    panel->invokeCallback("helpSearch");
    EXPECT_EQ(HelpSystem::currentPage(), "search.html");
    panel->invokeCallback("help");
    EXPECT_EQ(HelpSystem::currentPage(), "index.html");
}

TEST_F(MainPanelTest, AboutAndLogPanelsOpenModally) {
    auto panel = make();
    std::vector<std::string> seen;
    ModalHook hook([&](Panel& p) {
        seen.push_back(p.name() + "|" + p.title());
        if (p.name() == "Tarvex about") seen.push_back(p.getLabel("MLText"));
        if (p.name() == "LogFile") seen.push_back(p.getLabel("MFileName") + "|" + p.getText("TeText"));
        return 1;
    });
    panel->invokeCallback("AboutTarvex");
    panel->invokeCallback("seeLog");
    EXPECT_EQ(seen, (std::vector<std::string>{"Tarvex about|Tarvex About Panel", "Software Version: 2.2.1",
                                              "LogFile|Log File Panel", "No file selected|"}));
}

TEST_F(MainPanelTest, TerminateDeletesThePanelAndWritesTheRememberedDirectories) {
    ScratchDir dir;
    Environment& env = Environment::instance();
    const std::string saved = env.mainDir();
    env.setMainDir(dir.path().string());
    {
        CurrentDirGuard cwd(dir.path());
        auto* panel = make().release();
        QPointer<QWidget> window = panel->window();
        EXPECT_FALSE(std::filesystem::exists(dir.file("config.dat")));
        panel->invokeCallback("terminate");
        EXPECT_FALSE(window.isNull());  // not inside the callback that asked for it
        QCoreApplication::processEvents();
        EXPECT_TRUE(window.isNull());
        EXPECT_EQ(readFile(dir.file("config.dat")), "\n\n\n\n\n");
    }
    env.setMainDir(saved);
}

TEST_F(MainPanelTest, ClosingTheWindowEndsTheProgramTheSameWay) {
    auto* panel = make().release();
    QPointer<QWidget> window = panel->window();
    panel->show();
    window->close();
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    EXPECT_TRUE(window.isNull());
}

}  // namespace
