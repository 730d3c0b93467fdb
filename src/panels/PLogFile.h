#pragma once
// The log file viewer: shows a text file that a model left behind. The program writes
// no log of its own.
#include <string>

#include "panels/layer/Panel.h"

namespace tarvex {

class PLogFile : public Panel {
public:
    explicit PLogFile(QWidget* parent = nullptr);
    // Opens `path` at once.
    explicit PLogFile(const std::string& path, QWidget* parent = nullptr);

    // Shows the file in TeText, line by line, with its path in MFileName. On an open
    // failure shows "Error opening file" and changes nothing; returns 0.
    int load(const std::string& path);

    virtual void fileOpen();
    virtual void close();

private:
    void registerCallbacks();
};

// The panel of the main panel's seeLog: centred, modal, gone when closed.
void showLog(QWidget* parent = nullptr);

}  // namespace tarvex
