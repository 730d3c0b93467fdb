#pragma once
// Every dialog a user answers goes through this interface: message dialogs of three
// kinds and file choosers. The desktop program installs QtDialogs; tests install
// ScriptedDialogs, which answers from a script and records what was shown.
#include <memory>
#include <string>
#include <vector>

class QWidget;

namespace tarvex {

enum class MessageKind { Error, Warning, Question };

struct MessageRequest {
    MessageKind kind = MessageKind::Error;
    std::string title;
    std::string text;
    bool twoButtons = false;
    // Replacement labels; "^Yes" is shown as "Yes". Empty: the dialog's own "OK"/"Cancel".
    std::string firstLabel;
    std::string secondLabel;
    QWidget* parent = nullptr;
};

struct FileRequest {
    std::string title;
    std::string directory = ".";
    // Pairs such as "*.psc" and "*.psc (project's files)", in order.
    std::vector<std::string> patterns;
    std::vector<std::string> descriptions;
    bool save = false;
    QWidget* parent = nullptr;
};

struct FileChoice {
    std::string path;       // empty on cancel
    std::string directory;  // where the chooser ended
};

class Dialogs {
public:
    virtual ~Dialogs() = default;
    // Shows the message and waits; 1 when the first button was chosen, else 0.
    virtual int message(const MessageRequest& request) = 0;
    // Shows the chooser and waits; 1 with the choice, 0 on cancel.
    virtual int chooseFile(const FileRequest& request, FileChoice& choice) = 0;

    // The program's one implementation, QtDialogs unless one was installed.
    static Dialogs& current();
    static void install(std::unique_ptr<Dialogs> dialogs);
};

// The label a button shows: a leading '^' marks a key of the message database and
// is dropped.
std::string buttonLabel(const std::string& label);

// Conveniences for the usual forms.
int showMessage(MessageKind kind, const std::string& title, const std::string& text, QWidget* parent = nullptr);
int askQuestion(const std::string& title, const std::string& text, const std::string& firstLabel = "^Yes",
                const std::string& secondLabel = "^No", QWidget* parent = nullptr);

}  // namespace tarvex
