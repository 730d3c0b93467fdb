#pragma once
// The run controller's user on a terminal. Messages go to the error stream
// as "tarvex-batch: Title: text" on one line; questions are answered by the
// policy the command was given and the answer is written beside them; file
// choosers choose nothing; panels close accepted as they are. Progress is a
// ProgressBar. While a long operation is in progress, Ctrl-C (SIGINT) asks
// it to stop instead of ending the process; the former handler is back once
// the operation ends.
#include <atomic>
#include <csignal>
#include <memory>
#include <string>

#include "app/UserInterface.h"

namespace tarvex::cli {

struct Console;
class ProgressBar;

struct QuestionPolicy {
    // Whether to make a new sample over one that exists: "^Yes" when true,
    // "^No" otherwise. Other questions take their first button.
    bool regenerate = true;
};

class BatchInterface : public UserInterface {
public:
    BatchInterface(Console& console, QuestionPolicy policy, bool quiet = false);
    ~BatchInterface() override;
    BatchInterface(const BatchInterface&) = delete;
    BatchInterface& operator=(const BatchInterface&) = delete;

    void message(MessageKind kind, const std::string& title, const std::string& text) override;
    int ask(const Question& question) override;
    bool chooseFile(const FileRequest& request, FileChoice& choice) override;

    void beginProgress(const ProgressRequest& request) override;
    void setPercentage(int percent) override;
    void setProgressFileLine(const std::string& text) override;
    void stepAnimation() override;
    void drainEvents() override {}
    bool stopRequested() override;
    void endProgress() override;
    void waitForPoll() override;
    void refreshWithoutInput() override {}

    PanelOutcome editPrep(PrepConfiguration&, bool) override { return PanelOutcome::Accepted; }
    PanelOutcome selectModel(ModelConfiguration&, const FactorList&, bool) override { return PanelOutcome::Accepted; }
    PanelOutcome linkFactors(InternalModel&, const FactorList&, bool) override { return PanelOutcome::Accepted; }
    PanelOutcome showSample(PrepConfiguration&, bool) override { return PanelOutcome::Accepted; }
    PanelOutcome postprocess(ProjectConfiguration&, bool) override { return PanelOutcome::Accepted; }
    PanelOutcome showLog(bool) override { return PanelOutcome::Accepted; }
    PanelOutcome showAbout(bool) override { return PanelOutcome::Accepted; }
    PanelOutcome showHelpPanel(const std::string&, bool) override { return PanelOutcome::Accepted; }

    // Keeps Ctrl-C caught from now until releaseInterrupts(), across all the
    // operations of a run (generation, then the model) and the gaps between
    // them; a Ctrl-C in a gap stops the next operation.
    void catchInterrupts();
    void releaseInterrupts();

    // Whether a stop was asked (SIGINT) during the last operation; stays
    // true after it ended, until the next one begins.
    bool interrupted() const { return interrupted_; }
    // The number of error messages shown so far.
    int errorCount() const { return errors_; }

    // "text" on one line: every run of blanks and line breaks becomes one space.
    static std::string oneLine(const std::string& text);

private:
    void installHandler();
    void restoreHandler();

    Console& console_;
    QuestionPolicy policy_;
    bool quiet_;
    std::unique_ptr<ProgressBar> bar_;
    bool handlerInstalled_ = false;
    bool held_ = false;
    struct sigaction previous_ {};
    bool interrupted_ = false;
    int errors_ = 0;
};

}  // namespace tarvex::cli
