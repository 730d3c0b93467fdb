#pragma once
// A user interface for tests: it records everything shown (messages,
// questions, choosers, progress, panels) and answers from a script. A
// question without a queued answer takes the first button and a chooser
// without one chooses nothing; both are recorded as unscripted so that a test
// can tell. Panels close "accepted as is" unless a test gives them a script.
#include <chrono>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "app/UserInterface.h"

namespace tarvex::test {

class ScriptedInterface : public UserInterface {
public:
    struct Shown {
        std::string what;  // "error", "warning", "information", "question", "chooser", "progress", a panel's name
        std::string title;
        std::string text;
        std::vector<std::string> buttons;
        bool demoMode = false;
        bool unscripted = false;
    };

    // --- the script
    std::deque<int> answers;                      // button indices, in order
    std::deque<std::optional<FileChoice>> files;  // nullopt: the user cancels
    // Stops the operation in progress at the drain with this number (from 1,
    // counted over the whole test); 0 never.
    int stopAtDrain = 0;
    // Called at every drain: what a user might do meanwhile.
    std::function<void()> onDrain;
    // Panels: the function gets the object the panel works on; without one
    // the panel is accepted as is.
    std::function<PanelOutcome(PrepConfiguration&)> onEditPrep;
    std::function<PanelOutcome(ModelConfiguration&)> onSelectModel;
    std::function<PanelOutcome(InternalModel&)> onLinkFactors;
    std::function<PanelOutcome(ProjectConfiguration&)> onPostprocess;

    // --- what was shown
    std::vector<Shown> shown;
    std::vector<ProgressRequest> progress;
    std::vector<int> percentages;
    std::vector<std::string> fileLines;
    int animationSteps = 0;
    int drains = 0;
    int polls = 0;
    int openProgress = 0;  // begun and not ended

    // The shown entries of one kind, as "title|text".
    std::vector<std::string> of(const std::string& what) const {
        std::vector<std::string> out;
        for (const Shown& s : shown)
            if (s.what == what) out.push_back(s.title + "|" + s.text);
        return out;
    }

    void message(MessageKind kind, const std::string& title, const std::string& text) override {
        const char* what = kind == MessageKind::Error ? "error" : kind == MessageKind::Warning ? "warning" : "information";
        shown.push_back({what, title, text, {}, false, false});
    }
    int ask(const Question& question) override {
        const bool scripted = !answers.empty();
        shown.push_back({"question", question.title, question.text, question.buttons, false, !scripted});
        if (!scripted) return 0;
        const int answer = answers.front();
        answers.pop_front();
        return answer;
    }
    bool chooseFile(const FileRequest& request, FileChoice& choice) override {
        std::string filters;
        for (const FileFilter& f : request.filters) filters += f.label + ";";
        const bool scripted = !files.empty();
        shown.push_back({"chooser", request.title, request.directory + "|" + filters, {}, false, !scripted});
        if (!scripted) return false;
        const std::optional<FileChoice> next = files.front();
        files.pop_front();
        if (!next) return false;
        choice = *next;
        return true;
    }

    void beginProgress(const ProgressRequest& request) override {
        progress.push_back(request);
        shown.push_back({"progress", request.title, request.fileLine, {}, false, false});
        ++openProgress;
        stopped_ = false;
    }
    void setPercentage(int percent) override {
        if (percent >= 0 && percent <= 100) percentages.push_back(percent);
    }
    void setProgressFileLine(const std::string& text) override { fileLines.push_back(text); }
    void stepAnimation() override { ++animationSteps; }
    void drainEvents() override {
        ++drains;
        if (stopAtDrain > 0 && drains == stopAtDrain) stopped_ = true;
        if (onDrain) onDrain();
    }
    bool stopRequested() override { return stopped_; }
    void endProgress() override {
        --openProgress;
        stopped_ = false;
    }
    void waitForPoll() override {
        ++polls;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    void refreshWithoutInput() override {}

    PanelOutcome editPrep(PrepConfiguration& prep, bool demoMode) override {
        return panel("editPrep", demoMode, onEditPrep, prep);
    }
    PanelOutcome selectModel(ModelConfiguration& model, const FactorList&, bool demoMode) override {
        return panel("selectModel", demoMode, onSelectModel, model);
    }
    PanelOutcome linkFactors(InternalModel& model, const FactorList&, bool demoMode) override {
        return panel("linkFactors", demoMode, onLinkFactors, model);
    }
    PanelOutcome showSample(PrepConfiguration&, bool demoMode) override { return opened("showSample", "", demoMode); }
    PanelOutcome postprocess(ProjectConfiguration& project, bool demoMode) override {
        return panel("postprocess", demoMode, onPostprocess, project);
    }
    PanelOutcome showLog(bool demoMode) override { return opened("showLog", "", demoMode); }
    PanelOutcome showAbout(bool demoMode) override { return opened("showAbout", "", demoMode); }
    PanelOutcome showHelpPanel(const std::string& name, bool demoMode) override {
        return opened("showHelpPanel", name, demoMode);
    }

private:
    PanelOutcome opened(const std::string& name, const std::string& text, bool demoMode) {
        shown.push_back({name, "", text, {}, demoMode, false});
        return PanelOutcome::Accepted;
    }
    template <class T>
    PanelOutcome panel(const std::string& name, bool demoMode, const std::function<PanelOutcome(T&)>& script,
                       T& object) {
        shown.push_back({name, "", "", {}, demoMode, !script});
        return script ? script(object) : PanelOutcome::Accepted;
    }

    bool stopped_ = false;
};

}  // namespace tarvex::test
