#include "panels/layer/Dialogs.h"

#include "panels/layer/QtDialogs.h"

namespace tarvex {

namespace {
std::unique_ptr<Dialogs>& slot() {
    static std::unique_ptr<Dialogs> d;
    return d;
}
}  // namespace

Dialogs& Dialogs::current() {
    if (!slot()) slot() = std::make_unique<QtDialogs>();
    return *slot();
}

void Dialogs::install(std::unique_ptr<Dialogs> dialogs) { slot() = std::move(dialogs); }

std::string buttonLabel(const std::string& label) {
    if (!label.empty() && label[0] == '^') return label.substr(1);
    return label;
}

int showMessage(MessageKind kind, const std::string& title, const std::string& text, QWidget* parent) {
    MessageRequest r;
    r.kind = kind;
    r.title = title;
    r.text = text;
    r.parent = parent;
    return Dialogs::current().message(r);
}

int askQuestion(const std::string& title, const std::string& text, const std::string& firstLabel,
                const std::string& secondLabel, QWidget* parent) {
    MessageRequest r;
    r.kind = MessageKind::Question;
    r.title = title;
    r.text = text;
    r.twoButtons = true;
    r.firstLabel = firstLabel;
    r.secondLabel = secondLabel;
    r.parent = parent;
    return Dialogs::current().message(r);
}

}  // namespace tarvex
