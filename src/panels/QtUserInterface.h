#pragma once
// The run controller's user in the desktop program. Messages, questions and file
// choosers go through the panel layer's dialogs with the main panel as parent.
// Progress is a PGenerate (gauge) or PExternalModel (animation) panel, shown
// application-modal without a loop of its own: the controller's loop serves the
// events (drainEvents), and the panel's stop only raises the flag that loop reads.
// The panel is deleted by endProgress, that is by the loop, never beneath it.
#include <memory>
#include <string>

#include "app/UserInterface.h"

class QWidget;

namespace tarvex {

class Panel;
class PExternalModel;
class PGenerate;

class QtUserInterface : public UserInterface {
public:
    // `owner` is the main panel: the parent of every dialog and panel opened here.
    explicit QtUserInterface(Panel* owner = nullptr);
    ~QtUserInterface() override;
    QtUserInterface(const QtUserInterface&) = delete;
    QtUserInterface& operator=(const QtUserInterface&) = delete;

    static constexpr int kPollMilliseconds = 500;

    void message(MessageKind kind, const std::string& title, const std::string& text) override;
    int ask(const Question& question) override;
    bool chooseFile(const FileRequest& request, FileChoice& choice) override;

    void beginProgress(const ProgressRequest& request) override;
    void setPercentage(int percent) override;
    void setProgressFileLine(const std::string& text) override;
    void stepAnimation() override;
    void drainEvents() override;
    bool stopRequested() override;
    void endProgress() override;
    // Serves events for 500 ms; a stop pressed meanwhile ends the wait at once, so
    // that a stopped model is ended without waiting out the slice.
    void waitForPoll() override;
    void refreshWithoutInput() override;

    // The panels that arrive with their own work (pre-processor, model selection,
    // factor links, sample plots, post-processor) are not part of this program yet:
    // each closes "accepted as is", the object it was given unchanged.
    PanelOutcome editPrep(PrepConfiguration& prep, bool demoMode) override;
    PanelOutcome selectModel(ModelConfiguration& model, const FactorList& factors, bool demoMode) override;
    PanelOutcome linkFactors(InternalModel& model, const FactorList& factors, bool demoMode) override;
    PanelOutcome showSample(PrepConfiguration& prep, bool demoMode) override;
    PanelOutcome postprocess(ProjectConfiguration& project, bool demoMode) override;
    // The log, about and help panels, each modal until closed.
    PanelOutcome showLog(bool demoMode) override;
    PanelOutcome showAbout(bool demoMode) override;
    PanelOutcome showHelpPanel(const std::string& name, bool demoMode) override;

    // The progress panel on screen, or null.
    Panel* progressPanel() const;
    PGenerate* gauge() const { return gauge_.get(); }
    PExternalModel* animation() const { return animation_.get(); }
    // Stops the operation in progress as its stop button would (the main window is
    // being closed); nothing when none runs.
    void requestStop();

private:
    QWidget* parentWidget() const;

    Panel* owner_;
    std::unique_ptr<PGenerate> gauge_;
    std::unique_ptr<PExternalModel> animation_;
};

}  // namespace tarvex
