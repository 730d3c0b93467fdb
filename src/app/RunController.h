#pragma once
// The workflow's owner: it holds the project, carries out what the main panel
// (or the batch tool) asks, and drives sample generation, model runs and the
// post-processor. It reaches the user only through a UserInterface.
//
// The busy rule: while a generation or a run is in progress, every operation
// but readyToRun and showHelpPanel returns 1 at once and changes nothing, so
// that a front end serving events in the middle of a run can't change the
// project under it.
//
// Flags:
//   demoMode        1 in demo mode; set by setDemoMode (0 or 1 only), cleared by clearAll.
//   busy            a generation or a run is in progress.
//   monteCarloMode  the Monte Carlo stage was entered (setMonteCarloMode); cleared by clearAll.
//   modified        the project has unsaved changes: set by configurePrep, selectModel,
//                   a generation and a run; cleared by a successful save, the loads and clearAll.
//   sampleStale     the sampling configuration changed since the sample was made (1 at
//                   first): set by configurePrep, newPrep and clearAll; cleared by a
//                   generation and the loads.
//
// loadProject, on success, clears modified and sampleStale and nothing else:
// demoMode stays (a load over a demo case stays in demo mode until a reset)
// and monteCarloMode stays (a project loaded in the Monte Carlo stage can be
// run at once). The other loads (loadSampleFile, importSampleFile,
// loadResultsFile) clear the same two flags.
#include <cstdint>
#include <string>

#include "app/ProjectConfiguration.h"
#include "app/UserInterface.h"
// kReadModelOutputErrorText: one definition, shared with the post-processor.
#include "postproc/OutputTableBuilder.h"

namespace tarvex {

class SpreadsheetEngine;

// Messages and titles of the workflow.
inline constexpr const char* kErrorTitle = "Error";
inline constexpr const char* kWarningTitle = "Warning";
inline constexpr const char* kRegenerateText =
    "One sample set already exists.\n Do you want to delete the existing one and create a new one now?";
inline constexpr const char* kInputsDifferText =
    "The number of model inputs differs from the number of factors in the generated sample";
inline constexpr const char* kLinkTitle = "Link between model and sample factors";
inline constexpr const char* kExcelRunErrorText = "Error in the Excel model execution";
inline constexpr const char* kLostModelText = "Lost connection to model execution";
inline constexpr const char* kModelExitCodeText = "Model execution returned with error code";
inline constexpr const char* kInternalStartErrorText = "Error starting internal model execution";
inline constexpr const char* kCardinalityText = "The generated sample cardinality is different from model outputs size";
inline constexpr const char* kWriteProjectErrorText =
    "Error trying to write to the Tarvex configuration file.\nIs it locked by another application?";
inline constexpr const char* kCopyingDataText = "Copying data to file...";

class RunController {
public:
    // `mainDirectory` is where an external model runs.
    explicit RunController(UserInterface& ui, const std::string& mainDirectory = Environment::instance().mainDir());
    RunController(const RunController&) = delete;
    RunController& operator=(const RunController&) = delete;

    // The spreadsheet application, if this program has one (not owned).
    void setSpreadsheetEngine(SpreadsheetEngine* engine) { spreadsheet_ = engine; }

    // The pre-processor on a copy of the Prep part; on acceptance the project
    // takes it, the Vels part is reset, modified and sampleStale are set. 1 on acceptance.
    [[nodiscard]] int configurePrep();
    // Generates the sample and writes the sample file. 1 when made, and also
    // when the user keeps the existing sample rather than make a new one.
    [[nodiscard]] int generateSample();
    // Runs the model over the sample (generated first unless
    // `useExistingSample` is 1) and, on success, gives the project a fresh Vels
    // part sized to the run. A run that fails or is stopped leaves no results.
    [[nodiscard]] int runModel(int useExistingSample);
    // The internal branch of runModel.
    [[nodiscard]] int runInternal();
    // The post-processor on the results, once the sample and the results have
    // the same number of runs.
    [[nodiscard]] int analyse();
    [[nodiscard]] int selectModel();
    [[nodiscard]] int visualizeSample();
    [[nodiscard]] int showLog();
    [[nodiscard]] int showAbout();
    // Saves to `path`, or without one (nullptr) under the project's file name.
    [[nodiscard]] int saveProject(const std::string* path);
    // Reads the project file into a temporary project and takes it over only
    // if the whole file was read. See the flags above.
    [[nodiscard]] int loadProject(const std::string& path);
    // A .sam file, an external sample file, a post-processor file (.spc, .dem).
    [[nodiscard]] int loadSampleFile(const std::string& path);
    [[nodiscard]] int importSampleFile(const std::string& path);
    // `report` false leaves a failure to the caller, which has a message of its
    // own (a demonstration case): a failed load is reported once.
    [[nodiscard]] int loadResultsFile(const std::string& path, bool report = true);
    // 0 or 1; any other value is refused with 0.
    [[nodiscard]] int setDemoMode(int32_t value);
    // An empty Prep part in place of the current one: the Vels part is reset
    // and sampleStale set.
    [[nodiscard]] int newPrep();
    // The project reset; sampleStale set, demoMode, monteCarloMode and modified cleared.
    [[nodiscard]] int clearAll();
    [[nodiscard]] int setMonteCarloMode(int32_t value);
    // monteCarloMode, a Prep part and a Model part.
    bool readyToRun() const;
    // Not subject to the busy rule: help can be read during a run.
    [[nodiscard]] int showHelpPanel(const std::string& name);

    const std::string& mainDirectory() const { return mainDirectory_; }
    int32_t demoMode() const { return demoMode_; }
    int32_t busy() const { return busy_; }
    int32_t monteCarloMode() const { return monteCarloMode_; }
    int32_t modified() const { return modified_; }
    int32_t sampleStale() const { return sampleStale_; }
    ProjectConfiguration& project() { return project_; }
    const ProjectConfiguration& project() const { return project_; }

private:
    // A sample read by `read` into a temporary replaces the Prep part; a
    // failure shows `errorText` and changes nothing.
    [[nodiscard]] int takeSample(int (PrepConfiguration::*read)(const std::string&), const std::string& path,
                                 const char* errorText);
    // The bodies of generateSample and runInternal, under the caller's busy flag.
    int generate();
    int internalRun();
    int runExternal();
    int runSpreadsheet();
    int readOutputFile();
    void finishRun();
    // A run that failed after results began to change: no results, no Vels part.
    void dropResults();
    bool demo() const { return demoMode_ == 1; }
    void afterLoad();

    UserInterface& ui_;
    std::string mainDirectory_;
    int32_t demoMode_ = 0;
    int32_t busy_ = 0;
    int32_t monteCarloMode_ = 0;
    int32_t modified_ = 0;
    int32_t sampleStale_ = 1;
    ProjectConfiguration project_;
    SpreadsheetEngine* spreadsheet_ = nullptr;
};

}  // namespace tarvex
