#pragma once
// One equation of the internal model, "Expression Editor": its name, its text built by
// typing or by inserting operators, functions and names at the cursor, and whether it
// is an output of the model (SeOutType: index 0 internal variable, 1 output, the
// expression's `type`). It checks only that both fields are filled; the model checks
// the rest through the acceptor that the editor gives.
#include <functional>
#include <string>
#include <vector>

#include "panels/layer/ExpressionInsertion.h"
#include "panels/layer/Panel.h"

namespace tarvex {

class PNewExpression : public Panel {
public:
    // Takes the name, text and type when the user accepts; returns 1 when the model
    // took them, else 0 after showing why, and the panel stays open.
    using Acceptor = std::function<int(const std::string& name, const std::string& text, int type)>;

    // `inputs` and `results`: the names offered for insertion (the model's variables,
    // and the expressions an equation at this place may use).
    PNewExpression(const std::vector<std::string>& inputs, const std::vector<std::string>& results, Acceptor acceptor,
                   QWidget* parent = nullptr);

    // Fills the fields with an equation to modify.
    void fill(const std::string& name, const std::string& text, int type);

    virtual void add();

private:
    Acceptor acceptor_;
    ExpressionInsertion insertion_;
};

}  // namespace tarvex
