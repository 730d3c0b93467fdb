#include "model/gui/PNewExpression.h"

#include <QFont>
#include <QWidget>
#include <utility>

#include "panels/layer/Dialogs.h"

namespace tarvex {

PNewExpression::PNewExpression(const std::vector<std::string>& inputs, const std::vector<std::string>& results,
                               Acceptor acceptor, QWidget* parent)
    : Panel("PNewExpression", "Expression Editor", "PNewExpression.ui", 0, 0, 560, 250, parent),
      acceptor_(std::move(acceptor)),
      insertion_(*this, "TExpr") {
    if (QWidget* expr = getGadget("TExpr")) expr->setFont(QFont("monospace"));
    std::vector<std::string> inputItems{"Inputs"};
    inputItems.insert(inputItems.end(), inputs.begin(), inputs.end());
    setItems("OFactors", inputItems);
    std::vector<std::string> resultItems{"Results"};
    resultItems.insert(resultItems.end(), results.begin(), results.end());
    setItems("OResCalc", resultItems);
    setSelected("OFunctions", 0);
    setSelected("OFactors", 0);
    setSelected("OResCalc", 0);

    insertion_.watchOperator("BPlus", "+");
    insertion_.watchOperator("BMinus", "-");
    insertion_.watchOperator("BMultiply", "*");
    insertion_.watchOperator("BDivided", "/");
    registerCallback("operation", [this] { insertion_.insertOperator(); });
    registerCallback("power", [this] { insertion_.insert(ExpressionInsertion::kPower); });
    registerCallback("openPar", [this] { insertion_.insert("("); });
    registerCallback("closePar", [this] { insertion_.insert(")"); });
    registerCallback("selFunction", [this] { insertion_.insertChosenFunction("OFunctions"); });
    registerCallback("selFactors", [this] { insertion_.insertChosenName("OFactors"); });
    registerCallback("selResCalc", [this] { insertion_.insertChosenName("OResCalc"); });
    // The type is read when the equation is accepted.
    registerCallback("changeResultType", [] {});
    registerCallback("add", [this] { add(); });
    registerCallback("cancel", [this] { endModal(0); });
}

void PNewExpression::fill(const std::string& name, const std::string& text, int type) {
    setLabel("TExprName", name);
    setLabel("TExpr", text);
    setSelectorIndex("SeOutType", type == 1 ? 1 : 0);
}

void PNewExpression::add() {
    const std::string name = getLabel("TExprName");
    const std::string text = getLabel("TExpr");
    if (name.empty()) {
        showMessage(MessageKind::Error, "Error", "Expression name field empty", window());
        return;
    }
    if (text.empty()) {
        showMessage(MessageKind::Error, "Error", "Expression field empty", window());
        return;
    }
    if (acceptor_ && !acceptor_(name, text, selectorIndex("SeOutType") == 1 ? 1 : 0)) return;
    endModal(1);
}

}  // namespace tarvex
