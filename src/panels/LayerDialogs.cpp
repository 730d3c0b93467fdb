#include "panels/LayerDialogs.h"

#include "panels/layer/Dialogs.h"

namespace tarvex {

int LayerDialogs::message(Kind kind, const std::string& title, const std::string& text, bool twoButtons,
                          const std::string& firstLabel, const std::string& secondLabel, QWidget* parent) {
    MessageRequest r;
    r.kind = kind == Kind::Error ? MessageKind::Error : kind == Kind::Warning ? MessageKind::Warning : MessageKind::Question;
    r.title = title;
    r.text = text;
    r.twoButtons = twoButtons;
    r.firstLabel = firstLabel;
    r.secondLabel = twoButtons ? secondLabel : std::string();
    r.parent = parent;
    return Dialogs::current().message(r);
}

int LayerDialogs::chooseFile(const std::string& title, const std::string& directory,
                             const std::vector<std::string>& patterns, const std::vector<std::string>& descriptions,
                             bool save, QWidget* parent, std::string& path, std::string& endDirectory) {
    FileRequest r;
    r.title = title;
    r.directory = directory.empty() ? std::string(".") : directory;
    r.patterns = patterns;
    r.descriptions = descriptions;
    r.save = save;
    r.parent = parent;
    FileChoice choice;
    const int chosen = Dialogs::current().chooseFile(r, choice);
    path = choice.path;
    endDirectory = choice.directory;
    return chosen && !choice.path.empty() ? 1 : 0;
}

}  // namespace tarvex
