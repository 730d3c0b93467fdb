// The dialog interface: its scripted and its Qt implementation.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QTimer>

#include "PanelTestSupport.h"
#include "TestSupport.h"
#include "panels/layer/QtDialogs.h"

using namespace tarvex;
using namespace tarvex::test;

namespace {

MessageRequest discardQuestion() {
    MessageRequest r;
    r.kind = MessageKind::Question;
    r.title = "Warning";
    r.text = "  Discard current configuration ?";
    r.twoButtons = true;
    r.firstLabel = "^Yes";
    r.secondLabel = "^No";
    return r;
}

TEST(Dialogs, ButtonLabelsDropTheMessageKeyMark) {
    EXPECT_EQ(buttonLabel("^Yes"), "Yes");
    EXPECT_EQ(buttonLabel("^Proceed"), "Proceed");
    EXPECT_EQ(buttonLabel("Cancel"), "Cancel");
    EXPECT_EQ(buttonLabel("^"), "");
    EXPECT_EQ(buttonLabel(""), "");
    EXPECT_EQ(buttonLabel("a^b"), "a^b");
}

TEST(Dialogs, TheScriptAnswersInOrderAndRecordsEveryMessage) {
    ScriptedDialogs d;
    d.answerMessage(0);
    d.answerMessage(1);
    EXPECT_EQ(d.message(discardQuestion()), 0);
    EXPECT_EQ(d.message(discardQuestion()), 1);
    EXPECT_EQ(d.message(discardQuestion()), 1);  // script used up: the first button
    ASSERT_EQ(d.messages.size(), 3u);
    EXPECT_EQ(d.messages[0].title, "Warning");
    EXPECT_EQ(d.messages[0].text, "  Discard current configuration ?");
    EXPECT_EQ(d.messages[0].firstLabel, "Yes");
    EXPECT_EQ(d.messages[0].secondLabel, "No");
    EXPECT_EQ(d.messages[0].kind, MessageKind::Question);

    // A one-button message can only be answered with its button.
    d.answerMessage(0);
    MessageRequest error;
    error.title = "Error";
    error.text = "Error opening file";
    EXPECT_EQ(d.message(error), 1);
    EXPECT_EQ(d.messages.back().firstLabel, "OK");
    EXPECT_EQ(d.messages.back().secondLabel, "");
}

TEST(Dialogs, TheScriptChoosesFilesAndRecordsTheChoosers) {
    ScriptedDialogs d;
    d.answerFile("/data/run/case.sam");
    d.answerFile("");
    FileRequest r;
    r.title = "Open preprocessed file";
    r.patterns = {"*.sam", "*.*"};
    r.descriptions = {"*.sam (sample files)", "*.* (all files)"};
    FileChoice c;
    ASSERT_EQ(d.chooseFile(r, c), 1);
    EXPECT_EQ(c.path, "/data/run/case.sam");
    EXPECT_EQ(c.directory, "/data/run");
    EXPECT_EQ(d.chooseFile(r, c), 0);  // cancelled
    EXPECT_EQ(c.path, "");
    EXPECT_EQ(d.chooseFile(r, c), 0);  // nothing scripted: cancelled
    ASSERT_EQ(d.choosers.size(), 3u);
    EXPECT_EQ(d.choosers[0].title, "Open preprocessed file");
}

TEST(Dialogs, ChooserFiltersPutTheDescriptionBeforeThePattern) {
    FileRequest r;
    r.patterns = {"*.psc", "*.*", "*.ps"};
    r.descriptions = {"*.psc (project's files)", "*.* (all files)", "plain"};
    EXPECT_EQ(fileFilters(r), (std::vector<std::string>{"project's files (*.psc)", "all files (*)", "plain (*.ps)"}));
    r.descriptions.resize(1);  // a missing description shows the pattern
    EXPECT_EQ(fileFilters(r)[2], "*.ps (*.ps)");
}

// The Qt implementation, answered by pressing its buttons once it is up.
void pressWhenShown(const QString& label) {
    QTimer::singleShot(0, [label] {
        QWidget* modal = QApplication::activeModalWidget();
        ASSERT_NE(modal, nullptr);
        for (QAbstractButton* b : modal->findChildren<QAbstractButton*>())
            if (b->text() == label) {
                b->click();
                return;
            }
        ADD_FAILURE() << "no button " << label.toStdString();
        modal->close();
    });
}

TEST(QtDialogs, MessagesShowTheirTitleTextAndReplacedButtons) {
    qtApp();
    QtDialogs d;
    QString title, text;
    QTimer::singleShot(0, [&] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            title = box->windowTitle();
            text = box->text();
        }
    });
    pressWhenShown("No");
    EXPECT_EQ(d.message(discardQuestion()), 0);
    EXPECT_EQ(title, "Warning");
    EXPECT_EQ(text, "  Discard current configuration ?");
    pressWhenShown("Yes");
    EXPECT_EQ(d.message(discardQuestion()), 1);
    MessageRequest error;
    error.title = "Error";
    error.text = "Error opening file";
    pressWhenShown("OK");
    EXPECT_EQ(d.message(error), 1);
}

TEST(QtDialogs, TheChooserGivesThePathAndItsDirectoryOrNothingOnCancel) {
    qtApp();
    ScratchDir dir;
    writeFile(dir.file("runmodel"), "x");  // all files: names without a dot too
    QtDialogs d;
    FileRequest r;
    r.title = "Open log file";
    r.directory = dir.path().string();
    r.patterns = {"*.*"};
    r.descriptions = {"*.* (all files)"};
    QString shownTitle;
    QTimer::singleShot(0, [&] {
        auto* chooser = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(chooser, nullptr);
        shownTitle = chooser->windowTitle();
        EXPECT_EQ(chooser->nameFilters(), QStringList{"all files (*)"});
        chooser->selectFile("runmodel");
        QMetaObject::invokeMethod(chooser, "accept");
    });
    FileChoice c;
    ASSERT_EQ(d.chooseFile(r, c), 1);
    EXPECT_EQ(shownTitle, "Open log file");
    EXPECT_EQ(c.path, dir.file("runmodel"));
    EXPECT_EQ(c.directory, dir.path().string());

    QTimer::singleShot(0, [] { QApplication::activeModalWidget()->close(); });
    EXPECT_EQ(d.chooseFile(r, c), 0);
    EXPECT_EQ(c.path, "");
}

}  // namespace
