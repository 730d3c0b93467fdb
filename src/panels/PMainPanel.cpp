#include "panels/PMainPanel.h"

#include <cstdio>
#include <fstream>
#include <utility>

#include "app/CaseInsensitivePath.h"
#include "app/RunController.h"
#include "common/Environment.h"
#include "panels/LayerDialogs.h"
#include "panels/QtUserInterface.h"
#include "panels/TarvexApplication.h"
#include "panels/layer/HelpSystem.h"

namespace tarvex {

namespace {

using Filters = std::vector<std::pair<std::string, std::string>>;

const Filters kSampleFilters = {{"*.sam", "*.sam (sample files)"}, {"*.*", "*.* (all files)"}};
const Filters kExternalFilters = {{"*.*", "*.* (all files)"}};
const Filters kVelsFilters = {{"*.spc", "*.spc (vels's files)"}, {"*.*", "*.* (all files)"}};
const Filters kProjectFilters = {{"*.psc", "*.psc (project's files)"}, {"*.*", "*.* (all files)"}};

constexpr const char* kWriteErrorTitle = "Write error";

std::string withPath(const char* pattern, const std::string& path) {
    std::vector<char> text(std::char_traits<char>::length(pattern) + path.size() + 1);
    std::snprintf(text.data(), text.size(), pattern, path.c_str());
    return text.data();
}

// A file is made writable by opening it for appending, which creates a missing file
// and never shortens one that is there: a project file is replaced only by a save
// that was completed.
bool openForAppending(const std::string& path) {
    std::ofstream out(path, std::ios::app);
    return static_cast<bool>(out);
}

}  // namespace

// Every callback that may wait (a dialog, a chooser, a modal panel, an operation's
// loop) runs inside one of these; the end of the program waits until none runs.
class PMainPanel::CallbackScope {
public:
    explicit CallbackScope(PMainPanel& panel) : panel_(panel) { ++panel_.callbacksRunning_; }
    ~CallbackScope() {
        if (--panel_.callbacksRunning_ == 0 && panel_.endRequested_) terminateProgram(panel_);
    }
    CallbackScope(const CallbackScope&) = delete;
    CallbackScope& operator=(const CallbackScope&) = delete;

private:
    PMainPanel& panel_;
};

PMainPanel::PMainPanel(const std::string& name, const std::string& title, int x, int y, int width, int height,
                       const std::string& directory, QWidget* parent)
    : PMainPanelBase(name, title, x, y, width, height, parent),
      mainDirectory_(directory),
      ui_(std::make_unique<QtUserInterface>(this)),
      controller_(std::make_unique<RunController>(*ui_, directory)) {
    // 1. Size, the end of the program when the window closes, the controller (made
    //    above: its project reads config.dat), the background.
    setFixedSize(730, 480);
    setDestroyCallback([](Panel& panel) { static_cast<PMainPanel&>(panel).requestEnd(); });
    setBackground("gray");

    setButtonBitmap("BVelsFile", enabledBitmap, ButtonState::Sensitive);
    setButtonBitmap("BOld", enabledBitmap, ButtonState::Sensitive);
    setButtonBitmap("BImport", enabledBitmap, ButtonState::Sensitive);
    setButtonBitmap("BVelsFile", disabledBitmap, ButtonState::Insensitive);
    setButtonBitmap("BOld", disabledBitmap, ButtonState::Insensitive);
    setButtonBitmap("BImport", disabledBitmap, ButtonState::Insensitive);
    setBitmap("IcArrow1", "../bitmaps/arrow.gif");
    setBitmap("IcArrow2", "../bitmaps/arrowDown.gif");

    // 2. Nothing to generate, load, run or analyse yet.
    for (const char* g : {"BGenerate", "BOld", "BVisualize", "BImport", "BSelectInput", "BSeeLog", "BStart",
                          "BAbortMonteCarlo", "BAnalyse", "TeExternalConf"})
        setSensitive(g, false);
    setMenuItemSensitive("MnMenu", kFileMenu, kQuickSaveItem, false);
    setMenuItemSensitive("MnMenu", kDemoMenu, kDemoOnlyItem, false);

    // 3. The welcome state.
    setLabel("MlPrepVels", "Welcome to Tarvex software.");
    setText("TeConfiguration", "No configuration loaded");
    setVisible("IcArrow1", false);
    setVisible("IcArrow2", false);
    bindKey(Qt::Key_F1, [] { HelpSystem::openIndex(); });

    // 4. The launch request.
    readLaunchRequest();
}

// The controller goes first: its project writes config.dat and removes its working
// files while the interface it reports to still exists.
PMainPanel::~PMainPanel() { controller_.reset(); }

int32_t PMainPanel::busy() const { return controller_->busy(); }
int32_t PMainPanel::demoMode() const { return controller_->demoMode(); }
int32_t PMainPanel::monteCarloMode() const { return controller_->monteCarloMode(); }
int32_t PMainPanel::modified() const { return controller_->modified(); }
ProjectConfiguration& PMainPanel::project() { return controller_->project(); }
Panel* PMainPanel::progressPanel() const { return ui_->progressPanel(); }

// ------------------------------------------------------------ launch request

// The immediate entries run their operations at once, each on its own path and without
// a file chooser; the model entries are applied after the last line.
void PMainPanel::readLaunchRequest() {
    launching = 1;
    if (Environment::instance().mainDir().empty() || !launchRequest_.read(Environment::instance().launchRequestPath())) {
        launching = 0;
        return;
    }
    for (const LaunchRequest::Entry& entry : launchRequest_.immediate) {
        launchPath = entry.path;
        switch (entry.kind) {
            case LaunchRequest::Kind::TarvexSampleFile: oldGeneration(); break;
            case LaunchRequest::Kind::ExternalSampleFile: importGeneration(); break;
            case LaunchRequest::Kind::TarvexConfigurationFile: velsFile(); break;
        }
    }
    applyLaunchedModel();
    launching = 0;
}

void PMainPanel::applyLaunchedModel() {
    ProjectConfiguration& project = controller_->project();
    if (!launchRequest_.externalModelOutputFile.empty()) {
        // Only an output file to read: the kind stays "nothing to run", even when an
        // executable is named.
        ModelConfiguration model;
        const bool spreadsheet = launchRequest_.usesSpreadsheet();
        model.setExternal(spreadsheet ? std::string(LaunchRequest::kSpreadsheetExecutable)
                                      : launchRequest_.externalModelExecutable,
                          launchRequest_.externalModelOutputFile, spreadsheet ? 1 : 0);
        project.model.swap(model);
        project.hasModel = 1;
    }
    if (!launchRequest_.internalModel.empty()) {
        // An internal model wins over an external one; one that can't be read is
        // passed over in silence.
        auto internal = std::make_unique<InternalModel>();
        if (internal->readFile(launchRequest_.internalModel) && internal->setFileName(launchRequest_.internalModel)) {
            ModelConfiguration model;
            model.setInternalModel(std::move(internal));
            project.model.swap(model);
            project.hasModel = 1;
        }
    }
    if (project.hasModel == 1) {
        describeModel(true);
        enableStartIfReady();
    }
}

// ------------------------------------------------------------ helpers

void PMainPanel::describePrep(ConfigurationDescription::Variant variant) {
    setText("TeConfiguration", ConfigurationDescription::prep(controller_->project().prep, variant));
}

void PMainPanel::describeModel(bool withLine) {
    const ModelConfiguration& model = controller_->project().model;
    setText("TeExternalConf", ConfigurationDescription::model(model));
    if (withLine) setLabel("MlPrepVels", ConfigurationDescription::modelLine(model));
}

void PMainPanel::enableStartIfReady() {
    if (controller_->readyToRun()) setSensitive("BStart", true);
}

bool PMainPanel::chooseOrLaunched(const std::string& title, const Filters& filters, int which,
                                  bool launchedMayNameDirectory, std::string& path) {
    RememberedDirectories& directories = Environment::instance().directories();
    const auto slot = static_cast<RememberedDirectories::Which>(which);
    if (launching) {
        path = launchPath;
        // The setter is given the whole path, which fails on a file: the remembered
        // directory stays as it was.
        if (launchedMayNameDirectory && path.find('/') != std::string::npos) (void)directories.set(slot, path);
        return true;
    }
    std::vector<std::string> patterns;
    std::vector<std::string> descriptions;
    for (const auto& [pattern, description] : filters) {
        patterns.push_back(pattern);
        descriptions.push_back(description);
    }
    std::string directory;
    if (!LayerDialogs::chooseFile(title, directories.get(slot), patterns, descriptions, false, window(), path,
                                  directory))
        return false;
    (void)directories.set(slot, directory);
    return true;
}

// ------------------------------------------------------------ the Monte Carlo stage

void PMainPanel::monteCarlo() {
    if (busy()) return;
    setLabel("MlPrepVels", "New configuration for a Monte Carlo analysis. Select samples generation and model configuration");
    for (const char* g : {"BSelectInput", "BAbortMonteCarlo", "TeExternalConf"}) setSensitive(g, true);
    for (const char* g : {"BMonteCarlo", "TVelsFile", "BVelsFile"}) setSensitive(g, false);
    setVisible("IcArrow1", true);
    setVisible("IcArrow2", true);
    setVisible("BGenerate", false);
    setVisible("BVisualize", false);
    (void)controller_->setMonteCarloMode(1);
}

void PMainPanel::changeSel() {
    if (busy()) return;
    struct Row {
        std::vector<const char*> sensitive;
        std::vector<const char*> insensitive;
    };
    static const Row rows[] = {
        {{"BImport", "TImportFile"}, {"BConfigure", "BGenerate", "BOld", "TOldGeneration"}},
        {{"BOld", "TOldGeneration"}, {"BConfigure", "BGenerate", "TImportFile", "BImport"}},
        {{"BConfigure"}, {"BGenerate", "BOld", "TOldGeneration", "TImportFile", "BImport"}},
    };
    const int index = selectorIndex("SelSamplesSource");
    if (index < 0 || index > 2) return;
    for (const char* g : rows[index].sensitive) setSensitive(g, true);
    for (const char* g : rows[index].insensitive) setSensitive(g, false);
}

void PMainPanel::configure() {
    if (busy()) return;
    CallbackScope scope(*this);
    ProjectConfiguration& project = controller_->project();
    if (project.hasPrep == 1 && project.prep.external == 1) {
        if (!LayerDialogs::message(LayerDialogs::Kind::Question, "External configuration",
                                   "An external configuration\nhas been loaded and can't be edited,\ndo you want to "
                                   "discard it?",
                                   true, "^Yes", "^No", window()))
            return;
        (void)controller_->newPrep();
        setText("TeConfiguration", "No configuration loaded");
        setLabel("TImportFile", "");
    }
    setLabel("MlPrepVels", "New configuration for sample set creation");
    if (controller_->configurePrep() != 1) return;
    setSensitive("BGenerate", true);
    describePrep(ConfigurationDescription::Variant::Internal);
    enableStartIfReady();
    setLabel("TOldGeneration", "");
    setLabel("TImportFile", "");
}

void PMainPanel::generate() {
    if (busy()) return;
    CallbackScope scope(*this);
    if (controller_->generateSample() == 1) setSensitive("BVisualize", true);
}

void PMainPanel::visualize() {
    if (busy()) return;
    CallbackScope scope(*this);
    setLabel("MlPrepVels", "Visualize the samples created");
    (void)controller_->visualizeSample();
}

void PMainPanel::oldGeneration() {
    if (busy()) return;
    CallbackScope scope(*this);
    setLabel("MlPrepVels", "Load saved sample file");
    std::string path;
    if (!chooseOrLaunched("Open preprocessed file", kSampleFilters, RememberedDirectories::Prep, true, path)) return;
    if (controller_->loadSampleFile(path) != 1) return;
    describePrep(ConfigurationDescription::Variant::SavedSample);
    setLabel("TOldGeneration", path);
    setSensitive("BVisualize", true);
    enableStartIfReady();
    setLabel("MlPrepVels", "Saved sample file loaded");
    setSensitive("BAnalyse", false);
    setLabel("TVelsFile", "");
    setLabel("TImportFile", "");
}

void PMainPanel::importGeneration() {
    if (busy()) return;
    CallbackScope scope(*this);
    setLabel("MlPrepVels", "Load external sample file");
    std::string path;
    if (!chooseOrLaunched("Open external file", kExternalFilters, RememberedDirectories::Prep, true, path)) return;
    if (controller_->importSampleFile(path) != 1) return;
    describePrep(ConfigurationDescription::Variant::External);
    setLabel("TImportFile", path);
    setSensitive("BVisualize", true);
    enableStartIfReady();
    setLabel("MlPrepVels", "External samples file loaded");
    setSensitive("BAnalyse", false);
    setLabel("TVelsFile", "");
    setLabel("TOldGeneration", "");
}

void PMainPanel::selectInput() {
    if (busy()) return;
    CallbackScope scope(*this);
    if (controller_->selectModel() != 1) return;
    describeModel(true);
    enableStartIfReady();
}

void PMainPanel::start() {
    if (busy()) return;
    CallbackScope scope(*this);
    setLabel("MlPrepVels", "Monte Carlo execution");
    // Only a new configuration is generated first; a sample from a file is used as it is.
    const int result = controller_->runModel(selectorIndex("SelSamplesSource") == 2 ? 0 : 1);
    setSensitive("BSeeLog", true);
    if (result == 1) setSensitive("BAnalyse", true);
}

void PMainPanel::analyse() {
    if (busy()) return;
    CallbackScope scope(*this);
    (void)controller_->analyse();
}

void PMainPanel::abortMonteCarlo() {
    if (busy()) return;
    if (controller_->demoMode() == 1) {
        reset();
        setLabel("BAbortMonteCarlo", "Abort");
        setSensitive("SelSamplesSource", true);
        setSensitive("BAnalyse", false);
    }
    setLabel("MlPrepVels", "Monte Carlo generation aborted");
    setVisible("IcArrow1", false);
    setVisible("IcArrow2", false);
    setVisible("BGenerate", true);
    setVisible("BVisualize", true);
    for (const char* g : {"BMonteCarlo", "TVelsFile", "BVelsFile"}) setSensitive(g, true);
    for (const char* g : {"BSelectInput", "BAbortMonteCarlo", "BSeeLog", "BStart", "TeExternalConf"})
        setSensitive(g, false);
}

void PMainPanel::reset() {
    (void)controller_->setDemoMode(0);
    (void)controller_->clearAll();
    setTitle("Tarvex");
    setText("TeConfiguration", "No data available");
    setText("TeExternalConf", "");
    setSensitive("BVisualize", false);
    setSensitive("BGenerate", false);
    setMenuItemSensitive("MnMenu", kDemoMenu, kDemoOnlyItem, false);
    setMenuItemSensitive("MnMenu", kFileMenu, kQuickSaveItem, false);
}

// ------------------------------------------------------------ files

void PMainPanel::velsFile() {
    if (busy()) return;
    CallbackScope scope(*this);
    setLabel("MlPrepVels", "Saved configuration for UA/SA analysis");
    std::string path;
    if (!chooseOrLaunched("Open file for postprocessing", kVelsFilters, RememberedDirectories::Vels, false, path))
        return;
    if (controller_->loadResultsFile(path) != 1) return;
    describePrep(ConfigurationDescription::Variant::Saved);
    describeModel(false);
    setSensitive("BVisualize", true);
    enableStartIfReady();
    setLabel("TOldGeneration", "");
    setLabel("TVelsFile", path);
    setSensitive("BAnalyse", true);
}

void PMainPanel::loadCfg() {
    if (busy()) return;
    CallbackScope scope(*this);
    std::string path;
    if (launching) {
        path = launchPath;
    } else {
        // The title is the one this question has always had.
        if (controller_->modified() == 1 &&
            !LayerDialogs::message(LayerDialogs::Kind::Question, "Entering demo mode",
                                   "  Discard current configuration\n and load a new one ?", true, "^Yes", "^No",
                                   window()))
            return;
        if (!chooseOrLaunched("Open Tarvex configuration", kProjectFilters, RememberedDirectories::Prep, false, path))
            return;
    }
    // The controller tests the file, reads it into a project of its own and reports
    // its failures; the panel changes only after a complete load.
    if (controller_->loadProject(path) != 1) return;
    const ProjectConfiguration& project = controller_->project();
    setMenuItemSensitive("MnMenu", kFileMenu, kQuickSaveItem, true);
    setTitle(withPath("PrepVels - %s", project.fileName()));
    if (project.hasPrep == 1) {
        describePrep(ConfigurationDescription::Variant::Saved);
        setSensitive("BVisualize", true);
        setLabel("TOldGeneration", "");
        setLabel("TImportFile", "");
    }
    if (project.hasModel == 1) {
        describeModel(true);
        enableStartIfReady();
    }
    if (project.hasVels == 1) setSensitive("BAnalyse", true);
}

void PMainPanel::saveCfg() {
    if (busy()) return;
    CallbackScope scope(*this);
    RememberedDirectories& directories = Environment::instance().directories();
    std::vector<std::string> patterns;
    std::vector<std::string> descriptions;
    for (const auto& [pattern, description] : kProjectFilters) {
        patterns.push_back(pattern);
        descriptions.push_back(description);
    }
    std::string path;
    std::string directory;
    if (!LayerDialogs::chooseFile("Save current configuration", directories.prepDirectory(), patterns, descriptions,
                                  true, window(), path, directory))
        return;
    (void)directories.setPrepDirectory(directory);
    if (!openForAppending(path)) {
        (void)LayerDialogs::message(LayerDialogs::Kind::Error, kWriteErrorTitle,
                                    withPath("  Error writing output file\n %s", path), false, "", "", window());
        return;
    }
    (void)controller_->saveProject(&path);
    setMenuItemSensitive("MnMenu", kFileMenu, kQuickSaveItem, true);
    setTitle(withPath("Tarvex - %s", controller_->project().fileName()));
}

void PMainPanel::quickSave() {
    if (busy()) return;
    CallbackScope scope(*this);
    const ProjectConfiguration& project = controller_->project();
    if (!project.hasFile()) return;
    if (!openForAppending(project.fileName())) {
        (void)LayerDialogs::message(LayerDialogs::Kind::Error, kWriteErrorTitle,
                                    withPath("  Error writing output file\n %s", project.fileName()), false, "", "",
                                    window());
        return;
    }
    (void)controller_->saveProject(nullptr);
}

void PMainPanel::resetConfiguration() {
    if (busy()) return;
    CallbackScope scope(*this);
    if (controller_->modified() == 1 &&
        !LayerDialogs::message(LayerDialogs::Kind::Question, "Warning", "  Discard current configuration ?", true,
                               "^Yes", "^No", window()))
        return;
    // In demo mode, leaving the stage is the whole reset.
    (void)controller_->setDemoMode(1);
    abortMonteCarlo();
    setLabel("MlPrepVels", "Welcome to Tarvex software");
}

// ------------------------------------------------------------ demo mode

void PMainPanel::demo(const std::string& name) {
    if (busy()) return;
    CallbackScope scope(*this);
    const std::string path = resolveIgnoringCase(mainDirectory_ + "/Demo", name + ".dem");
    if (controller_->modified() == 1 &&
        !LayerDialogs::message(LayerDialogs::Kind::Question, "Entering demo mode",
                               "  Discard current configuration\n and switch to demo mode ?", true, "^Yes", "^No",
                               window()))
        return;
    if (controller_->loadResultsFile(path, false) != 1) {
        (void)LayerDialogs::message(LayerDialogs::Kind::Error, "Error initializing demo",
                                    withPath("  Error reading demo file:\n %s", path), false, "", "", window());
        return;
    }
    (void)controller_->setDemoMode(1);
    setTitle("Tarvex (Demo mode - " + name + ")");
    setMenuItemSensitive("MnMenu", kDemoMenu, kDemoOnlyItem, true);
    setSensitive("SelSamplesSource", false);
    setSensitive("BAnalyse", true);
    setLabel("BAbortMonteCarlo", "Exit demo mode");
    setSensitive("BStart", true);
    monteCarlo();
    setSensitive("BSelectInput", false);
    describePrep(ConfigurationDescription::Variant::Demo);
    describeModel(false);
    setLabel("TOldGeneration", "");
    setLabel("TVelsFile", "");
    // Level E can be studied but not run here.
    if (name == "LevelE") setSensitive("BStart", false);
    else (void)controller_->showHelpPanel(name);
}

// ------------------------------------------------------------ log, help, about, end

void PMainPanel::help() { HelpSystem::openIndex(); }

void PMainPanel::helpSearch() { HelpSystem::openSearch(""); }

void PMainPanel::AboutTarvex() {
    if (busy()) return;
    CallbackScope scope(*this);
    (void)controller_->showAbout();
}

void PMainPanel::seeLog() {
    if (busy()) return;
    CallbackScope scope(*this);
    (void)controller_->showLog();
}

void PMainPanel::terminate() { requestEnd(); }

void PMainPanel::requestEnd() {
    if (callbacksRunning_ > 0 || busy()) {
        // An operation is running beneath: stop it; its callback ends the program
        // once it has returned.
        endRequested_ = true;
        ui_->requestStop();
        return;
    }
    terminateProgram(*this);
}

}  // namespace tarvex
