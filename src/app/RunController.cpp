#include "app/RunController.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <system_error>
#include <utility>

#include "model/ModelProcess.h"
#include "model/SpreadsheetEngine.h"
#include "postproc/PostprocessorFile.h"
#include "sampling/FastSampler.h"
#include "sampling/SamplerFactors.h"

namespace tarvex {

namespace {

constexpr const char* kQuestionTitle = "Question";
constexpr const char* kOpenFileErrorTitle = "Error opening file";
constexpr const char* kReadProjectErrorText = "Error reading configuration file.";

// Holds the busy flag for the life of an operation.
class BusyScope {
public:
    explicit BusyScope(int32_t& busy) : busy_(busy) { busy_ = 1; }
    ~BusyScope() { busy_ = 0; }
    BusyScope(const BusyScope&) = delete;
    BusyScope& operator=(const BusyScope&) = delete;

private:
    int32_t& busy_;
};

// Whether the sample file can be written, asked before a generation rather
// than after it: a file that is there must be writable, a new one needs a
// writable directory.
bool sampleFileWritable(const std::string& path) {
    if (path.empty()) return false;
    std::error_code ec;
    const std::filesystem::path file(path);
    if (std::filesystem::exists(file, ec)) return std::filesystem::is_regular_file(file, ec) && ::access(path.c_str(), W_OK) == 0;
    const std::filesystem::path parent = file.has_parent_path() ? file.parent_path() : std::filesystem::path(".");
    return ::access(parent.c_str(), W_OK) == 0;
}

std::string openErrorText(const std::string& path) {
    return "  Error opening input file\n " + path + "\n Loading Aborted.";
}

}  // namespace

RunController::RunController(UserInterface& ui, const std::string& mainDirectory)
    : ui_(ui), mainDirectory_(mainDirectory) {}

bool RunController::readyToRun() const {
    return monteCarloMode_ == 1 && project_.hasPrep == 1 && project_.hasModel == 1;
}

// ------------------------------------------------------------ panels

int RunController::configurePrep() {
    if (busy_) return 1;
    PrepConfiguration copy = project_.prep;
    if (ui_.editPrep(copy, demo()) != PanelOutcome::Accepted) return 0;
    project_.prep.swap(copy);
    project_.hasPrep = 1;
    project_.resetVels();
    modified_ = 1;
    sampleStale_ = 1;
    return 1;
}

int RunController::selectModel() {
    if (busy_) return 1;
    ModelConfiguration copy = project_.model;
    if (ui_.selectModel(copy, project_.prep.factors, demo()) != PanelOutcome::Accepted) return 0;
    project_.model.swap(copy);
    project_.hasModel = 1;
    modified_ = 1;
    return 1;
}

int RunController::visualizeSample() {
    if (busy_) return 1;
    BusyScope busy(busy_);
    (void)ui_.showSample(project_.prep, demo());
    return 1;
}

int RunController::showLog() {
    if (busy_) return 1;
    (void)ui_.showLog(demo());
    return 1;
}

int RunController::showAbout() {
    if (busy_) return 1;
    (void)ui_.showAbout(demo());
    return 1;
}

int RunController::showHelpPanel(const std::string& name) {
    (void)ui_.showHelpPanel(name, demo());
    return 1;
}

// ------------------------------------------------------------ flags and resets

int RunController::setDemoMode(int32_t value) {
    if (busy_) return 1;
    if (value != 0 && value != 1) return 0;
    demoMode_ = value;
    return 1;
}

int RunController::setMonteCarloMode(int32_t value) {
    if (busy_) return 1;
    if (value != 0 && value != 1) return 0;
    monteCarloMode_ = value;
    return 1;
}

int RunController::newPrep() {
    if (busy_) return 1;
    project_.resetPrep();
    project_.resetVels();
    sampleStale_ = 1;
    return 1;
}

int RunController::clearAll() {
    if (busy_) return 1;
    project_.resetAll();
    sampleStale_ = 1;
    demoMode_ = 0;
    monteCarloMode_ = 0;
    modified_ = 0;
    return 1;
}

// ------------------------------------------------------------ files

int RunController::saveProject(const std::string* path) {
    if (busy_) return 1;
    const int saved = path ? project_.save(*path) : project_.save();
    if (!saved) {
        ui_.message(MessageKind::Error, kErrorTitle, kWriteProjectErrorText);
        // The changes are still only in memory: a later discard must still ask.
        return 0;
    }
    modified_ = 0;
    return 1;
}

void RunController::afterLoad() {
    modified_ = 0;
    sampleStale_ = 0;
}

int RunController::loadProject(const std::string& path) {
    if (busy_) return 1;
    if (!std::ifstream(path)) {
        ui_.message(MessageKind::Error, kOpenFileErrorTitle, openErrorText(path));
        return 0;
    }
    // The file is read into a project of its own, which the current one
    // takes over only when everything was read.
    ProjectConfiguration loaded;
    if (!loaded.load(path)) {
        ui_.message(MessageKind::Error, kOpenFileErrorTitle, kReadProjectErrorText);
        return 0;
    }
    afterLoad();
    project_.assign(loaded);
    return 1;
}

int RunController::loadSampleFile(const std::string& path) {
    return takeSample(&PrepConfiguration::readSampleFile, path, kReadSamplesErrorText);
}

int RunController::importSampleFile(const std::string& path) {
    return takeSample(&PrepConfiguration::loadExternalSample, path, kReadExternalErrorText);
}

int RunController::takeSample(int (PrepConfiguration::*read)(const std::string&), const std::string& path,
                              const char* errorText) {
    if (busy_) return 1;
    PrepConfiguration loaded;
    if (!(loaded.*read)(path)) {
        ui_.message(MessageKind::Error, kErrorTitle, errorText);
        return 0;
    }
    project_.prep.swap(loaded);
    project_.hasPrep = 1;
    project_.resetVels();
    afterLoad();
    return 1;
}

int RunController::loadResultsFile(const std::string& path, bool report) {
    if (busy_) return 1;
    // The reader fills temporaries and changes the three parts only when all
    // three were read.
    if (!loadPostprocessorFile(path, project_.prep, project_.model, project_.vels)) {
        if (report) ui_.message(MessageKind::Error, kErrorTitle, kReadVelsFileErrorText);
        return 0;
    }
    project_.hasPrep = 1;
    project_.hasModel = 1;
    project_.hasVels = 1;
    afterLoad();
    return 1;
}

// ------------------------------------------------------------ generation

int RunController::generateSample() {
    if (busy_) return 1;
    BusyScope busy(busy_);
    return generate();
}

int RunController::generate() {
    PrepConfiguration& prep = project_.prep;
    Sampler* sampler = prep.sampler.get();
    if (project_.hasPrep != 1 || sampler == nullptr || sampler->numSamples() == 0) {
        ui_.message(MessageKind::Warning, kWarningTitle, kNoSamplesText);
        return 0;
    }
    // A sample read from another program's file can't be made again, and its
    // file is the user's: there is nothing to generate and nothing to write.
    if (prep.external == 1) return 1;
    if (sampler->methodId() == kFastMethod) {
        int32_t stochastic = 0;
        for (int f = 0; f < prep.factors.factorCount(); ++f)
            if (isStochastic(prep.factors, f)) ++stochastic;
        auto* fast = static_cast<FastSampler*>(sampler);
        if (!fast->checkSampleSize(stochastic)) {
            ui_.message(MessageKind::Warning, kWarningTitle, fast->errorText());
            return 0;
        }
    }
    if (prep.samples.rowCount() > 0 && sampleStale_ != 1) {
        // The user may keep the sample he has and go on with it.
        if (ui_.ask(Question{kQuestionTitle, kRegenerateText, {"^Yes", "^No"}}) != 0) return 1;
    }

    ui_.beginProgress(ProgressRequest{ProgressKind::Gauge, "generation", "Sample generation", "",
                                      "Output file: " + prep.sampleFile, ""});
    ui_.setPercentage(0);
    if (!sampleFileWritable(prep.sampleFile)) {
        ui_.endProgress();
        ui_.message(MessageKind::Error, kErrorTitle, kWriteSamplesErrorText);
        return 0;
    }
    prep.prepareGeneration();
    int target = 1;
    int percent = prep.generate(target);
    while (percent >= 0 && percent < 100) {
        // A generator that no longer advances past its last percent has failed.
        if (target > 100) {
            percent = -1;
            break;
        }
        ui_.setPercentage(percent);
        ui_.drainEvents();
        if (ui_.stopRequested()) {
            ui_.endProgress();
            prep.cancelGeneration();
            return 0;
        }
        percent = prep.generate(++target);
    }
    if (percent < 0) {
        ui_.endProgress();
        ui_.message(MessageKind::Error, kErrorTitle, prep.errorText());
        prep.cancelGeneration();
        return 0;
    }
    ui_.setProgressFileLine(kCopyingDataText);
    if (!prep.writeSampleFile(prep.sampleFile)) {
        // A sample that isn't in its file would not be what a model reads.
        ui_.endProgress();
        ui_.message(MessageKind::Error, kErrorTitle, kWriteSamplesErrorText);
        prep.cancelGeneration();
        return 0;
    }
    ui_.endProgress();
    modified_ = 1;
    sampleStale_ = 0;
    if (!prep.warningText().empty()) ui_.message(MessageKind::Warning, kWarningTitle, prep.warningText());
    return 1;
}

// ------------------------------------------------------------ model runs

int RunController::runModel(int useExistingSample) {
    if (busy_) return 1;
    BusyScope busy(busy_);
    ModelConfiguration& model = project_.model;
    const FactorList& factors = project_.prep.factors;

    if (model.kind() == ModelConfiguration::kInternal && model.internalModel() != nullptr) {
        if (model.internalModel()->numVariables() != factors.factorCount()) {
            ui_.message(MessageKind::Error, kErrorTitle, kInputsDifferText);
            return 0;
        }
        auto linked = std::make_unique<InternalModel>(*model.internalModel());
        if (ui_.linkFactors(*linked, factors, demo()) == PanelOutcome::Accepted)
            model.setInternalModel(std::move(linked));
    }
    if (useExistingSample != 1 && !generate()) return 0;

    if (model.kind() == ModelConfiguration::kInternal) {
        if (!internalRun()) return 0;
    } else if (model.spreadsheet() == 1) {
        if (!runSpreadsheet()) {
            ui_.message(MessageKind::Error, kErrorTitle, kExcelRunErrorText);
            return 0;
        }
    } else {
        if (model.kind() == ModelConfiguration::kExternal && !runExternal()) return 0;
        if (!readOutputFile()) return 0;
    }
    finishRun();
    modified_ = 1;
    return 1;
}

int RunController::runInternal() {
    if (busy_) return 1;
    BusyScope busy(busy_);
    return internalRun();
}

int RunController::internalRun() {
    ModelConfiguration& model = project_.model;
    sampValues& samples = project_.prep.samples;
    if (!model.prepareInternalRun(samples.rowCount())) {
        dropResults();
        ui_.message(MessageKind::Error, kErrorTitle, kInternalStartErrorText);
        return 0;
    }
    ui_.beginProgress(ProgressRequest{ProgressKind::Gauge, "model execution", "Model execution", "MODEL EXECUTION",
                                      "Model name:  " + model.internalModel()->name(), ""});
    ui_.setPercentage(0);
    // The model takes the rows of one percent at a time, so that the user is
    // served a hundred times per run whatever the sample's size.
    float target = 1.0f;
    int percent = model.advanceInternalRun(samples, target);
    while (percent > 0 && percent < 100) {
        ui_.setPercentage(percent);
        ui_.drainEvents();
        if (ui_.stopRequested()) {
            ui_.endProgress();
            dropResults();
            return 0;
        }
        target += 1.0f;
        percent = model.advanceInternalRun(samples, target);
    }
    ui_.endProgress();
    if (percent < 100) {
        const std::string why = model.errorText().empty() ? std::string(kInternalStartErrorText) : model.errorText();
        dropResults();
        ui_.message(MessageKind::Error, kErrorTitle, why);
        return 0;
    }
    return 1;
}

int RunController::runExternal() {
    const ModelConfiguration& model = project_.model;
    const std::string& sampleFile = project_.prep.sampleFile;
    ModelProcess process;
    if (!process.start(model.executable(), sampleFile, mainDirectory_)) {
        ui_.message(MessageKind::Error, kErrorTitle, process.errorText());
        return 0;
    }
    ui_.beginProgress(ProgressRequest{ProgressKind::Animation, "external model execution", "External model execution",
                                      "", sampleFile, model.executable()});
    ModelProcess::State state;
    while ((state = process.poll()) == ModelProcess::State::Running) {
        ui_.waitForPoll();
        ui_.stepAnimation();
        ui_.drainEvents();
        if (ui_.stopRequested()) {
            process.stop();
            ui_.endProgress();
            return 0;
        }
    }
    ui_.endProgress();
    if (state == ModelProcess::State::Lost) {
        ui_.message(MessageKind::Error, kErrorTitle, kLostModelText);
        return 0;
    }
    if (process.exitCode() != 0) {
        ui_.message(MessageKind::Error, kErrorTitle, kModelExitCodeText);
        return 0;
    }
    return 1;
}

int RunController::runSpreadsheet() {
    if (spreadsheet_ == nullptr) {
        ui_.message(MessageKind::Error, kErrorTitle, kSpreadsheetMissingText);
        return 0;
    }
    if (spreadsheet_->runSpreadsheet(project_.model, project_.prep, ui_, [this] { ui_.refreshWithoutInput(); }) != 1) {
        dropResults();
        return 0;
    }
    return 1;
}

int RunController::readOutputFile() {
    if (!project_.model.readModelOutput(ui_)) {
        dropResults();
        ui_.message(MessageKind::Error, kErrorTitle, kReadModelOutputErrorText);
        return 0;
    }
    return 1;
}

void RunController::dropResults() {
    project_.model.clearResults();
    project_.resetVels();
}

void RunController::finishRun() {
    const ModelConfiguration& model = project_.model;
    VelsConfiguration vels;
    vels.setOutputs(model.outputCount(), model.outputNames());
    if (const Sampler* sampler = project_.prep.sampler.get()) {
        // The class of the method's statistics, where this build has one.
        vels.prepareSensitivity(sampler->methodId());
        if (vels.sensitivity) {
            vels.sensitivity->factorCount = project_.prep.factors.factorCount();
            vels.sensitivity->variableCount = model.outputCount();
        }
    }
    project_.vels = std::move(vels);
    project_.hasVels = 1;
}

// ------------------------------------------------------------ analysis

int RunController::analyse() {
    if (busy_) return 1;
    const int32_t rows = project_.prep.samples.rowCount();
    const int32_t runs = project_.model.runCount();
    if (rows != runs || runs == 0) {
        ui_.message(MessageKind::Error, kErrorTitle, kCardinalityText);
        return 0;
    }
    BusyScope busy(busy_);
    // Results loaded without a post-processor part get the one a run makes.
    if (project_.hasVels != 1) finishRun();
    (void)ui_.postprocess(project_, demo());
    return 1;
}

}  // namespace tarvex
