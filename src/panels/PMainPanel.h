#pragma once
// The main panel: the program's one permanent window. Its workflow callbacks arrive
// with the run controller; until then they answer with their trace line.
#include <memory>
#include <string>

#include "app/LaunchRequest.h"
#include "panels/PMainPanelBase.h"

namespace tarvex {

class ConfigDatFile;

class PMainPanel : public PMainPanelBase {
public:
    PMainPanel(const std::string& name, const std::string& title, int x, int y, int width, int height,
               const std::string& directory, QWidget* parent = nullptr);
    ~PMainPanel() override;

    // The gadget that stands for "the quick save item": first menu, item 2.
    static constexpr int kFileMenu = 0;
    static constexpr int kQuickSaveItem = 2;
    // Second menu, item 5: sensitive only in demo mode.
    static constexpr int kDemoMenu = 1;
    static constexpr int kDemoOnlyItem = 5;

    const std::string disabledBitmap = "../bitmaps/oleaggInv.gif";
    const std::string enabledBitmap = "../bitmaps/oleagg.gif";
    int launching = 0;
    std::string launchPath;  // the path of the launch request line being acted on

    const std::string& mainDirectory() const { return mainDirectory_; }
    // The launch request as read at construction, for the parts the run controller applies.
    const LaunchRequest& launchRequest() const { return launchRequest_; }

    void help() override;
    void helpSearch() override;
    void AboutTarvex() override;
    void seeLog() override;
    void terminate() override;

private:
    void readLaunchRequest();

    std::string mainDirectory_;
    LaunchRequest launchRequest_;
    // The remembered directories are read now and written back when the panel goes;
    // the run controller's project takes this over when it arrives.
    std::unique_ptr<ConfigDatFile> configDat_;
};

}  // namespace tarvex
