#include "model/gui/PLinkFactors.h"

#include <QTableWidget>
#include <algorithm>
#include <utility>

#include "panels/layer/Dialogs.h"

namespace tarvex {

PLinkFactors::PLinkFactors(InternalModel& model, std::vector<std::string> factorNames, bool demoMode, QWidget* parent)
    : Panel("PLinkFactors", "Link between model and sample factors", "PLinkFactors.ui", 0, 0, 433, 329, parent),
      model_(model),
      factorNames_(std::move(factorNames)) {
    registerCallback("scrollDown", [this] { scrollDown(); });
    registerCallback("scrollUp", [this] { scrollUp(); });
    registerCallback("ok", [this] { endModal(1); });
    registerCallback("cancel", [this] { endModal(0); });
    // The table selects the row itself.
    registerCallback("selectElem", [] {});
    if (demoMode) {
        setTitle("Link between model and sample factors (Demo mode)");
        setSensitive("BUp", false);
        setSensitive("BDown", false);
    }
    fillLinks(-1);
}

void PLinkFactors::fillLinks(int selectedRow) {
    // The run refuses a model whose inputs don't match the sample in number; should
    // they differ anyway, the longer list decides the rows and the other shows blanks.
    const int rows = std::max(static_cast<int>(factorNames_.size()), model_.numVariables());
    setMatrixSize("MaLinks", rows, 2);
    for (int i = 0; i < rows; ++i) {
        setCell("MaLinks", i, 0, i < static_cast<int>(factorNames_.size()) ? factorNames_[i] : "");
        setCell("MaLinks", i, 1, i < model_.numVariables() ? model_.variableName(i) : "");
    }
    auto* table = qobject_cast<QTableWidget*>(getObject("MaLinks"));
    if (!table) return;
    if (selectedRow >= 0 && selectedRow < rows) table->selectRow(selectedRow);
    else table->setCurrentCell(-1, -1);
}

void PLinkFactors::move(int by) {
    int row = -1;
    int column = -1;
    if (!selectedCell("MaLinks", row, column)) {
        showMessage(MessageKind::Error, "Error", "No model factor selected", window());
        return;
    }
    const int to = row + by;
    if (row >= model_.numVariables() || to < 0 || to >= model_.numVariables()) return;
    model_.moveVariable(row, to);
    fillLinks(to);
}

void PLinkFactors::scrollUp() { move(-1); }

void PLinkFactors::scrollDown() { move(1); }

}  // namespace tarvex
