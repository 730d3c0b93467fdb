#pragma once
// The dialogs on screen: QMessageBox and QFileDialog.
#include "panels/layer/Dialogs.h"

namespace tarvex {

class QtDialogs : public Dialogs {
public:
    int message(const MessageRequest& request) override;
    int chooseFile(const FileRequest& request, FileChoice& choice) override;
};

// The Qt name filters for a chooser: "sample files (*.sam)" for the pattern "*.sam"
// with the description "*.sam (sample files)"; "*.*" lists every file, "(*)".
std::vector<std::string> fileFilters(const FileRequest& request);

}  // namespace tarvex
