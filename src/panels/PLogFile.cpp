#include "panels/PLogFile.h"

#include <QString>
#include <QStringList>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "common/Environment.h"
#include "panels/layer/Dialogs.h"

namespace tarvex {

PLogFile::PLogFile(QWidget* parent) : Panel("LogFile", "Log File Panel", "PLogFile.ui", 0, 0, 470, 465, parent) {
    registerCallbacks();
    setLabel("MFileName", "No file selected");
}

PLogFile::PLogFile(const std::string& path, QWidget* parent) : PLogFile(parent) { load(path); }

void PLogFile::registerCallbacks() {
    registerCallback("fileOpen", [this] { fileOpen(); });
    registerCallback("close", [this] { close(); });
}

int PLogFile::load(const std::string& path) {
    std::error_code ec;
    std::ifstream in;
    // A directory opens as a stream on this system, but holds no lines to show.
    if (!std::filesystem::is_directory(path, ec)) in.open(path, std::ios::binary);
    if (!in.is_open() || !in) {
        showMessage(MessageKind::Error, "Error", "Error opening file", window());
        return 0;
    }
    setLabel("MFileName", path);
    // Gathered first and appended as one block: the same text as line by line, without
    // a relayout per line for long logs.
    QStringList lines;
    std::string line;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        lines << QString::fromLocal8Bit(line.data(), static_cast<qsizetype>(line.size()));
    }
    setText("TeText", "");
    if (!lines.isEmpty()) appendText("TeText", lines.join('\n').toStdString());
    redraw("TeText");
    return 1;
}

void PLogFile::fileOpen() {
    RememberedDirectories& dirs = Environment::instance().directories();
    FileRequest request;
    request.title = "Open log file";
    request.directory = dirs.isSet(RememberedDirectories::Model) ? dirs.modelDirectory() : ".";
    request.patterns = {"*.*"};
    request.descriptions = {"*.* (all files)"};
    request.parent = window();
    FileChoice choice;
    if (!Dialogs::current().chooseFile(request, choice)) return;
    (void)dirs.setModelDirectory(choice.directory);  // a directory that is gone is not remembered
    load(choice.path);
}

void PLogFile::close() {
    if (isModalRunning()) endModal(1);
    else hide();
}

void showLog(QWidget* parent) {
    PLogFile panel(parent);
    panel.moveToCenter();
    panel.showModal();
}

}  // namespace tarvex
