#pragma once
// Everything the run controller asks of the user, and everything it shows,
// goes through this one interface: the desktop program implements it with its
// dialogs and panels, the batch tool on the terminal, tests with scripted
// answers. The engine's readers speak through the same object (it is their
// MessageSink), so that their warnings reach the user the same way.
//
// The controller runs on one thread. During a long operation it calls, at
// every step, drainEvents() and then stopRequested(): that is when a front
// end serves the user (clicks, redraws, other panels) and when the user's
// stop takes effect. A front end may call the controller again from inside
// drainEvents(); the controller's busy rule turns such calls into no-ops.
#include <string>
#include <vector>

#include "app/PanelOutcome.h"
#include "model/MessageSink.h"

namespace tarvex {

class FactorList;
class InternalModel;
class ModelConfiguration;
class PrepConfiguration;
class ProjectConfiguration;

enum class MessageKind { Error, Warning, Information };

// A question with its buttons, first to last. Labels are given as the system
// names them ("^Yes", "^No", "^Proceed"): a leading '^' is not shown.
struct Question {
    std::string title;
    std::string text;
    std::vector<std::string> buttons;
};

// A file chooser: title, the directory it opens in, and its filters in order,
// each a pattern and the label shown for it ("*.psc", "*.psc (project's files)").
struct FileFilter {
    std::string pattern;
    std::string label;
};

struct FileRequest {
    std::string title;
    std::string directory;
    std::vector<FileFilter> filters;
    bool save = false;
};

struct FileChoice {
    std::string path;       // the chosen file
    std::string directory;  // where the chooser ended, remembered by the caller
};

// The progress shown during a long operation. A gauge (sample generation,
// internal model run) shows a percentage, a heading and a file line; an
// animation (external model run) moves one frame at every poll and shows the
// model's and the sample file's paths.
enum class ProgressKind { Gauge, Animation };

struct ProgressRequest {
    ProgressKind kind = ProgressKind::Gauge;
    std::string name;       // the panel's name: "generation", "model execution", ...
    std::string title;      // "Sample generation", "Model execution", ...
    std::string heading;    // gauge only; may be empty
    std::string fileLine;   // "Output file: <path>", "Model name:  <name>", or the sample file
    std::string modelLine;  // animation only: the executable's path
};

// How a panel was closed. The panel's product is the object it was given to
// work on (a copy of a project part), to be taken over only when Accepted.
class UserInterface : public MessageSink {
public:
    ~UserInterface() override = default;

    // --- messages and questions
    // A modal message; returns when the user has seen it.
    virtual void message(MessageKind kind, const std::string& title, const std::string& text) = 0;
    // A modal question; the index of the button chosen (0 for the first).
    virtual int ask(const Question& question) = 0;
    // The readers' messages.
    void warning(const std::string& title, const std::string& text) override {
        message(MessageKind::Warning, title, text);
    }
    void error(const std::string& title, const std::string& text) override {
        message(MessageKind::Error, title, text);
    }
    // Asks with the buttons "^Yes" and "^No": true for yes.
    bool askYesNo(const std::string& title, const std::string& text) {
        return ask(Question{title, text, {"^Yes", "^No"}}) == 0;
    }

    // --- files
    // Returns true with `choice` filled, false when the user chose nothing.
    virtual bool chooseFile(const FileRequest& request, FileChoice& choice) = 0;

    // --- progress of a long operation (one at a time)
    virtual void beginProgress(const ProgressRequest& request) = 0;
    // A value of 0 to 100; others are ignored.
    virtual void setPercentage(int percent) = 0;
    // Replaces the file line ("Copying data to file...").
    virtual void setProgressFileLine(const std::string& text) = 0;
    // One frame of the animation.
    virtual void stepAnimation() = 0;
    // Serves what the user did since the last call.
    virtual void drainEvents() = 0;
    // Whether the user asked to stop the operation in progress; stays true
    // until endProgress().
    virtual bool stopRequested() = 0;
    virtual void endProgress() = 0;
    // The wait between two looks at a running external model, about 500 ms:
    // the desktop program serves events meanwhile, the batch tool sleeps.
    virtual void waitForPoll() = 0;
    // Brings the display up to date without taking user input, for waits
    // (an application run by the user) during which nothing may be clicked.
    virtual void refreshWithoutInput() = 0;

    // --- panels. Each is told whether demo mode is on (its read-only form)
    // and returns how it was closed.
    // The pre-processor on a copy of the Prep part.
    virtual PanelOutcome editPrep(PrepConfiguration& prep, bool demoMode) = 0;
    // The model selection on a copy of the Model part, over the sample's factors.
    virtual PanelOutcome selectModel(ModelConfiguration& model, const FactorList& factors, bool demoMode) = 0;
    // The link between the sample's factors and the inputs of a copy of the
    // internal model, titled "Link between model and sample factors".
    virtual PanelOutcome linkFactors(InternalModel& model, const FactorList& factors, bool demoMode) = 0;
    // The plots of the sample.
    virtual PanelOutcome showSample(PrepConfiguration& prep, bool demoMode) = 0;
    // The post-processor on the project, until the user closes it.
    virtual PanelOutcome postprocess(ProjectConfiguration& project, bool demoMode) = 0;
    virtual PanelOutcome showLog(bool demoMode) = 0;
    virtual PanelOutcome showAbout(bool demoMode) = 0;
    // The help panel of a case or topic, by its name.
    virtual PanelOutcome showHelpPanel(const std::string& name, bool demoMode) = 0;
};

}  // namespace tarvex
