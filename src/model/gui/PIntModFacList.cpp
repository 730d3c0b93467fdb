#include "model/gui/PIntModFacList.h"

#include <QTableWidget>

#include "model/gui/PnewFactorName.h"
#include "panels/layer/Dialogs.h"

namespace tarvex {

PIntModFacList::PIntModFacList(const InternalModel& model, QWidget* parent)
    : Panel("PIntModFacList", "Model Inputs", "PIntModFacList.ui", 0, 0, 380, 360, parent), model_(model) {
    registerCallback("addFactor", [this] { addFactor(); });
    registerCallback("textEdit", [this] { addFactor(); });
    registerCallback("modify", [this] { modify(); });
    registerCallback("moveUp", [this] { moveUp(); });
    registerCallback("moveDown", [this] { moveDown(); });
    registerCallback("deleteFac", [this] { deleteFac(); });
    registerCallback("delAll", [this] { delAll(); });
    registerCallback("ok", [this] { endModal(1); });
    registerCallback("cancel", [this] { endModal(0); });
    fillList(-1);
}

void PIntModFacList::fillList(int selectedRow) {
    const int n = model_.numVariables();
    setMatrixSize("MaIntModFactors", n, 1);
    for (int i = 0; i < n; ++i) setCell("MaIntModFactors", i, 0, model_.variableName(i));
    if (auto* table = qobject_cast<QTableWidget*>(getObject("MaIntModFactors"))) {
        if (selectedRow >= 0 && selectedRow < n) table->selectRow(selectedRow);
        else table->setCurrentCell(-1, -1);
    }
}

int PIntModFacList::selectedFactor() {
    int row = -1;
    int column = -1;
    if (!selectedCell("MaIntModFactors", row, column) || row >= model_.numVariables()) {
        showMessage(MessageKind::Error, "Error", "No Factor selected", window());
        return -1;
    }
    return row;
}

void PIntModFacList::refuse() { showMessage(MessageKind::Error, "Error", model_.errorText(), window()); }

void PIntModFacList::addFactor() {
    const std::string name = getLabel("TeNewFactor");
    if (name.empty()) {
        showMessage(MessageKind::Error, "Error", "New Factor text field empty", window());
        return;
    }
    if (!model_.addVariable(name)) {
        refuse();
        return;
    }
    setLabel("TeNewFactor", "");
    fillList(model_.numVariables() - 1);
}

void PIntModFacList::modify() {
    const int row = selectedFactor();
    if (row < 0) return;
    PnewFactorName ask(model_.variableName(row), window());
    ask.moveToCenter();
    if (ask.showModal() != 1) return;
    if (!model_.renameVariable(row, ask.newName())) {
        refuse();
        return;
    }
    fillList(row);
}

void PIntModFacList::move(int by) {
    const int row = selectedFactor();
    if (row < 0) return;
    const int to = row + by;
    if (to < 0 || to >= model_.numVariables()) return;
    model_.moveVariable(row, to);
    fillList(to);
}

void PIntModFacList::moveUp() { move(-1); }

void PIntModFacList::moveDown() { move(1); }

void PIntModFacList::deleteFac() {
    const int row = selectedFactor();
    if (row < 0) return;
    if (!askQuestion("Delete", "Do you really want to delete the selected factor", "^Yes", "", window())) return;
    if (!model_.removeVariable(row)) {
        refuse();
        return;
    }
    fillList(-1);
}

void PIntModFacList::delAll() {
    if (!askQuestion("Delete", "Do you really want to delete all factors", "^Yes", "", window())) return;
    // From the first row on; what was deleted before a refusal stays deleted.
    while (model_.numVariables() > 0) {
        if (!model_.removeVariable(0)) {
            refuse();
            break;
        }
    }
    fillList(-1);
}

}  // namespace tarvex
