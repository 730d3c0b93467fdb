#pragma once
// The main panel: the program's one permanent window and its workflow. It owns the
// run controller (and through it the project) and keeps its gadgets in step with what
// the project holds: which stage the user is in, what can be done next.
//
// With a generation or a run in progress (the controller is busy) every callback
// returns before touching a gadget or offering a chooser. The panel is never deleted
// beneath a running operation: closing the window or terminate during one stops the
// operation and ends the program once its loop is left.
//
// This header leaves out the controller's user interface on purpose: its message and
// file types share their names with the panel layer's dialogs, which the GUI tests
// include. The accessors below give tests what they look at.
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "app/ConfigurationDescription.h"
#include "app/LaunchRequest.h"
#include "panels/PMainPanelBase.h"

namespace tarvex {

class ProjectConfiguration;
class QtUserInterface;
class RunController;

class PMainPanel : public PMainPanelBase {
public:
    PMainPanel(const std::string& name, const std::string& title, int x, int y, int width, int height,
               const std::string& directory, QWidget* parent = nullptr);
    ~PMainPanel() override;

    // The gadget that stands for "the quick save item": first menu, item 2; the
    // demo-only item: second menu, item 5. Separators count.
    static constexpr int kFileMenu = 0;
    static constexpr int kQuickSaveItem = 2;
    static constexpr int kDemoMenu = 1;
    static constexpr int kDemoOnlyItem = 5;

    const std::string disabledBitmap = "../bitmaps/oleaggInv.gif";
    const std::string enabledBitmap = "../bitmaps/oleagg.gif";
    int launching = 0;
    std::string launchPath;  // the path of the launch request line being acted on

    const std::string& mainDirectory() const { return mainDirectory_; }
    // The launch request as read at construction.
    const LaunchRequest& launchRequest() const { return launchRequest_; }
    RunController& controller() { return *controller_; }
    QtUserInterface& userInterface() { return *ui_; }
    ProjectConfiguration& project();
    int32_t demoMode() const;
    int32_t monteCarloMode() const;
    int32_t modified() const;
    int32_t busy() const;
    // The progress panel of the operation in progress, or null.
    Panel* progressPanel() const;

    // --- callbacks
    void ishigami() override { demo("Ishigami"); }
    void levelE() override { demo("LevelE"); }
    void linear() override { demo("Linear"); }
    void sobol0() override { demo("SobolG0"); }
    void sobol1() override { demo("SobolG1"); }
    void sobol2() override { demo("SobolG2"); }
    void sobol3() override { demo("SobolG3"); }
    void loadCfg() override;
    void saveCfg() override;
    void quickSave() override;
    void resetConfiguration() override;
    void analyse() override;
    void AboutTarvex() override;
    void help() override;
    void helpSearch() override;
    void seeLog() override;
    void visualize() override;
    void oldGeneration() override;
    void importGeneration() override;
    void velsFile() override;
    void changeSel() override;
    void selectInput() override;
    void monteCarlo() override;
    void configure() override;
    void generate() override;
    void start() override;
    void abortMonteCarlo() override;
    void terminate() override;

    // Opens the demonstration case `name` ("Ishigami", "LevelE", ...) from the
    // installation's Demo folder, whatever the case of its file name.
    virtual void demo(const std::string& name);
    // Back to an empty project outside demo mode.
    void reset();

private:
    // Counts the callbacks in progress, so that the end of the program waits for them.
    class CallbackScope;
    friend class CallbackScope;

    void readLaunchRequest();
    void applyLaunchedModel();
    void describePrep(ConfigurationDescription::Variant variant);
    void describeModel(bool withLine);
    void enableStartIfReady();
    // The file a load works on: the launch request's, or the user's choice (false when
    // none was made), whose directory becomes the remembered one.
    bool chooseOrLaunched(const std::string& title, const std::vector<std::pair<std::string, std::string>>& filters,
                          int which, bool launchedMayNameDirectory, std::string& path);
    void requestEnd();

    std::string mainDirectory_;
    LaunchRequest launchRequest_;
    std::unique_ptr<QtUserInterface> ui_;
    std::unique_ptr<RunController> controller_;
    int callbacksRunning_ = 0;
    bool endRequested_ = false;
};

}  // namespace tarvex
