// The model selection and the factor link, driven through their widgets and compared
// with what the engine's own calls build.
#include <gtest/gtest.h>

#include <QLineEdit>
#include <filesystem>
#include <functional>
#include <map>

#include "ModelGuiTestSupport.h"
#include "TestSupport.h"
#include "common/Environment.h"
#include "model/gui/ModelPanels.h"
#include "model/gui/PExternal.h"

using namespace tarvex;
using namespace tarvex::test;

namespace {

// Runs each modal panel through the action given for its name; a panel without one
// is cancelled.
class Script {
public:
    using Action = std::function<int(Panel&)>;
    std::map<std::string, std::vector<Action>> actions;
    std::vector<std::string> opened;
    ModalHook hook{[this](Panel& p) {
        opened.push_back(p.name());
        auto& queue = actions[p.name()];
        if (queue.empty()) return 0;
        Action a = queue.front();
        queue.erase(queue.begin());
        return a(p);
    }};
};

class ModelSelectionTest : public ::testing::Test, public PanelTestBase {
protected:
    ScratchDir dir;
    DialogScript dialogs;
    CurrentDirGuard keepCwd{std::filesystem::current_path()};
    std::string exe = dir.file("runmodel");  // an executable's name needs no dot
    std::string out = dir.file("out.txt");
    std::string imd = dir.file("m.imd");
    void SetUp() override {
        writeFile(exe, "#!/bin/sh\n");
        writeFile(out, "1\ny\ntime = no\n1\n2\n");
        InternalModel m;
        ASSERT_TRUE(m.addVariable("a") && m.addVariable("b") && m.addExpression(0, "y", "a*b", 1));
        ASSERT_EQ(m.writeFile(imd), 1);
    }
};

TEST_F(ModelSelectionTest, AnExternalModelChosenOnThePanelGivesTheEnginesRecord) {
    ModelConfiguration model;
    Script s;
    s.actions["External"].push_back([&](Panel& p) {
        dialogs->answerFile(exe);
        click(p, "BModel");
        typeInto(p, "TOutput", out);
        saveShot(*p.window(), "PExternal");
        click(p, "BOk");
        return 0;
    });
    EXPECT_EQ(openModelSelection(nullptr, model, factorsNamed({"a", "b"}), false), PanelOutcome::Accepted);
    ASSERT_EQ(dialogs->choosers.size(), 1u);
    EXPECT_EQ(dialogs->choosers[0].title, "Select model to execute");
    EXPECT_EQ(dialogs->choosers[0].patterns, std::vector<std::string>{"*.*"});
    EXPECT_EQ(dialogs->choosers[0].descriptions, std::vector<std::string>{"*.* (all files)"});
    EXPECT_TRUE(dialogs->messages.empty());
    EXPECT_EQ(Environment::instance().directories().modelDirectory(), dir.path().string());

    ModelConfiguration engine;
    engine.setExternal(exe, out, 0);
    engine.setKind(ModelConfiguration::kExternal);
    EXPECT_EQ(recordText(model), recordText(engine));

    // Only the output file, and a workbook: kind 2, then the spreadsheet of kind 1.
    s.actions["External"].push_back([&](Panel& p) {
        click(p, "TModelExe");
        EXPECT_FALSE(p.isSensitive("CModel") || p.isSensitive("BModel") || p.isSensitive("TModelName"));
        click(p, "BOk");
        return 0;
    });
    EXPECT_EQ(openModelSelection(nullptr, model, factorsNamed({"a", "b"}), false), PanelOutcome::Accepted);
    engine.setKind(ModelConfiguration::kNoModel);
    EXPECT_EQ(recordText(model), recordText(engine));
    s.actions["External"].push_back([&](Panel& p) {
        EXPECT_EQ(p.getToggle("TModelExe"), 0);  // a part that only reads its output opens so
        click(p, "TModelExe");
        click(p, "TExcel");
        EXPECT_EQ(p.getLabel("CModel"), "Excel Application");
        EXPECT_FALSE(p.isSensitive("BModel"));
        click(p, "BOk");
        return 0;
    });
    EXPECT_EQ(openModelSelection(nullptr, model, factorsNamed({"a", "b"}), false), PanelOutcome::Accepted);
    engine.setExternal("Excel Application", out, 1);
    engine.setKind(ModelConfiguration::kExternal);
    EXPECT_EQ(recordText(model), recordText(engine));
}

TEST_F(ModelSelectionTest, RefusalsShowTheirTextOnceAndChangeNothing) {
    struct Case {
        std::function<void(Panel&)> fill;
        const char* title;
        const char* text;
        size_t shown = 1;  // messages in all, the first being this one
    };
    const std::string imdBefore = readFile(imd);
    const std::vector<Case> cases = {
        {[&](Panel& p) { typeInto(p, "TOutput", out); }, "Error: Empty field", "   Empty fields not admitted"},
        {[&](Panel& p) { typeInto(p, "CModel", exe); }, "Error: Empty field", "   Empty fields not admitted"},
        {[&](Panel& p) { typeInto(p, "CModel", dir.file("missing")), typeInto(p, "TOutput", out); },
         "Error: No executable file", "   Error checking model executable"},
        {[&](Panel& p) { click(p, "TModelExe"), typeInto(p, "TOutput", dir.file("missing")); },
         "Error: Wrong output file", "   No output model file"},
        {[&](Panel& p) { click(p, "rInternal"); }, "Error: No model loaded", "   No internal model loaded"},
        {[&](Panel& p) {
             InternalModel quiet;  // no output
             ASSERT_TRUE(quiet.addVariable("x") && quiet.addExpression(0, "z", "2*x", 0));
             ASSERT_EQ(quiet.writeFile(dir.file("empty.imd")), 1);
             click(p, "rInternal");
             dialogs->answerFile(dir.file("empty.imd"));
             click(p, "BInternalModel");
         },
         "Error: Empty model", "   Model produces no result"},
        {[&](Panel& p) {
             writeFile(dir.file("bad.imd"), "bad\n-3\n");
             click(p, "rInternal");
             dialogs->answerFile(dir.file("bad.imd"));
             click(p, "BInternalModel");
             EXPECT_EQ(p.getLabel("TIntModelFile"), "");
             EXPECT_FALSE(p.isSensitive("BModifyInternalModel"));
             click(p, "rExternal");  // Ok then finds the empty fields
         },
         "Error opening file", "Error reading the internal model file", 2},
    };
    for (const Case& c : cases) {
        ModelConfiguration model;
        dialogs->messages.clear();
        Script s;
        s.actions["External"].push_back([&](Panel& p) {
            c.fill(p);
            click(p, "BOk");
            return 0;
        });
        EXPECT_EQ(openModelSelection(nullptr, model, factorsNamed({"a"}), false), PanelOutcome::Cancelled) << c.text;
        ASSERT_EQ(dialogs->messages.size(), c.shown) << c.text;
        EXPECT_EQ(dialogs->messages[0].title, c.title);
        EXPECT_EQ(dialogs->messages[0].text, c.text);
        // What the record holds but for the remembered directories, which a good load moves.
        EXPECT_TRUE(model.executable().empty() && model.outputFile().empty() && !model.internalModel()) << c.text;
        EXPECT_EQ(model.kind(), ModelConfiguration::kNoModel);
    }
    EXPECT_EQ(readFile(imd), imdBefore);
}

TEST_F(ModelSelectionTest, InternalModelsLoadedOrWrittenOnThePanel) {
    // Loaded: the panel keeps the chosen path; editing the name disables Modify.
    ModelConfiguration model;
    Script s;
    s.actions["External"].push_back([&](Panel& p) {
        click(p, "BInternalModel");  // insensitive while the selector is on the external model
        click(p, "rInternal");
        dialogs->answerFile(imd);
        click(p, "BInternalModel");
        EXPECT_EQ(p.getLabel("TIntModelFile"), imd);
        EXPECT_TRUE(p.isSensitive("BModifyInternalModel"));
        auto* field = qobject_cast<QLineEdit*>(p.getObject("TIntModelFile"));
        emit field->textEdited("other");
        EXPECT_FALSE(p.isSensitive("BModifyInternalModel"));
        EXPECT_FALSE(p.isSensitive("FExtModel"));
        click(p, "BOk");
        return 0;
    });
    EXPECT_EQ(openModelSelection(nullptr, model, factorsNamed({"a", "b"}), false), PanelOutcome::Accepted);
    ASSERT_EQ(dialogs->choosers.size(), 1u);
    EXPECT_EQ(dialogs->choosers[0].title, "Select the internal model to load");
    EXPECT_EQ(dialogs->choosers[0].patterns, (std::vector<std::string>{"*.imd", "*.*"}));
    auto engineModel = std::make_unique<InternalModel>();
    ASSERT_EQ(engineModel->readFile(imd), 1);
    engineModel->setFileName(imd);
    ModelConfiguration engine;
    engine.setInternalModel(std::move(engineModel));
    EXPECT_EQ(recordText(model), recordText(engine));

    // A new model over the sample's factors, in list order; the discard question first.
    s.actions["External"].push_back([&](Panel& p) {
        dialogs->answerMessage(0);
        click(p, "BCreateNewIntModel");  // Cancel: the editor doesn't open
        click(p, "BCreateNewIntModel");  // Proceed
        EXPECT_EQ(p.getLabel("TIntModelFile"), "Internal Model loaded");
        click(p, "BOk");
        return 0;
    });
    s.actions["PIntModel"].push_back([&](Panel& p) {
        EXPECT_EQ(p.itemCount("OInFactors"), 3);
        click(p, "BAddExpression");
        dialogs->answerMessage(0);  // no file
        click(p, "BOk");
        return 0;
    });
    s.actions["PNewExpression"].push_back([&](Panel& p) {
        typeInto(p, "TExprName", "y");
        typeInto(p, "TExpr", "b-a*c");
        click(p, "BAdd");
        return 0;
    });
    dialogs->messages.clear();
    EXPECT_EQ(openModelSelection(nullptr, model, factorsNamed({"b", "a", "c"}), false), PanelOutcome::Accepted);
    ASSERT_EQ(dialogs->messages.size(), 3u);
    EXPECT_EQ(dialogs->messages[0].title, "Warning: existing configuration");
    EXPECT_EQ(dialogs->messages[0].text, "An internal model is already loaded.\n Do you wish to discard it?");
    EXPECT_EQ(dialogs->messages[0].firstLabel, "Proceed");
    EXPECT_EQ(dialogs->messages[2].text, "The model has been edited.\nDo you want to save changes in a file?");
    EXPECT_EQ(s.opened, (std::vector<std::string>{"External", "External", "PIntModel", "PNewExpression"}));
    InternalModel written;
    ASSERT_TRUE(written.addVariable("b") && written.addVariable("a") && written.addVariable("c"));
    ASSERT_EQ(written.addExpression(0, "y", "b-a*c", 1), 1);
    ASSERT_NE(model.internalModel(), nullptr);
    EXPECT_EQ(imdText(*model.internalModel()), imdText(written));
    EXPECT_EQ(model.kind(), ModelConfiguration::kInternal);
}

TEST_F(ModelSelectionTest, FormatHelpHelpKeyAndDemoMode) {
    ModelConfiguration model;
    Script s;
    std::string helpText;
    s.actions["External"].push_back([&](Panel& p) {
        click(p, "BFormatHelp");
        p.pressKey(Qt::Key_F1);
        EXPECT_EQ(HelpSystem::currentPage(), "PExternal.html");
        click(p, "rInternal");
        p.pressKey(Qt::Key_F1);
        EXPECT_EQ(HelpSystem::currentPage(), "PIntModel.html");
        return 0;
    });
    s.actions["Help"].push_back([&](Panel& p) {
        EXPECT_EQ(p.title(), "File Format");
        EXPECT_EQ(p.getLabel("MlTitle"), "Format for the model output file");
        helpText = p.getText("TText");
        return 0;
    });
    EXPECT_EQ(openModelSelection(nullptr, model, factorsNamed({}), false), PanelOutcome::Cancelled);
    EXPECT_EQ(helpText,
              "<number of variables>\nfor each variable {\n    <variable name>\n   }\n<\"time =\" \"yes\"|\"no\">\n"
              "<number of runs>\nfor each run {\n    <\"RUN\" number>\n    if time == \"yes\" {\n"
              "       <number of times>\n       for each time {\n           <\"t =\" value>\n"
              "           for each variable <value>\n          }\n      }\n    else {\n"
              "      for each variable <value>\n     }\n   }");

    // Demo mode shows the part and changes nothing, even on Ok.
    model.setExternal(exe, out, 0);
    model.setKind(ModelConfiguration::kExternal);
    const std::string before = recordText(model);
    s.actions["External"].push_back([&](Panel& p) {
        EXPECT_EQ(p.title(), "Model Selection (Demo mode)");
        EXPECT_EQ(p.getLabel("CModel"), exe);
        EXPECT_FALSE(p.isSensitive("FExtModel") || p.isSensitive("FIntModel") || p.isSensitive("SeSwitchModel"));
        typeInto(p, "TOutput", dir.file("other"));
        click(p, "BOk");
        return 0;
    });
    EXPECT_EQ(openModelSelection(nullptr, model, factorsNamed({}), true), PanelOutcome::Cancelled);
    EXPECT_EQ(recordText(model), before);
}

TEST_F(ModelSelectionTest, TheLinkMovesInputsInTheCopyAndCancelKeepsTheModel) {
    InternalModel model;
    ASSERT_TRUE(model.addVariable("c") && model.addVariable("a") && model.addVariable("b"));
    ASSERT_EQ(model.addExpression(0, "y", "a-c", 1), 1);
    const std::string before = imdText(model);
    const FactorList factors = factorsNamed({"a", "b", "c"});
    Script s;
    s.actions["PLinkFactors"].push_back([&](Panel& p) {
        click(p, "BDown");  // nothing selected yet
        clickRow(p, "MaLinks", 0);
        click(p, "BDown");
        click(p, "BDown");
        EXPECT_EQ(p.cellText("MaLinks", 2, 0), "c");
        EXPECT_EQ(p.cellText("MaLinks", 2, 1), "c");
        int row = -1, column = -1;
        EXPECT_TRUE(p.selectedCell("MaLinks", row, column) && row == 2);
        click(p, "BDown");  // already last: stays
        saveShot(*p.window(), "PLinkFactors");
        return 0;  // closed without acceptance
    });
    EXPECT_EQ(openFactorLink(nullptr, model, factors, false), PanelOutcome::Cancelled);
    EXPECT_EQ(imdText(model), before);
    ASSERT_EQ(dialogs->messages.size(), 1u);
    EXPECT_EQ(dialogs->messages[0].title, "Error");
    EXPECT_EQ(dialogs->messages[0].text, "No model factor selected");

    s.actions["PLinkFactors"].push_back([&](Panel& p) {
        EXPECT_EQ(p.title(), "Link between model and sample factors");
        clickRow(p, "MaLinks", 0);
        click(p, "BDown");
        click(p, "BDown");
        clickRow(p, "MaLinks", 0);
        click(p, "BUp");  // the top row has no neighbour above
        click(p, "BOk");
        return 0;
    });
    EXPECT_EQ(openFactorLink(nullptr, model, factors, false), PanelOutcome::Accepted);
    InternalModel engine;
    ASSERT_TRUE(engine.addVariable("a") && engine.addVariable("b") && engine.addVariable("c"));
    ASSERT_EQ(engine.addExpression(0, "y", "a-c", 1), 1);
    EXPECT_EQ(imdText(model), imdText(engine));
}

}  // namespace
