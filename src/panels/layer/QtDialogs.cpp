#include "panels/layer/QtDialogs.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>
#include <QStringList>

namespace tarvex {

std::vector<std::string> fileFilters(const FileRequest& r) {
    std::vector<std::string> out;
    for (size_t i = 0; i < r.patterns.size(); ++i) {
        // "*.*" means every file, as on the system the patterns come from; Qt would
        // read it as names holding a dot and hide executables, which have none.
        const std::string pattern = r.patterns[i] == "*.*" ? std::string("*") : r.patterns[i];
        std::string text = i < r.descriptions.size() ? r.descriptions[i] : r.patterns[i];
        // "*.sam (sample files)" reads as "sample files (*.sam)": Qt takes the last
        // parenthesis of a filter as its patterns.
        const auto open = text.find('(');
        const auto close = text.rfind(')');
        if (open != std::string::npos && close != std::string::npos && close > open)
            text = text.substr(open + 1, close - open - 1);
        out.push_back(text + " (" + pattern + ")");
    }
    return out;
}

int QtDialogs::message(const MessageRequest& r) {
    QMessageBox::Icon icon = QMessageBox::Critical;
    if (r.kind == MessageKind::Warning) icon = QMessageBox::Warning;
    if (r.kind == MessageKind::Question) icon = QMessageBox::Question;
    QMessageBox box(icon, QString::fromStdString(r.title), QString::fromStdString(r.text), QMessageBox::NoButton,
                    r.parent);
    QPushButton* first = box.addButton(QString::fromStdString(buttonLabel(r.firstLabel.empty() ? "OK" : r.firstLabel)),
                                       QMessageBox::AcceptRole);
    if (r.twoButtons) {
        QPushButton* second = box.addButton(
            QString::fromStdString(buttonLabel(r.secondLabel.empty() ? "Cancel" : r.secondLabel)), QMessageBox::RejectRole);
        box.setEscapeButton(second);
    } else {
        box.setEscapeButton(first);
    }
    box.setDefaultButton(first);
    box.exec();
    return box.clickedButton() == first ? 1 : 0;
}

int QtDialogs::chooseFile(const FileRequest& r, FileChoice& choice) {
    QFileDialog dialog(r.parent, QString::fromStdString(r.title), QString::fromStdString(r.directory));
    QStringList filters;
    for (const std::string& f : fileFilters(r)) filters << QString::fromStdString(f);
    dialog.setNameFilters(filters);
    dialog.setAcceptMode(r.save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(r.save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    // The toolkit's chooser; the platform's own would ignore the patterns' order.
    dialog.setOption(QFileDialog::DontUseNativeDialog, true);
    choice = FileChoice{};
    const int accepted = dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty();
    choice.directory = dialog.directory().absolutePath().toStdString();
    if (!accepted) return 0;
    choice.path = dialog.selectedFiles().front().toStdString();
    choice.directory = QFileInfo(dialog.selectedFiles().front()).absolutePath().toStdString();
    return 1;
}

}  // namespace tarvex
