#include "panels/layer/ScriptedDialogs.h"

#include <filesystem>

namespace tarvex {

int ScriptedDialogs::message(const MessageRequest& r) {
    Shown s{r.kind, r.title, r.text, r.twoButtons, buttonLabel(r.firstLabel.empty() ? "OK" : r.firstLabel),
            r.twoButtons ? buttonLabel(r.secondLabel.empty() ? "Cancel" : r.secondLabel) : std::string()};
    messages.push_back(s);
    if (messageAnswers.empty()) return 1;
    const int a = messageAnswers.front();
    messageAnswers.pop_front();
    // A dialog with one button can only be closed with it.
    return (!r.twoButtons || a) ? 1 : 0;
}

int ScriptedDialogs::chooseFile(const FileRequest& r, FileChoice& choice) {
    choosers.push_back(r);
    choice = FileChoice{};
    if (fileAnswers.empty()) return 0;
    const std::string path = fileAnswers.front();
    fileAnswers.pop_front();
    if (path.empty()) return 0;
    choice.path = path;
    choice.directory = std::filesystem::path(path).parent_path().string();
    return 1;
}

}  // namespace tarvex
