#include "model/gui/PIntModel.h"

#include <QBrush>
#include <QColor>
#include <QFont>
#include <QTableWidget>
#include <utility>
#include <vector>

#include "common/Environment.h"
#include "model/gui/PIntModFacList.h"
#include "model/gui/PNewExpression.h"
#include "panels/layer/Dialogs.h"

namespace tarvex {

namespace {

constexpr const char* kEditedTitle = "Warning: model edited";
constexpr const char* kReadFailedText = "Error reading the internal model file";
constexpr const char* kSaveFailedText = "I cannot save the file";

std::vector<std::string> variableNames(InternalModel& model) {
    std::vector<std::string> names;
    for (int i = 0; i < model.numVariables(); ++i) names.push_back(model.variableName(i));
    return names;
}

std::vector<std::string> expressionNames(InternalModel& model, int below) {
    std::vector<std::string> names;
    for (int i = 0; i < below && i < model.numExpressions(); ++i) names.push_back(model.expressionName(i));
    return names;
}

FileRequest modelFileRequest(const std::string& title, bool save, QWidget* parent) {
    FileRequest r;
    r.title = title;
    const std::string& dir = Environment::instance().directories().modelDirectory();
    r.directory = dir.empty() ? "." : dir;
    r.patterns = {"*.imd"};
    r.descriptions = {"*.imd (internal model)"};
    r.save = save;
    r.parent = parent;
    return r;
}

}  // namespace

PIntModel::PIntModel(InternalModel& model, QWidget* parent)
    : Panel("PIntModel", "Internal Model Editor", "PIntModel.ui", 0, 0, 620, 440, parent), model_(model) {
    registerCallback("exit", [this] { exit(); });
    registerCallback("textModified", [this] { textModified(); });
    registerCallback("open", [this] { open(); });
    registerCallback("saveAs", [this] { saveAs(); });
    registerCallback("doubleClick", [this] { modifyExpression(); });
    registerCallback("save", [this] { save(); });
    registerCallback("newModel", [this] { newModel(); });
    registerCallback("modifyExpression", [this] { modifyExpression(); });
    registerCallback("addExpression", [this] { addExpression(); });
    registerCallback("deleteExpression", [this] { deleteExpression(); });
    registerCallback("modifyFactors", [this] { modifyFactors(); });
    // A click selects the row; the table does that itself.
    registerCallback("click", [] {});
    registerCallback("ok", [this] { ok(); });
    if (QWidget* table = getGadget("MaExpress")) table->setFont(QFont("monospace"));
    fill();
}

void PIntModel::fill() {
    setLabel("TModelName", model_.name());
    setItems("OInFactors", variableNames(model_));
    setSelected("OInFactors", model_.numVariables() > 0 ? 0 : -1);
    fillExpressions(-1);
}

void PIntModel::fillExpressions(int selectedRow) {
    const int n = model_.numExpressions();
    setMatrixSize("MaExpress", n + kEmptyRows, 2);
    auto* table = qobject_cast<QTableWidget*>(getObject("MaExpress"));
    for (int i = 0; i < n; ++i) {
        setCell("MaExpress", i, 0, model_.expressionName(i));
        setCell("MaExpress", i, 1, model_.expressionText(i));
        if (QTableWidgetItem* item = table ? table->item(i, 0) : nullptr) {
            item->setForeground(QBrush(QColor(model_.expressionType(i) == 1 ? "blue" : "red")));
            item->setBackground(QBrush(QColor("white")));
        }
    }
    for (int i = n; i < n + kEmptyRows; ++i) {
        setCell("MaExpress", i, 0, "");
        setCell("MaExpress", i, 1, "");
    }
    if (!table) return;
    if (selectedRow >= 0 && selectedRow < n) table->selectRow(selectedRow);
    else table->setCurrentCell(-1, -1);
}

int PIntModel::selectedExpression(const char* beyondList) {
    int row = -1;
    int column = -1;
    if (!selectedCell("MaExpress", row, column)) {
        showMessage(MessageKind::Error, "Error", "No row selected", window());
        return -1;
    }
    if (row >= model_.numExpressions()) {
        showMessage(MessageKind::Error, "Error", beyondList, window());
        return -1;
    }
    return row;
}

void PIntModel::showRefusal() { showMessage(MessageKind::Error, "Error", model_.errorText(), window()); }

void PIntModel::addExpression() {
    const int position = model_.numExpressions();  // new equations go last
    PNewExpression editor(variableNames(model_), expressionNames(model_, position),
                          [this, position](const std::string& name, const std::string& text, int type) {
                              if (model_.addExpression(position, name, text, static_cast<int16_t>(type))) return 1;
                              showRefusal();
                              return 0;
                          },
                          window());
    editor.moveToCenter();
    if (editor.showModal() != 1) return;
    edited_ = true;
    fillExpressions(position);
}

void PIntModel::modifyExpression() {
    const int row = selectedExpression("No equation to modify");
    if (row < 0) return;
    PNewExpression editor(variableNames(model_), expressionNames(model_, row),
                          [this, row](const std::string& name, const std::string& text, int type) {
                              if (model_.modifyExpression(row, name, text, static_cast<int16_t>(type))) return 1;
                              showRefusal();
                              return 0;
                          },
                          window());
    editor.fill(model_.expressionName(row), model_.expressionText(row), model_.expressionType(row));
    editor.moveToCenter();
    if (editor.showModal() != 1) return;
    edited_ = true;
    fillExpressions(row);
}

void PIntModel::deleteExpression() {
    const int row = selectedExpression("No expression to delete");
    if (row < 0) return;
    if (!askQuestion("Delete expression", "Do you really want to delete the expression?", "^Proceed", "", window()))
        return;
    if (!model_.removeExpression(row)) {
        showRefusal();
        return;
    }
    edited_ = true;
    fillExpressions(-1);
}

void PIntModel::modifyFactors() {
    PIntModFacList list(model_, window());
    list.moveToCenter();
    if (list.showModal() != 1) return;
    model_ = list.model();
    edited_ = true;
    fill();
}

void PIntModel::textModified() {
    model_.setName(getLabel("TModelName"));
    edited_ = true;
}

int PIntModel::questionWhenEdited(const char* text, const char* firstLabel) {
    if (!edited_) return 1;
    return askQuestion(kEditedTitle, text, firstLabel, "", window());
}

void PIntModel::newModel() {
    if (!questionWhenEdited("The model has been edited.\nDo you want to lose changes?", "^Proceed")) return;
    // The inputs stay: they stand for the sample's factors, which a new set of
    // equations still reads.
    InternalModel fresh;
    for (const std::string& name : variableNames(model_))
        if (!fresh.addVariable(name)) break;
    model_ = std::move(fresh);
    edited_ = true;
    fill();
}

void PIntModel::open() {
    if (!questionWhenEdited("The model has been edited.\nDo you want to lose changes?", "^Proceed")) return;
    FileChoice choice;
    if (!Dialogs::current().chooseFile(modelFileRequest("Select the internal model to load", false, window()), choice))
        return;
    // A failed read clears the model it reads into: never the one under edit.
    InternalModel loaded;
    if (!loaded.readFile(choice.path)) {
        showMessage(MessageKind::Error, "Error", kReadFailedText, window());
        return;
    }
    loaded.setFileName(choice.path);
    (void)Environment::instance().directories().setModelDirectory(choice.directory);
    model_ = std::move(loaded);
    edited_ = true;
    fill();
}

int PIntModel::saveTo(const std::string& path) {
    InternalModel named(model_);
    named.setFileName(path);
    if (!named.writeFile(path)) {
        showMessage(MessageKind::Error, "Error", kSaveFailedText, window());
        return 0;
    }
    model_.setFileName(path);
    return 1;
}

int PIntModel::saveModel() {
    if (model_.fileName() == "nofile") {
        FileChoice choice;
        if (!Dialogs::current().chooseFile(modelFileRequest("Save the internal model", true, window()), choice))
            return 0;
        if (!saveTo(choice.path)) return 0;
        (void)Environment::instance().directories().setModelDirectory(choice.directory);
        return 1;
    }
    return saveTo(model_.fileName());
}

void PIntModel::save() { saveModel(); }

void PIntModel::saveAs() {
    FileChoice choice;
    if (!Dialogs::current().chooseFile(modelFileRequest("Save the internal model", true, window()), choice)) return;
    if (saveTo(choice.path)) (void)Environment::instance().directories().setModelDirectory(choice.directory);
}

void PIntModel::ok() {
    if (edited_ &&
        askQuestion(kEditedTitle, "The model has been edited.\nDo you want to save changes in a file?", "^Yes", "",
                    window())) {
        // A save that fails or is cancelled keeps the editor open: nothing is lost.
        if (!saveModel()) return;
    }
    endModal(1);
}

void PIntModel::exit() {
    if (!edited_) {
        endModal(0);
        return;
    }
    endModal(askQuestion(kEditedTitle, "The model has been edited.\nDo you want to save changes?", "^Yes", "",
                         window())
                 ? 1
                 : 0);
}

}  // namespace tarvex
