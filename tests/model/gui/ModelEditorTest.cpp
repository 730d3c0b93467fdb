// The internal model editor, its expression editor and its list of inputs, driven
// through their widgets; the models they build are compared with the same edits made
// through the engine.
#include <gtest/gtest.h>

#include <QComboBox>
#include <QLineEdit>
#include <QTableWidget>
#include <filesystem>
#include <functional>

#include "ModelGuiTestSupport.h"
#include "TestSupport.h"
#include "model/gui/PIntModFacList.h"
#include "model/gui/PIntModel.h"
#include "model/gui/PNewExpression.h"

using namespace tarvex;
using namespace tarvex::test;

namespace {

class ModelEditorTest : public ::testing::Test, public PanelTestBase {
protected:
    ScratchDir dir;
    DialogScript dialogs;
    CurrentDirGuard keepCwd{std::filesystem::current_path()};
    // What each nested panel does when it opens; unset: cancelled.
    std::function<int(Panel&)> onEditor, onExpression, onInputs, onName;
    ModalHook hook{[this](Panel& p) {
        std::function<int(Panel&)>* f = p.name() == "PNewExpression" ? &onExpression
                                        : p.name() == "PIntModFacList" ? &onInputs
                                        : p.name() == "PnewFactorName" ? &onName
                                        : p.name() == "PIntModel"      ? &onEditor
                                                                       : nullptr;
        return (f && *f) ? (*f)(p) : 0;
    }};

    static InternalModel twoInputs() {
        InternalModel m;
        EXPECT_TRUE(m.addVariable("x1") && m.addVariable("x2"));
        return m;
    }
    std::function<int(Panel&)> equation(const std::string& name, const std::string& text, int selector) {
        return [=](Panel& p) {
            typeInto(p, "TExprName", name);
            typeInto(p, "TExpr", text);
            p.setSelectorIndex("SeOutType", selector);
            click(p, "BAdd");
            return 0;
        };
    }
};

TEST_F(ModelEditorTest, EditsOnThePanelGiveTheEnginesModelFile) {
    InternalModel model = twoInputs();
    PIntModel editor(model);
    ASSERT_EQ(editor.isLoaded(), 1) << editor.errorText();
    typeInto(editor, "TModelName", "beam");
    emit qobject_cast<QLineEdit*>(editor.getObject("TModelName"))->textEdited("beam");
    onExpression = equation("a", "x1*2", 0);
    click(editor, "BAddExpression");
    onExpression = equation("y", "a+x2", 1);
    click(editor, "BAddExpression");
    onExpression = equation("z", "x2/3", 1);
    click(editor, "BAddExpression");
    clickRow(editor, "MaExpress", 0);
    onExpression = [&](Panel& p) {
        EXPECT_EQ(p.getLabel("TExpr"), "x1*2");
        EXPECT_EQ(p.selectorIndex("SeOutType"), 0);
        EXPECT_EQ(p.itemCount("OResCalc"), 1);  // nothing above the first equation
        typeInto(p, "TExpr", "x1*4");
        click(p, "BAdd");
        return 0;
    };
    click(editor, "BModifyExpression");
    clickRow(editor, "MaExpress", 2);
    click(editor, "BDeleteExpression");  // scripted answers run out: Proceed
    onInputs = [&](Panel& p) {
        clickRow(p, "MaIntModFactors", 0);
        onName = [](Panel& n) {
            typeInto(n, "TeNewName", "u");
            click(n, "BOk");
            return 0;
        };
        click(p, "BModify");
        click(p, "BDown");
        typeInto(p, "TeNewFactor", "w");
        emit qobject_cast<QLineEdit*>(p.getObject("TeNewFactor"))->returnPressed();
        click(p, "BOk");
        return 0;
    };
    click(editor, "BFactors");
    saveShot(*editor.window(), "PIntModel");

    InternalModel engine = twoInputs();
    ASSERT_EQ(engine.setName("beam"), 1);
    ASSERT_EQ(engine.addExpression(0, "a", "x1*2", 0), 1);
    ASSERT_EQ(engine.addExpression(1, "y", "a+x2", 1), 1);
    ASSERT_EQ(engine.addExpression(2, "z", "x2/3", 1), 1);
    ASSERT_EQ(engine.modifyExpression(0, "a", "x1*4", 0), 1);
    ASSERT_EQ(engine.removeExpression(2), 1);
    ASSERT_EQ(engine.renameVariable(0, "u"), 1);
    engine.moveVariable(0, 1);
    ASSERT_EQ(engine.addVariable("w"), 1);
    EXPECT_EQ(imdText(model), imdText(engine));
    EXPECT_EQ(dialogs->messages.size(), 1u);
    EXPECT_EQ(dialogs->messages[0].title, "Delete expression");
    EXPECT_EQ(dialogs->messages[0].text, "Do you really want to delete the expression?");
    EXPECT_EQ(dialogs->messages[0].firstLabel, "Proceed");

    // The list: names coloured by type on white, texts as written, open rows below.
    auto* table = qobject_cast<QTableWidget*>(editor.getObject("MaExpress"));
    EXPECT_EQ(table->font().family(), "monospace");
    EXPECT_GT(table->rowCount(), 2);
    EXPECT_EQ(table->item(0, 0)->foreground().color(), QColor(Qt::red));
    EXPECT_EQ(table->item(1, 0)->foreground().color(), QColor(Qt::blue));
    EXPECT_EQ(table->item(1, 0)->background().color(), QColor(Qt::white));
    EXPECT_EQ(editor.cellText("MaExpress", 1, 1), "a+x2");
    EXPECT_EQ(editor.itemText("OInFactors", 1), "u");  // the inputs follow the sub-panel
    EXPECT_TRUE(editor.edited());
}

TEST_F(ModelEditorTest, RefusalsOfRowsFieldsAndTheModel) {
    InternalModel model = twoInputs();
    ASSERT_EQ(model.addExpression(0, "y", "x1+x2", 1), 1);
    const std::string before = imdText(model);
    PIntModel editor(model);
    click(editor, "BModifyExpression");  // nothing selected
    clickRow(editor, "MaExpress", 3);    // an open row
    click(editor, "BModifyExpression");
    click(editor, "BDeleteExpression");
    std::vector<std::string> shown;
    onExpression = [&](Panel& p) {
        click(p, "BAdd");
        typeInto(p, "TExprName", "y");
        click(p, "BAdd");
        typeInto(p, "TExpr", "x1");
        click(p, "BAdd");  // the model refuses a second y
        typeInto(p, "TExprName", "q");
        typeInto(p, "TExpr", "x1+nope");
        click(p, "BAdd");
        EXPECT_EQ(p.isShown(), 1);  // refusals keep the editor open
        return 0;
    };
    click(editor, "BAddExpression");
    onInputs = [&](Panel& p) {
        click(p, "BAddFactor");  // empty field
        click(p, "BDelete");     // nothing selected
        return 0;
    };
    click(editor, "BFactors");
    for (const auto& m : dialogs->messages) shown.push_back(m.text);
    EXPECT_EQ(shown, (std::vector<std::string>{"No row selected", "No equation to modify", "No expression to delete",
                                                "Expression name field empty", "Expression field empty",
                                                "Expression name already in the list",
                                                "Current expression cannot be evaluated.\n Unknown Variable.",
                                                "New Factor text field empty", "No Factor selected"}));
    for (const auto& m : dialogs->messages) EXPECT_EQ(m.title, "Error");
    EXPECT_EQ(imdText(model), before);
    EXPECT_FALSE(editor.edited());
}

TEST_F(ModelEditorTest, DeleteAllStopsAtTheFirstInputInUseAndCancelKeepsTheInputs) {
    InternalModel model;
    ASSERT_TRUE(model.addVariable("p") && model.addVariable("q") && model.addVariable("r"));
    ASSERT_EQ(model.addExpression(0, "y", "q*2", 1), 1);
    {
        PIntModFacList list(model);
        click(list, "BDelAll");
        EXPECT_EQ(list.rowCount("MaIntModFactors"), 2);
        EXPECT_EQ(list.cellText("MaIntModFactors", 0, 0), "q");
        clickRow(list, "MaIntModFactors", 1);
        dialogs->answerMessage(0);
        click(list, "BDelete");  // answered Cancel
        EXPECT_EQ(list.rowCount("MaIntModFactors"), 2);
        InternalModel engine = model;
        ASSERT_EQ(engine.removeVariable(0), 1);
        EXPECT_EQ(imdText(list.model()), imdText(engine));
    }
    ASSERT_EQ(dialogs->messages.size(), 3u);
    EXPECT_EQ(dialogs->messages[0].title, "Delete");
    EXPECT_EQ(dialogs->messages[0].text, "Do you really want to delete all factors");
    EXPECT_EQ(dialogs->messages[0].firstLabel, "Yes");
    EXPECT_EQ(dialogs->messages[1].text, "Factor currently in use, I can't delete it");
    EXPECT_EQ(dialogs->messages[2].text, "Do you really want to delete the selected factor");

    // Through the editor, the sub-panel's Cancel leaves the model alone.
    const std::string before = imdText(model);
    PIntModel editor(model);
    onInputs = [](Panel& p) {
        click(p, "BDelAll");
        click(p, "BCancel");
        return 0;
    };
    click(editor, "BFactors");
    EXPECT_EQ(imdText(model), before);
}

TEST_F(ModelEditorTest, QuestionsOfAnEditedModel) {
    const std::string path = dir.file("saved.imd");
    // Unedited, Ok accepts and Exit discards without a question. Edited, Ok's Yes saves
    // and accepts, its Cancel accepts; Exit's Yes keeps the edits, its Cancel discards.
    struct Case {
        std::string button;
        int answer;
        int result;
        const char* text;
    };
    const char* inFile = "The model has been edited.\nDo you want to save changes in a file?";
    const char* keep = "The model has been edited.\nDo you want to save changes?";
    for (const Case& c : {Case{"BOk", 1, 1, inFile}, Case{"BOk", 0, 1, inFile}, Case{"BExit", 1, 1, keep},
                          Case{"BExit", 0, 0, keep}}) {
        InternalModel model = twoInputs();
        PIntModel editor(model);
        onEditor = [&](Panel& p) {
            click(p, c.button);
            return 7;  // a wait the panel didn't end
        };
        EXPECT_EQ(editor.showModal(), c.button == "BOk" ? 1 : 0);
        EXPECT_TRUE(dialogs->messages.empty());
        onExpression = equation("y", "x1-x2", 1);
        click(editor, "BAddExpression");
        dialogs->answerMessage(c.answer);
        dialogs->answerFile(path);
        EXPECT_EQ(editor.showModal(), c.result) << c.button << c.answer;
        ASSERT_EQ(dialogs->messages.size(), 1u);
        EXPECT_EQ(dialogs->messages[0].title, "Warning: model edited");
        EXPECT_EQ(dialogs->messages[0].text, c.text);
        const bool saved = c.button == "BOk" && c.answer == 1;
        EXPECT_EQ(std::filesystem::exists(path), saved);
        InternalModel engine = twoInputs();
        ASSERT_EQ(engine.addExpression(0, "y", "x1-x2", 1), 1);
        ASSERT_EQ(engine.setFileName(path), 1);
        if (saved) {
            EXPECT_EQ(readFile(path), imdText(engine));
        }
        std::filesystem::remove(path);
        dialogs->messages.clear();
        dialogs->choosers.clear();
        dialogs->fileAnswers.clear();
    }
    // New and Open: Cancel stays with the edits; a damaged file changes nothing.
    InternalModel model = twoInputs();
    PIntModel editor(model);
    onExpression = equation("y", "x1", 1);
    click(editor, "BAddExpression");
    const std::string edited = imdText(model);
    dialogs->answerMessage(0);
    click(editor, "BNew");
    dialogs->answerMessage(0);
    click(editor, "BOpen");
    EXPECT_EQ(imdText(model), edited);
    EXPECT_TRUE(dialogs->choosers.empty());
    for (const auto& m : dialogs->messages) {
        EXPECT_EQ(m.text, "The model has been edited.\nDo you want to lose changes?");
        EXPECT_EQ(m.firstLabel, "Proceed");
    }
    dialogs->messages.clear();
    writeFile(dir.file("bad.imd"), "bad\n2\nx\n");
    dialogs->answerMessage(1);
    dialogs->answerFile(dir.file("bad.imd"));
    click(editor, "BOpen");
    ASSERT_EQ(dialogs->messages.size(), 2u);
    EXPECT_EQ(dialogs->messages[1].text, "Error reading the internal model file");
    EXPECT_EQ(dialogs->choosers.at(0).title, "Select the internal model to load");
    EXPECT_EQ(imdText(model), edited);
    EXPECT_EQ(readFile(dir.file("bad.imd")), "bad\n2\nx\n");
}

TEST_F(ModelEditorTest, PiecesGoInAtTheCursor) {
    std::string built;
    PNewExpression editor({"x1", "x2"}, {"a"}, [&](const std::string&, const std::string& text, int) {
        built = text;
        return 1;
    });
    auto* expr = qobject_cast<QLineEdit*>(editor.getObject("TExpr"));
    expr->setText("ab");
    expr->setCursorPosition(1);
    click(editor, "BPlus");
    click(editor, "BOpenPar");
    EXPECT_EQ(expr->text().toStdString(), "a+(b");
    auto choose = [&](const char* list, int index) {
        auto* box = qobject_cast<QComboBox*>(editor.getObject(list));
        box->setCurrentIndex(index);  // the user's choice fires the callback
        EXPECT_EQ(box->currentIndex(), 0) << list;  // back at the heading
    };
    choose("OFunctions", editor.itemText("OFunctions", 12) == "sin" ? 12 : -1);
    choose("OFactors", 2);
    click(editor, "BPower");
    choose("OResCalc", 1);
    click(editor, "BClosePar");
    click(editor, "BDivided");
    EXPECT_EQ(expr->text().toStdString(), "a+(sin(x2**a)/)b");
    expr->setSelection(0, 1);  // a selection is replaced
    click(editor, "BMinus");
    EXPECT_EQ(expr->text().toStdString(), "-+(sin(x2**a)/)b");
    EXPECT_EQ(editor.itemCount("OFunctions"), 17);  // the heading and the calculator's 16 functions
    saveShot(*editor.window(), "PNewExpression");
    typeInto(editor, "TExprName", "r");
    click(editor, "BAdd");
    EXPECT_EQ(built, "-+(sin(x2**a)/)b");
}

TEST_F(ModelEditorTest, AFiveHundredthEquationIsSavedButDoesNotLoadBack) {
    // Equations go last, and the check binds every one above: without inputs and with
    // constant texts the calculator's table of 499 names just holds them.
    InternalModel model;
    for (int i = 0; i < 499; ++i) ASSERT_EQ(model.addExpression(i, "e" + std::to_string(i), "1", 1), 1);
    PIntModel editor(model);
    onExpression = equation("last", "2", 1);
    click(editor, "BAddExpression");
    ASSERT_EQ(model.numExpressions(), 500) << (dialogs->messages.empty() ? "" : dialogs->messages[0].text);
    const std::string path = dir.file("big.imd");
    dialogs->answerFile(path);
    click(editor, "BSaveAs");
    EXPECT_EQ(model.fileName(), path);
    EXPECT_EQ(readFile(path), imdText(model));
    dialogs->answerMessage(1);
    dialogs->answerFile(path);
    click(editor, "BOpen");
    ASSERT_EQ(dialogs->messages.size(), 2u);
    EXPECT_EQ(dialogs->messages[1].text, "Error reading the internal model file");
    EXPECT_EQ(model.numExpressions(), 500);
}

}  // namespace
