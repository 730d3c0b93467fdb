#include "model/gui/PExternal.h"

#include <QFont>
#include <QWidget>
#include <algorithm>
#include <memory>
#include <utility>

#include "common/Environment.h"
#include "model/gui/PIntModel.h"
#include "panels/layer/Dialogs.h"

namespace tarvex {

namespace {

constexpr const char* kExcelApplication = "Excel Application";
constexpr const char* kNoFile = "nofile";

std::string startDirectory(const std::string& remembered) { return remembered.empty() ? "." : remembered; }

RememberedDirectories& directories() { return Environment::instance().directories(); }

}  // namespace

const std::vector<std::string>& modelOutputFormatLines() {
    static const std::vector<std::string> lines = {
        "<number of variables>",
        "for each variable {",
        "    <variable name>",
        "   }",
        "<\"time =\" \"yes\"|\"no\">",
        "<number of runs>",
        "for each run {",
        "    <\"RUN\" number>",
        "    if time == \"yes\" {",
        "       <number of times>",
        "       for each time {",
        "           <\"t =\" value>",
        "           for each variable <value>",
        "          }",
        "      }",
        "    else {",
        "      for each variable <value>",
        "     }",
        "   }",
    };
    return lines;
}

PExternal::PExternal(ModelConfiguration& model, std::vector<std::string> factorNames, bool demoMode, QWidget* parent)
    : Panel("External", demoMode ? "Model Selection (Demo mode)" : "Model Selection", "PExternal.ui", 0, 0, 392, 236,
            parent),
      model_(model),
      factorNames_(std::move(factorNames)),
      demoMode_(demoMode) {
    registerCallback("NewIntModel", [this] { NewIntModel(); });
    registerCallback("switchModel", [this] { switchModel(); });
    registerCallback("switchExcel", [this] { switchExcel(); });
    registerCallback("modelSelect", [this] { modelSelect(); });
    registerCallback("modIntModel", [this] { modIntModel(); });
    registerCallback("switchExternalExe", [this] { switchExternalExe(); });
    registerCallback("ok", [this] { ok(); });
    registerCallback("loadIntModel", [this] { loadIntModel(); });
    registerCallback("cancel", [this] { endModal(0); });
    registerCallback("outputSelect", [this] { outputSelect(); });
    registerCallback("changeIntModelFile", [this] { changeIntModelFile(); });
    registerCallback("formatHelp", [this] { formatHelp(); });
    setButtonBitmap("BModel", "../bitmaps/oleagg.gif", ButtonState::Sensitive);
    setButtonBitmap("BModel", "../bitmaps/oleaggInv.gif", ButtonState::Insensitive);
    setButtonBitmap("BOutputFile", "../bitmaps/oleagg.gif", ButtonState::Sensitive);
    setButtonBitmap("BOutputFile", "../bitmaps/oleaggInv.gif", ButtonState::Insensitive);
    setButtonBitmap("BInternalModel", "../bitmaps/oleagg.gif", ButtonState::Sensitive);
    setButtonBitmap("BInternalModel", "../bitmaps/oleaggInv.gif", ButtonState::Insensitive);
    fill();
    // Never smaller than the nominal size, never smaller than what the gadgets need.
    if (QWidget* w = window()) {
        const QSize need = w->minimumSizeHint();
        setFixedSize(std::max(392, need.width()), std::max(236, need.height()));
    }
}

void PExternal::fill() {
    setSelectorIndex("SeSwitchModel", model_.kind() == ModelConfiguration::kInternal ? 1 : 0);
    // A part with no model to start that names an output file reads a model run
    // elsewhere; any other starts one.
    setToggle("TModelExe", !(model_.kind() == ModelConfiguration::kNoModel && !model_.outputFile().empty()));
    setToggle("TExcel", model_.spreadsheet() != 0);
    setLabel("CModel", model_.spreadsheet() ? kExcelApplication : model_.executable());
    setLabel("TOutput", model_.outputFile());
    showInternalModelFile();
    setSensitive("BModifyInternalModel", model_.internalModel() != nullptr);
    switchModel();
    if (demoMode_) {
        for (const char* g : {"SeSwitchModel", "FExtModel", "FIntModel"}) setSensitive(g, false);
    }
}

void PExternal::showInternalModelFile() {
    const InternalModel* m = model_.internalModel();
    if (!m) setLabel("TIntModelFile", "");
    else if (m->fileName() == kNoFile) setLabel("TIntModelFile", "Internal Model loaded");
    else setLabel("TIntModelFile", m->fileName());
}

std::string PExternal::helpTopic() const { return selectorIndex("SeSwitchModel") == 1 ? "PIntModel" : "PExternal"; }

void PExternal::message(const std::string& title, const std::string& text) {
    modal_ = 1;
    showMessage(MessageKind::Error, title, text, window());
    modal_ = 0;
}

void PExternal::switchModel() {
    const bool internal = selectorIndex("SeSwitchModel") == 1;
    setSensitive("FExtModel", !internal);
    setSensitive("FIntModel", internal);
    const bool execute = getToggle("TModelExe") == 1;
    setSensitive("CModel", execute);
    setSensitive("TModelName", execute);
    setSensitive("BModel", execute && getToggle("TExcel") != 1);
}

void PExternal::switchExternalExe() {
    const bool execute = getToggle("TModelExe") == 1;
    setSensitive("CModel", execute);
    setSensitive("TModelName", execute);
    setSensitive("BModel", execute);
}

void PExternal::switchExcel() {
    if (getToggle("TExcel") == 1) {
        setLabel("CModel", kExcelApplication);
        setSensitive("BModel", false);
    } else {
        setLabel("CModel", "");
        if (getToggle("TModelExe") == 1) setSensitive("BModel", true);
    }
}

void PExternal::modelSelect() {
    if (modal_) return;
    FileRequest r;
    r.title = "Select model to execute";
    r.directory = startDirectory(directories().modelDirectory());
    r.patterns = {"*.*"};
    r.descriptions = {"*.* (all files)"};
    r.parent = window();
    FileChoice choice;
    modal_ = 1;
    const int chosen = Dialogs::current().chooseFile(r, choice);
    modal_ = 0;
    if (!chosen) return;
    (void)directories().setModelDirectory(choice.directory);
    setLabel("CModel", choice.path);
}

void PExternal::outputSelect() {
    if (modal_) return;
    FileRequest r;
    r.title = "Select output model file";
    r.directory = startDirectory(directories().modelOutputDirectory());
    r.patterns = {"*.*"};
    r.descriptions = {"*.* (all files)"};
    r.parent = window();
    FileChoice choice;
    modal_ = 1;
    const int chosen = Dialogs::current().chooseFile(r, choice);
    modal_ = 0;
    if (!chosen) return;
    (void)directories().setModelOutputDirectory(choice.directory);
    setLabel("TOutput", choice.path);
}

void PExternal::loadIntModel() {
    if (modal_) return;
    FileRequest r;
    r.title = "Select the internal model to load";
    r.directory = startDirectory(directories().modelDirectory());
    r.patterns = {"*.imd", "*.*"};
    r.descriptions = {"*.imd (internal model)", "*.* (all files)"};
    r.parent = window();
    FileChoice choice;
    modal_ = 1;
    const int chosen = Dialogs::current().chooseFile(r, choice);
    modal_ = 0;
    if (!chosen) return;
    // Read into a model of its own: a failed read clears what it reads into.
    auto loaded = std::make_unique<InternalModel>();
    if (!loaded->readFile(choice.path)) {
        message("Error opening file", "Error reading the internal model file");
        return;
    }
    loaded->setFileName(choice.path);
    model_.setInternalModel(std::move(loaded));
    (void)directories().setModelDirectory(choice.directory);
    showInternalModelFile();
    setSensitive("BModifyInternalModel", true);
}

void PExternal::NewIntModel() {
    if (modal_) return;
    if (model_.internalModel()) {
        modal_ = 1;
        const int discard = askQuestion("Warning: existing configuration",
                                        "An internal model is already loaded.\n Do you wish to discard it?",
                                        "^Proceed", "", window());
        modal_ = 0;
        if (!discard) return;
    }
    auto fresh = std::make_unique<InternalModel>();
    for (const std::string& name : factorNames_) {
        if (!fresh->addVariable(name)) {
            message("Error", fresh->errorText());
            return;
        }
    }
    modal_ = 1;
    PIntModel editor(*fresh, window());
    editor.moveToCenter();
    const int kept = editor.showModal();
    modal_ = 0;
    if (kept != 1) return;
    model_.setInternalModel(std::move(fresh));
    setLabel("TIntModelFile", "Internal Model loaded");
    setSensitive("BModifyInternalModel", true);
}

void PExternal::modIntModel() {
    if (modal_ || !model_.internalModel()) return;
    auto copy = std::make_unique<InternalModel>(*model_.internalModel());
    modal_ = 1;
    PIntModel editor(*copy, window());
    editor.moveToCenter();
    const int kept = editor.showModal();
    modal_ = 0;
    if (kept != 1) return;
    model_.setInternalModel(std::move(copy));
    showInternalModelFile();
}

void PExternal::changeIntModelFile() { setSensitive("BModifyInternalModel", false); }

void PExternal::ok() {
    if (modal_) return;
    if (demoMode_) {
        endModal(0);
        return;
    }
    if (selectorIndex("SeSwitchModel") == 1) {
        const InternalModel* m = model_.internalModel();
        if (!m) {
            message("Error: No model loaded", "   No internal model loaded");
            return;
        }
        if (m->numOutputs() == 0) {
            message("Error: Empty model", "   Model produces no result");
            return;
        }
        model_.setKind(ModelConfiguration::kInternal);
        accepted_ = 1;
        endModal(1);
        return;
    }
    const bool execute = getToggle("TModelExe") == 1;
    const bool excel = getToggle("TExcel") == 1;
    const std::string executable = getLabel("CModel");
    const std::string output = getLabel("TOutput");
    if ((execute && executable.empty()) || output.empty()) {
        message("Error: Empty field", "   Empty fields not admitted");
        return;
    }
    if (!checkModelFiles(executable, output, execute ? 1 : 2, excel ? 1 : 0)) {
        if (execute) message("Error: No executable file", "   Error checking model executable");
        else message("Error: Wrong output file", "   No output model file");
        return;
    }
    model_.setExternal(executable, output, excel ? 1 : 0);
    model_.setKind(execute ? ModelConfiguration::kExternal : ModelConfiguration::kNoModel);
    model_.setSpreadsheet(excel ? 1 : 0);
    accepted_ = 1;
    endModal(1);
}

void PExternal::formatHelp() {
    if (modal_) return;
    Panel help("Help", "File Format", "PHelp.ui", 0, 0, 380, 223, window());
    help.registerCallback("dismiss", [&help] { help.endModal(1); });
    help.setLabel("MlTitle", "Format for the model output file");
    std::string text;
    for (const std::string& line : modelOutputFormatLines()) text += line + "\n";
    text.pop_back();
    help.setText("TText", text);
    help.setVisible("TText", true);
    help.setVisible("IcText", false);
    if (QWidget* t = help.getGadget("TText")) {
        t->setFont(QFont("monospace"));
        t->setMinimumSize(340, 330);
    }
    help.moveToCenter();
    modal_ = 1;
    help.showModal();
    modal_ = 0;
}

}  // namespace tarvex
