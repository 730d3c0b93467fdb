#pragma once
// Building an expression with buttons and lists beside a text field: operators,
// parentheses, the power sign, function calls and names go in at the field's cursor,
// in place of a selection, and the cursor ends behind what went in (inside the
// parentheses of a function call). The model's expression editor and the relation
// editor share it.
//
// The four operator buttons of such a panel all fire one callback (`operation`),
// which can't tell them apart; each button is therefore watched, and the sign of the
// one pressed last is what insertOperator() puts in.
#include <string>

namespace tarvex {

class Panel;

class ExpressionInsertion {
public:
    // `field`: the text field (QLineEdit) or text (QPlainTextEdit) gadget edited.
    ExpressionInsertion(Panel& panel, std::string field);

    // Notes `sign` whenever the button `button` is pressed; 0 without such a button.
    int watchOperator(const std::string& button, const std::string& sign);
    // The sign of the operator button pressed last; 0 before any.
    int insertOperator();

    // `piece` at the cursor; 0 without a field.
    int insert(const std::string& piece);
    // "name()" with the cursor between the parentheses.
    int insertFunction(const std::string& name);
    // The chosen entry of an option menu whose first entry is a heading ("Functions"),
    // as a function call or as a name, after which the menu goes back to its heading.
    // 0 when the heading itself is chosen.
    int insertChosenFunction(const std::string& optionMenu);
    int insertChosenName(const std::string& optionMenu);

    static constexpr const char* kPower = "**";

private:
    int insertAt(const std::string& piece, int cursorBack);
    std::string chosen(const std::string& optionMenu);

    Panel& panel_;
    std::string field_;
    std::string lastSign_;
};

}  // namespace tarvex
