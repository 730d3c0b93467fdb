// The main panel's workflow: which gadgets each callback leaves sensitive and shown,
// in either order of sample and model, the description blocks, the launch request,
// projects loaded and saved with their messages, and demo mode.
#include <QPushButton>
#include <fstream>
#include <functional>

#include "MainWorkflowFixture.h"
#include "app/ConfigurationDescription.h"
#include "common/AtomicFileWriter.h"

using namespace tarvex;
using namespace tarvex::test;

namespace {

using Strings = std::vector<std::string>;

// The state string of MainWorkflow::state() for the gadgets named.
std::string stateOf(const std::set<std::string>& sensitive, const std::set<std::string>& hidden, int quickSave,
                    int exitDemo) {
    std::string s;
    for (const std::string& g : kStateGadgets)
        if (sensitive.count(g)) s += g + " ";
    s += "| hidden:";
    for (const std::string& g : kShownGadgets)
        if (hidden.count(g)) s += " " + g;
    return s + " | quick save " + std::to_string(quickSave) + " | exit demo " + std::to_string(exitDemo);
}

const std::set<std::string> kArrows = {"IcArrow1", "IcArrow2"};
const std::set<std::string> kStageHidden = {"BGenerate", "BVisualize"};
const std::set<std::string> kWelcome = {"BMonteCarlo", "SelSamplesSource", "BConfigure", "BVelsFile", "TVelsFile"};

struct Step {
    std::string what;
    std::function<void()> act;
    std::set<std::string> sensitive;
    std::set<std::string> hidden;
    int quickSave = 0;
    int exitDemo = 0;
};

class MainPanelStates : public MainWorkflow {
protected:
    void walk(const std::vector<Step>& steps) {
        for (const Step& step : steps) {
            step.act();
            EXPECT_EQ(state(), stateOf(step.sensitive, step.hidden, step.quickSave, step.exitDemo)) << "after " << step.what;
        }
    }
};

TEST_F(MainPanelStates, ANewConfigurationThenAModel) {
    make();
    const std::set<std::string> stage = {"SelSamplesSource", "BConfigure", "BSelectInput", "TeExternalConf",
                                         "BAbortMonteCarlo"};
    auto plus = [](std::set<std::string> s, std::initializer_list<const char*> more) {
        for (const char* g : more) s.insert(g);
        return s;
    };
    walk({
        {"construction", [] {}, kWelcome, kArrows},
        {"monteCarlo", [&] { press("BMonteCarlo"); }, stage, kStageHidden},
        // The pre-processor's panel is accepted as it is: an empty Prep part.
        {"configure", [&] { press("BConfigure"); }, plus(stage, {"BGenerate"}), kStageHidden},
        {"selectInput", [&] { press("BSelectInput"); }, plus(stage, {"BGenerate", "BStart"}), kStageHidden},
        // Index 2 generates first; with no sampler nothing is generated, and the log opens all the same.
        {"start", [&] { press("BStart"); }, plus(stage, {"BGenerate", "BStart", "BSeeLog"}), kStageHidden},
        {"abortMonteCarlo", [&] { press("BAbortMonteCarlo"); }, plus(kWelcome, {"BGenerate"}), kArrows},
        // The project and its stage flag stay, but entering the stage again never offers BStart.
        {"monteCarlo again", [&] { press("BMonteCarlo"); }, plus(stage, {"BGenerate"}), kStageHidden},
    });
    EXPECT_EQ(messages(), Strings{"Warning|  No samples to generate"});
    EXPECT_EQ(panel->getLabel("MlPrepVels"),
              "New configuration for a Monte Carlo analysis. Select samples generation and model configuration");
    EXPECT_EQ(panel->monteCarloMode(), 1);
    EXPECT_EQ(panel->project().hasPrep + panel->project().hasModel, 2);
    EXPECT_EQ(panel->getText("TeConfiguration").substr(0, 23), "Internal Configuration\n");
}

TEST_F(MainPanelStates, AModelThenASavedOrExternalSample) {
    const std::string sample = writeSample(3);
    make();
    const std::set<std::string> stage = {"SelSamplesSource", "BSelectInput", "TeExternalConf", "BAbortMonteCarlo"};
    auto plus = [](std::set<std::string> s, std::initializer_list<const char*> more) {
        for (const char* g : more) s.insert(g);
        return s;
    };
    walk({
        {"monteCarlo", [&] { press("BMonteCarlo"); }, plus(stage, {"BConfigure"}), kStageHidden},
        {"selectInput", [&] { press("BSelectInput"); }, plus(stage, {"BConfigure"}), kStageHidden},
        {"changeSel 1", [&] { choose(1); }, plus(stage, {"BOld", "TOldGeneration"}), kStageHidden},
        {"oldGeneration",
         [&] {
             dialogs->answerFile(sample);
             press("BOld");
         },
         plus(stage, {"BOld", "TOldGeneration", "BVisualize", "BStart"}), kStageHidden},
        // The model names no output file: the run fails, and offers the log but no analysis.
        {"start", [&] { press("BStart"); },
         plus(stage, {"BOld", "TOldGeneration", "BVisualize", "BStart", "BSeeLog"}), kStageHidden},
        {"changeSel 0", [&] { choose(0); },
         plus(stage, {"BImport", "TImportFile", "BVisualize", "BStart", "BSeeLog"}), kStageHidden},
        {"changeSel 2", [&] { choose(2); }, plus(stage, {"BConfigure", "BVisualize", "BStart", "BSeeLog"}),
         kStageHidden},
    });
    // The saved sample took the selector's path: runModel was given 1, so nothing was generated.
    EXPECT_EQ(messages().back(), "Error|Error reading model output file");
    EXPECT_EQ(panel->getLabel("TOldGeneration"), sample);
    EXPECT_EQ(panel->getLabel("MlPrepVels"), "Monte Carlo execution");
    ASSERT_EQ(dialogs->choosers.size(), 1u);
    EXPECT_EQ(dialogs->choosers[0].title, "Open preprocessed file");
    EXPECT_EQ(dialogs->choosers[0].patterns, (Strings{"*.sam", "*.*"}));
    EXPECT_EQ(dialogs->choosers[0].descriptions, (Strings{"*.sam (sample files)", "*.* (all files)"}));
    EXPECT_EQ(Environment::instance().directories().prepDirectory(), dir.path().string());

    // The description of the sample as the engine reads the same file.
    PrepConfiguration read;
    ASSERT_EQ(read.readSampleFile(sample), 1);
    EXPECT_EQ(panel->getText("TeConfiguration"), "Saved Configuration\nTotal factors: 2\nSampling method selected: " +
                                                     read.sampler->methodName() +
                                                     "\nCorrelation method selected: None\nGenerated sample size: 3\n"
                                                     "Sample file:\n   " + read.sampleFile + "\nSample ordered by Run");
    EXPECT_EQ(panel->getText("TeExternalConf"),
              "External model executable:\n   No model selected\n\nModel output file:\n   ");
}

TEST_F(MainPanelStates, ALoadedProjectOutsideTheStageThenAReset) {
    const std::string project = dir.file("p.psc");
    {
        ProjectConfiguration p;
        p.setPrep(samplePrep(4, dir.file("p.sam")));
        ModelConfiguration model;
        model.setInternalModel(std::make_unique<InternalModel>(sumModel()));
        p.setModel(model);
        VelsConfiguration vels;
        vels.setOutputs(2, {"y", "w"});
        p.setVels(vels);
        ASSERT_EQ(p.save(project), 1);
    }
    make();
    const std::set<std::string> stage = {"SelSamplesSource", "BConfigure", "BSelectInput", "TeExternalConf",
                                         "BAbortMonteCarlo", "BVisualize", "BAnalyse"};
    auto plus = [](std::set<std::string> s, std::initializer_list<const char*> more) {
        for (const char* g : more) s.insert(g);
        return s;
    };
    walk({
        {"loadCfg",
         [&] {
             dialogs->answerFile(project);
             menu(0, 0);
         },
         plus(kWelcome, {"BVisualize", "BAnalyse"}), kArrows, 1},
        // A loaded project has all it needs, but the stage was not entered: no BStart.
        {"monteCarlo", [&] { press("BMonteCarlo"); }, stage, kStageHidden, 1},
        {"selectInput", [&] { press("BSelectInput"); }, plus(stage, {"BStart"}), kStageHidden, 1},
        {"resetConfiguration", [&] { menu(0, 3); }, kWelcome, kArrows, 0},
    });
    EXPECT_TRUE(modals.empty());
    // selectInput marked the project changed: the reset asked first.
    EXPECT_EQ(dialogs->messages.size(), 1u);
    EXPECT_EQ(dialogs->messages[0].title, "Warning");
    EXPECT_EQ(dialogs->messages[0].text, "  Discard current configuration ?");
    EXPECT_EQ(dialogs->messages[0].firstLabel + "/" + dialogs->messages[0].secondLabel, "Yes/No");
    EXPECT_EQ(panel->getLabel("MlPrepVels"), "Welcome to Tarvex software");
    EXPECT_EQ(panel->getText("TeConfiguration"), "No data available");
    EXPECT_EQ(panel->getText("TeExternalConf"), "");
    EXPECT_EQ(panel->title(), "Tarvex");
    EXPECT_EQ(panel->project().hasPrep + panel->project().hasModel + panel->project().hasVels, 0);
    EXPECT_EQ(panel->monteCarloMode() + panel->demoMode() + panel->modified(), 0);

    // Without changes the reset asks nothing.
    menu(0, 3);
    EXPECT_EQ(dialogs->messages.size(), 1u);
}

// ------------------------------------------------------------ descriptions

TEST_F(MainWorkflow, TheDescriptionBlocksWordForWord) {
    PrepConfiguration prep = samplePrep(5, "/data/s.sam");
    const std::string method = prep.sampler->methodName();
    const std::string common = "Total factors: 2\nSampling method selected: " + method + "\n";
    using V = ConfigurationDescription::Variant;
    EXPECT_EQ(ConfigurationDescription::prep(prep, V::Internal),
              "Internal Configuration\n" + common +
                  "Correlation method selected: None\nSamples to generate: 5\nSamples file:\n   /data/s.sam\n"
                  "Samples ordered by Run");
    EXPECT_EQ(ConfigurationDescription::prep(prep, V::Demo).substr(0, 19 + common.size()), "Demo Configuration\n" + common);
    EXPECT_EQ(ConfigurationDescription::prep(prep, V::External),
              "External Configuration\n" + common +
                  "Correlation method selected: unknown\nGenerated sample size: 5\nSample file:\n   /data/s.sam");
    // The saved variants count the rows made, the others what the sampler is set to make.
    ASSERT_EQ(prep.sampler->setSamples(9), 1);
    ASSERT_EQ(prep.samples.setOrder(1), 1);
    const char* modes[] = {"Dependence tree", "Iman Conover", "None", "Stein sample"};
    for (int mode = 0; mode < 4; ++mode) {
        prep.factors.correlationMode = mode;
        const std::string line = std::string("Correlation method selected: ") + modes[mode] + "\n";
        EXPECT_EQ(ConfigurationDescription::prep(prep, V::Saved),
                  "Saved Configuration\n" + common + line +
                      "Generated samples: 5\nSamples file:\n   /data/s.sam\nSamples ordered by Factor");
        EXPECT_EQ(ConfigurationDescription::prep(prep, V::SavedSample),
                  "Saved Configuration\n" + common + line +
                      "Generated sample size: 5\nSample file:\n   /data/s.sam\nSample ordered by Factor");
        EXPECT_EQ(ConfigurationDescription::prep(prep, V::Demo),
                  "Demo Configuration\n" + common + line +
                      "Samples to generate: 9\nSamples file:\n   /data/s.sam\nSamples ordered by Factor");
    }

    ModelConfiguration model;
    model.setExternal("/bin/m", "/data/out.txt", 0);
    model.setKind(ModelConfiguration::kExternal);
    EXPECT_EQ(ConfigurationDescription::model(model),
              "External model executable:\n   /bin/m\n\nModel output file:\n   /data/out.txt");
    model.setKind(ModelConfiguration::kNoModel);
    EXPECT_EQ(ConfigurationDescription::model(model),
              "External model executable:\n   No model selected\n\nModel output file:\n   /data/out.txt");
    auto internal = std::make_unique<InternalModel>(sumModel());
    ASSERT_EQ(internal->setFileName("/data/sum.imd"), 1);
    model.setInternalModel(std::move(internal));
    EXPECT_EQ(ConfigurationDescription::model(model),
              "Internal model executable:\n   /data/sum.imd\nNumber of equations: \n   3\nOutput Variables: \n   y\n   w");
    EXPECT_STREQ(ConfigurationDescription::modelLine(model), "Internal model selection");
}

TEST_F(MainWorkflow, AnExternalSampleIsDescribedAndCanOnlyBeDiscarded) {
    const std::string file = dir.file("ext.txt");
    writeFile(file, "3\n2\np first\nq\n1 2\n3 4\n5 6\n");
    make();
    choose(0);
    dialogs->answerFile(file);
    press("BImport");
    ASSERT_EQ(dialogs->choosers.size(), 1u);
    EXPECT_EQ(dialogs->choosers[0].title, "Open external file");
    EXPECT_EQ(dialogs->choosers[0].patterns, Strings{"*.*"});
    EXPECT_EQ(dialogs->choosers[0].descriptions, Strings{"*.* (all files)"});
    EXPECT_EQ(panel->getLabel("MlPrepVels"), "External samples file loaded");
    EXPECT_EQ(panel->getLabel("TImportFile"), file);
    const PrepConfiguration& prep = panel->project().prep;
    EXPECT_EQ(panel->getText("TeConfiguration"),
              "External Configuration\nTotal factors: 2\nSampling method selected: " + prep.sampler->methodName() +
                  "\nCorrelation method selected: unknown\nGenerated sample size: 3\nSample file:\n   " +
                  prep.sampleFile);

    // It can't be edited: kept on "No", replaced by an empty one on "Yes".
    choose(2);
    dialogs->answerMessage(0);
    press("BConfigure");
    ASSERT_EQ(dialogs->messages.size(), 1u);
    EXPECT_EQ(messages()[0], "External configuration|An external configuration\nhas been loaded and can't be edited,\n"
                             "do you want to discard it?");
    EXPECT_EQ(dialogs->messages[0].firstLabel + "/" + dialogs->messages[0].secondLabel, "Yes/No");
    EXPECT_EQ(panel->project().prep.external, 1);
    EXPECT_EQ(panel->getLabel("TImportFile"), file);
    dialogs->answerMessage(1);
    press("BConfigure");
    EXPECT_EQ(panel->project().prep.external, 0);
    EXPECT_EQ(panel->getLabel("TImportFile"), "");
    EXPECT_EQ(panel->getLabel("MlPrepVels"), "New configuration for sample set creation");
    EXPECT_EQ(panel->getText("TeConfiguration").substr(0, 23), "Internal Configuration\n");
}

// ------------------------------------------------------------ launch request

TEST_F(MainWorkflow, TheLaunchRequestLoadsAtOnceAndAppliesItsModelAfterTheLastLine) {
    const std::string sample = writeSample(3);
    const std::string modelFile = writeModel();
    std::filesystem::create_directory(dir.file("prep"));
    ASSERT_EQ(Environment::instance().directories().setPrepDirectory(dir.file("prep")), 1);
    writeFile(dir.file("Tarvex.ini"),
              "Internal model: " + modelFile + "\n"
              "Tarvex sample file:    " + sample + "\n"
              "  External sample file: ignored.txt\n"
              "External sample file:\n"
              "External model executable: /usr/bin/model\n"
              "External model output file: out put.txt\n");
    make();
    EXPECT_TRUE(dialogs->choosers.empty());
    EXPECT_TRUE(dialogs->messages.empty());
    EXPECT_EQ(panel->launching, 0);
    // The sample was read; its path, holding a '/', went whole to the directory setter,
    // which refused a file.
    EXPECT_EQ(panel->getLabel("TOldGeneration"), sample);
    EXPECT_EQ(panel->project().prep.samples.rowCount(), 3);
    EXPECT_EQ(Environment::instance().directories().prepDirectory(), dir.file("prep"));
    // The internal model wins over the external one named with it.
    EXPECT_EQ(panel->getText("TeExternalConf"), "Internal model executable:\n   " + modelFile +
                                                    "\nNumber of equations: \n   3\nOutput Variables: \n   y\n   w");
    EXPECT_EQ(panel->getLabel("MlPrepVels"), "Internal model selection");
    EXPECT_EQ(panel->isSensitive("BStart"), 0);  // not in the Monte Carlo stage
    saveShot(*panel->window(), "main-panel-launch");

    // Without a readable internal model: the output file, kind 2 although an executable is named.
    writeFile(modelFile, "damaged");
    panel.reset();
    make();
    const ModelConfiguration& model = panel->project().model;
    EXPECT_EQ(model.kind(), ModelConfiguration::kNoModel);
    EXPECT_EQ(model.executable(), "/usr/bin/model");
    EXPECT_EQ(model.outputFile(), "out put.txt");
    EXPECT_EQ(model.spreadsheet(), 0);
    EXPECT_TRUE(dialogs->messages.empty());
    EXPECT_EQ(panel->getText("TeExternalConf"),
              "External model executable:\n   No model selected\n\nModel output file:\n   out put.txt");
    EXPECT_EQ(panel->getLabel("MlPrepVels"), "External model selection");

    // The spreadsheet, and files that can't be read, reported as the interactive loads do.
    writeFile(dir.file("Tarvex.ini"),
              "External model executable: Excel Application\n"
              "External model output file: book.xls\n"
              "Tarvex configuration file: " + dir.file("none.spc") + "\n"
              "External sample file: " + dir.file("none.txt") + "\n");
    panel.reset();
    make();
    EXPECT_EQ(panel->project().model.spreadsheet(), 1);
    EXPECT_EQ(panel->project().model.executable(), "Excel Application");
    EXPECT_EQ(messages(), (Strings{"Error|  Error reading UA/SA file", "Error|Error reading external samples file"}));
    EXPECT_TRUE(dialogs->choosers.empty());
}

// ------------------------------------------------------------ projects

TEST_F(MainWorkflow, ProjectsLoadAndSaveWithTheirMessages) {
    const std::string sample = writeSample(3);
    make();
    press("BMonteCarlo");
    choose(1);
    dialogs->answerFile(sample);
    press("BOld");
    press("BSelectInput");  // the project now has unsaved changes
    ASSERT_EQ(panel->modified(), 1);

    // Refused: nothing is offered.
    dialogs->answerMessage(0);
    menu(0, 0);
    ASSERT_EQ(dialogs->messages.size(), 1u);
    EXPECT_EQ(messages()[0], "Entering demo mode|  Discard current configuration\n and load a new one ?");
    EXPECT_EQ(dialogs->messages[0].firstLabel + "/" + dialogs->messages[0].secondLabel, "Yes/No");
    EXPECT_EQ(dialogs->choosers.size(), 1u);  // the sample's

    // A missing file, then a damaged one: title and descriptions stay.
    const std::string before = panel->getText("TeExternalConf");
    dialogs->answerFile(dir.file("none.psc"));
    menu(0, 0);
    ASSERT_EQ(dialogs->choosers.size(), 2u);
    EXPECT_EQ(dialogs->choosers[1].title, "Open Tarvex configuration");
    EXPECT_EQ(dialogs->choosers[1].descriptions, (Strings{"*.psc (project's files)", "*.* (all files)"}));
    EXPECT_EQ(messages().back(),
              "Error opening file|  Error opening input file\n " + dir.file("none.psc") + "\n Loading Aborted.");
    writeFile(dir.file("bad.psc"), "Prep Configuration\n12\n");
    dialogs->answerFile(dir.file("bad.psc"));
    menu(0, 0);
    EXPECT_EQ(messages().back(), "Error opening file|Error reading configuration file.");
    EXPECT_EQ(panel->title(), kMainTitle);
    EXPECT_EQ(panel->getText("TeExternalConf"), before);
    EXPECT_EQ(panel->isMenuItemSensitive("MnMenu", 0, 2), 0);

    // Saving where no file can be made, then where it can.
    const std::size_t shown = dialogs->messages.size();
    dialogs->answerFile(dir.file("no/such/p.psc"));
    menu(0, 1);
    EXPECT_TRUE(dialogs->choosers.back().save);
    EXPECT_EQ(dialogs->choosers.back().title, "Save current configuration");
    EXPECT_EQ(messages().back(), "Write error|  Error writing output file\n " + dir.file("no/such/p.psc"));
    EXPECT_EQ(dialogs->messages.size(), shown + 1);
    EXPECT_EQ(panel->isMenuItemSensitive("MnMenu", 0, 2), 0);
    const std::string path = dir.file("p.psc");
    dialogs->answerFile(path);
    menu(0, 1);
    EXPECT_EQ(dialogs->messages.size(), shown + 1);
    EXPECT_EQ(panel->title(), "Tarvex - " + path);
    EXPECT_EQ(panel->isMenuItemSensitive("MnMenu", 0, 2), 1);
    EXPECT_EQ(panel->modified(), 0);
    ProjectConfiguration saved;
    ASSERT_EQ(saved.load(path), 1);
    EXPECT_EQ(saved.hasPrep + saved.hasModel + saved.hasVels, 2);

    // A quick save that fails leaves the file whole: the test of the file appends.
    const std::string content = readFile(path);
    ASSERT_FALSE(content.empty());
    {
        ScopedWriteFailure full(16);
        menu(0, 2);
    }
    EXPECT_EQ(messages().back(),
              "Error|Error trying to write to the Tarvex configuration file.\nIs it locked by another application?");
    EXPECT_EQ(readFile(path), content);
    menu(0, 2);
    EXPECT_EQ(readFile(path), content);

    // Loading it: not modified, so no question.
    const std::size_t questions = dialogs->messages.size();
    dialogs->answerFile(path);
    menu(0, 0);
    EXPECT_EQ(dialogs->messages.size(), questions);
    EXPECT_EQ(panel->title(), "PrepVels - " + path);
    EXPECT_EQ(panel->isSensitive("BStart"), 1);  // in the stage, with a sample part and a model
}

// ------------------------------------------------------------ demo mode

TEST_F(MainWorkflow, DemoCasesOpenUnderEitherCaseAndLeaveAsTheyCame) {
    std::filesystem::create_directory(dir.file("Demo"));
    writeResults(dir.file("Demo/ISHIGAMI.DEM"));
    writeResults(dir.file("Demo/levelE.dem"));
    make();
    menu(1, 0);  // ishigami
    EXPECT_TRUE(dialogs->messages.empty());
    EXPECT_EQ(panel->title(), "Tarvex (Demo mode - Ishigami)");
    EXPECT_EQ(panel->getLabel("BAbortMonteCarlo"), "Exit demo mode");
    EXPECT_EQ(state(), stateOf({"BConfigure", "TeExternalConf", "BStart", "BAbortMonteCarlo", "BAnalyse"},
                               {"BGenerate", "BVisualize"}, 0, 1));
    EXPECT_EQ(modals, Strings{"Help|Help - Ishigami"});
    EXPECT_EQ(panel->demoMode(), 1);
    const PrepConfiguration& prep = panel->project().prep;
    EXPECT_EQ(panel->getText("TeConfiguration"), "Demo Configuration\nTotal factors: 2\nSampling method selected: " +
                                                     prep.sampler->methodName() +
                                                     "\nCorrelation method selected: None\nSamples to generate: 4\n"
                                                     "Samples file:\n   " + dir.file("demo.sam") +
                                                     "\nSamples ordered by Run");
    EXPECT_EQ(panel->getText("TeExternalConf"),
              "Internal model executable:\n   nofile\nNumber of equations: \n   3\nOutput Variables: \n   y\n   w");
    saveShot(*panel->window(), "main-panel-demo");

    // Unchanged: the second case opens without a question. Level E can't be run.
    menu(1, 1);
    EXPECT_TRUE(dialogs->messages.empty());
    EXPECT_EQ(panel->title(), "Tarvex (Demo mode - LevelE)");
    EXPECT_EQ(panel->isSensitive("BStart"), 0);
    EXPECT_EQ(modals.size(), 1u);

    // A load over the demo keeps demo mode.
    writeResults(dir.file("r.spc"));
    dialogs->answerFile(dir.file("r.spc"));
    panel->invokeCallback("velsFile");
    EXPECT_EQ(panel->demoMode(), 1);
    EXPECT_EQ(panel->getLabel("TVelsFile"), dir.file("r.spc"));
    EXPECT_EQ(dialogs->choosers.back().title, "Open file for postprocessing");
    EXPECT_EQ(dialogs->choosers.back().descriptions, (Strings{"*.spc (vels's files)", "*.* (all files)"}));

    // Leaving through the second menu's item 5.
    menu(1, 5);
    EXPECT_EQ(panel->title(), "Tarvex");
    EXPECT_EQ(panel->getLabel("BAbortMonteCarlo"), "Abort");
    EXPECT_EQ(panel->getText("TeConfiguration"), "No data available");
    EXPECT_EQ(panel->getLabel("MlPrepVels"), "Monte Carlo generation aborted");
    EXPECT_EQ(state(), stateOf(kWelcome, kArrows, 0, 0));
    EXPECT_EQ(panel->demoMode(), 0);
    EXPECT_EQ(panel->project().hasPrep, 0);
}

TEST_F(MainWorkflow, AFailedDemoLoadIsReportedOnceAndChangesNothing) {
    std::filesystem::create_directory(dir.file("Demo"));
    writeFile(dir.file("Demo/linear.dem"), "damaged\n");
    make();
    press("BMonteCarlo");
    press("BSelectInput");
    const std::string before = state();
    const std::string description = panel->getText("TeExternalConf");
    dialogs->answerMessage(1);  // discard the changes
    menu(1, 2);                 // linear
    EXPECT_EQ(messages(), (Strings{"Entering demo mode|  Discard current configuration\n and switch to demo mode ?",
                                   "Error initializing demo|  Error reading demo file:\n " + dir.file("Demo/linear.dem")}));
    EXPECT_EQ(state(), before);
    EXPECT_EQ(panel->getText("TeExternalConf"), description);
    EXPECT_EQ(panel->title(), kMainTitle);
    EXPECT_EQ(panel->demoMode(), 0);
    EXPECT_EQ(panel->project().hasModel, 1);
    EXPECT_TRUE(modals.empty());

    // Refused: nothing is read; a missing case names its path as formed.
    dialogs->answerMessage(0);
    panel->invokeCallback("sobol2");
    EXPECT_EQ(dialogs->messages.size(), 3u);
    dialogs->answerMessage(1);
    panel->invokeCallback("sobol2");
    EXPECT_EQ(messages().back(), "Error initializing demo|  Error reading demo file:\n " + dir.file("Demo/SobolG2.dem"));
}

}  // namespace
