#pragma once
// The panel layer's dialogs, reached without their header. The run controller's user
// interface and the panel layer both name their message kinds and file requests
// MessageKind, FileRequest and FileChoice; a file that implements the one through the
// other can't see both, so it calls these instead.
#include <string>
#include <vector>

class QWidget;

namespace tarvex {

class LayerDialogs {
public:
    enum class Kind { Error, Warning, Question };

    // Dialogs::current().message: 1 when the first button was chosen. Empty labels
    // keep the dialog's own; `secondLabel` is used only with `twoButtons`.
    static int message(Kind kind, const std::string& title, const std::string& text, bool twoButtons,
                       const std::string& firstLabel, const std::string& secondLabel, QWidget* parent);
    // Dialogs::current().chooseFile with the patterns and their descriptions in order:
    // 1 with the path and the directory the chooser ended in, 0 on cancel.
    static int chooseFile(const std::string& title, const std::string& directory,
                          const std::vector<std::string>& patterns, const std::vector<std::string>& descriptions,
                          bool save, QWidget* parent, std::string& path, std::string& endDirectory);
};

}  // namespace tarvex
