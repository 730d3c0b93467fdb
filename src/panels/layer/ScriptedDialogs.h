#pragma once
// Dialogs for tests: answers come from a script, and every message and chooser shown
// is recorded so that tests can compare texts and titles word for word.
#include <deque>
#include <string>
#include <vector>

#include "panels/layer/Dialogs.h"

namespace tarvex {

class ScriptedDialogs : public Dialogs {
public:
    struct Shown {
        MessageKind kind;
        std::string title;
        std::string text;
        bool twoButtons;
        std::string firstLabel;   // as shown, without '^'
        std::string secondLabel;  // empty for one button
    };

    int message(const MessageRequest& request) override;
    int chooseFile(const FileRequest& request, FileChoice& choice) override;

    // Answers in order; once used up, messages answer with the first button and
    // choosers with a cancel.
    void answerMessage(int firstButton) { messageAnswers.push_back(firstButton); }
    void answerFile(const std::string& path) { fileAnswers.push_back(path); }  // "" cancels

    std::vector<Shown> messages;
    std::vector<FileRequest> choosers;
    std::deque<int> messageAnswers;
    std::deque<std::string> fileAnswers;
};

}  // namespace tarvex
