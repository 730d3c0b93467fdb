#include "panels/layer/ExpressionInsertion.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextCursor>
#include <utility>

#include "panels/layer/Panel.h"

namespace tarvex {

ExpressionInsertion::ExpressionInsertion(Panel& panel, std::string field) : panel_(panel), field_(std::move(field)) {}

int ExpressionInsertion::watchOperator(const std::string& button, const std::string& sign) {
    auto* b = qobject_cast<QAbstractButton*>(panel_.getObject(button));
    if (!b) return 0;
    // `pressed` comes before `clicked`, which fires the shared callback.
    QObject::connect(b, &QAbstractButton::pressed, b, [this, sign] { lastSign_ = sign; });
    return 1;
}

int ExpressionInsertion::insertOperator() { return lastSign_.empty() ? 0 : insert(lastSign_); }

int ExpressionInsertion::insert(const std::string& piece) { return insertAt(piece, 0); }

int ExpressionInsertion::insertFunction(const std::string& name) { return insertAt(name + "()", 1); }

int ExpressionInsertion::insertChosenFunction(const std::string& optionMenu) {
    const std::string name = chosen(optionMenu);
    return name.empty() ? 0 : insertFunction(name);
}

int ExpressionInsertion::insertChosenName(const std::string& optionMenu) {
    const std::string name = chosen(optionMenu);
    return name.empty() ? 0 : insert(name);
}

std::string ExpressionInsertion::chosen(const std::string& optionMenu) {
    const int index = panel_.selectedIndex(optionMenu);
    if (index <= 0) return {};
    std::string name = panel_.itemText(optionMenu, index);
    panel_.setSelected(optionMenu, 0);
    return name;
}

int ExpressionInsertion::insertAt(const std::string& piece, int cursorBack) {
    QObject* o = panel_.getObject(field_);
    const QString text = QString::fromStdString(piece);
    if (auto* line = qobject_cast<QLineEdit*>(o)) {
        line->insert(text);
        line->setCursorPosition(line->cursorPosition() - cursorBack);
        line->setFocus();
        return 1;
    }
    if (auto* plain = qobject_cast<QPlainTextEdit*>(o)) {
        QTextCursor c = plain->textCursor();
        c.insertText(text);
        c.movePosition(QTextCursor::Left, QTextCursor::MoveAnchor, cursorBack);
        plain->setTextCursor(c);
        plain->setFocus();
        return 1;
    }
    return 0;
}

}  // namespace tarvex
