// The run controller driven through its workflows with a scripted user:
// generation and its regeneration question, internal and external model runs
// (script models that succeed, fail, are missing or hang), output files read
// without a run, analysis, and projects saved and loaded.
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <filesystem>

#include "../sampling/SamplingFixtures.h"
#include "ScriptedInterface.h"
#include "TestSupport.h"
#include "app/RunController.h"
#include "model/InternalModel.h"
#include "model/SpreadsheetEngine.h"
#include "postproc/SensitivityClasses.h"
#include "sampling/RandomSampler.h"

namespace tarvex {
namespace {

namespace fs = std::filesystem;
using test::readFile;
using test::ScratchDir;
using test::writeFile;
using Strings = std::vector<std::string>;

class Controller : public ::testing::Test {
protected:
    Controller() : here_(dir.path()), saved_(Environment::instance().directories()), controller(ui, dir.path().string()) {
        Environment::instance().directories() = RememberedDirectories();
    }
    ~Controller() override {
        Environment::instance().directories() = saved_;
        for (const auto& s : ui.shown) EXPECT_FALSE(s.what == "question" && s.unscripted) << s.text;
    }

    // Two factors, a uniform on [1, 2] and the constant 0.5, sampled at random.
    PrepConfiguration prepOf(int32_t rows) {
        PrepConfiguration prep;
        EXPECT_EQ(prep.factors.addFactor(testing::uniformFactor("a", 1.0, 2.0)), 1);
        EXPECT_EQ(prep.factors.addFactor(testing::constantFactor("k", 0.5)), 1);
        auto random = std::make_unique<RandomSampler>();
        EXPECT_EQ(random->setSamples(rows), 1);
        prep.sampler = std::move(random);
        prep.sampleFile = dir.file("s.sam");
        return prep;
    }

    // The pre-processor panel accepts a Prep part of `rows` rows; then the sample is made.
    void configureAndGenerate(int32_t rows) {
        ui.onEditPrep = [this, rows](PrepConfiguration& p) {
            p = prepOf(rows);
            return PanelOutcome::Accepted;
        };
        ASSERT_EQ(controller.configurePrep(), 1);
        ASSERT_EQ(controller.generateSample(), 1);
        ASSERT_EQ(controller.project().prep.samples.rowCount(), rows);
    }

    // The model selection panel accepts `model`.
    void selectModel(const ModelConfiguration& model) {
        ui.onSelectModel = [&model](ModelConfiguration& m) {
            m = model;
            return PanelOutcome::Accepted;
        };
        ASSERT_EQ(controller.selectModel(), 1);
    }

    // An internal model of the inputs `inputs` with the output y = a + k.
    ModelConfiguration internalModel(const Strings& inputs) {
        auto m = std::make_unique<InternalModel>();
        EXPECT_EQ(m->setName("sum"), 1);
        for (const std::string& in : inputs) EXPECT_EQ(m->addVariable(in), 1);
        EXPECT_EQ(m->addExpression(0, "y", "a+k", 1), 1);
        ModelConfiguration model;
        model.setInternalModel(std::move(m));
        return model;
    }

    ModelConfiguration externalModel(const std::string& executable, int32_t kind) {
        ModelConfiguration model;
        model.setExternal(executable, dir.file("out.txt"), 0);
        model.setKind(kind);
        return model;
    }

    std::string script(const std::string& name, const std::string& body) {
        const std::string path = dir.file(name);
        writeFile(path, "#!/bin/sh\n" + body);
        fs::permissions(path, fs::perms::owner_all);
        return path;
    }

    std::vector<double> run(int32_t r) {
        std::vector<double> values;
        EXPECT_EQ(controller.project().model.readRun(r, values), 1);
        return values;
    }

    ScratchDir dir;
    test::ScriptedInterface ui;

private:
    test::CurrentDirGuard here_;
    RememberedDirectories saved_;

protected:
    RunController controller;
};

TEST_F(Controller, GenerationAndTheRegenerationQuestion) {
    EXPECT_EQ(controller.sampleStale(), 1);
    configureAndGenerate(20);
    EXPECT_EQ(controller.modified(), 1);
    EXPECT_EQ(controller.sampleStale(), 0);
    EXPECT_TRUE(ui.of("question").empty());  // a stale sample is replaced without asking
    ASSERT_EQ(ui.progress.size(), 1u);
    EXPECT_EQ(ui.progress[0].title, "Sample generation");
    EXPECT_EQ(ui.progress[0].fileLine, "Output file: " + dir.file("s.sam"));
    EXPECT_EQ(ui.fileLines, Strings{"Copying data to file..."});
    EXPECT_EQ(ui.openProgress, 0);
    ASSERT_FALSE(ui.percentages.empty());
    EXPECT_EQ(ui.percentages.front(), 0);
    EXPECT_TRUE(std::is_sorted(ui.percentages.begin(), ui.percentages.end()));
    // The file holds the sample made.
    PrepConfiguration saved;
    ASSERT_EQ(saved.readSampleFile(dir.file("s.sam")), 1);
    const std::vector<double> made = testing::column(controller.project().prep.samples, 0);
    const std::vector<double> inFile = testing::column(saved.samples, 0);
    ASSERT_EQ(inFile.size(), made.size());
    for (std::size_t r = 0; r < made.size(); ++r) EXPECT_NEAR(inFile[r], made[r], 1e-9) << r;  // ten digits
    const std::string file = readFile(dir.file("s.sam"));

    // Refused: the sample stays and nothing runs.
    ui.answers = {1};
    EXPECT_EQ(controller.generateSample(), 1);
    ASSERT_EQ(ui.shown.back().what, "question");
    EXPECT_EQ(ui.shown.back().text,
              "One sample set already exists.\n Do you want to delete the existing one and create a new one now?");
    EXPECT_EQ(ui.shown.back().buttons, (Strings{"^Yes", "^No"}));
    EXPECT_EQ(ui.progress.size(), 1u);
    EXPECT_EQ(controller.project().prep.samples.rowCount(), 20);
    // Accepted: a new generation.
    ui.answers = {0};
    EXPECT_EQ(controller.generateSample(), 1);
    EXPECT_EQ(ui.progress.size(), 2u);
    EXPECT_EQ(readFile(dir.file("s.sam")), file);  // same seed, same sample

    // Stopped halfway: no sample, no statistics, the file as it was.
    ui.answers = {0};
    ui.stopAtDrain = ui.drains + 3;
    EXPECT_EQ(controller.generateSample(), 0);
    EXPECT_EQ(controller.project().prep.samples.rowCount(), 0);
    EXPECT_EQ(controller.project().prep.hasStatistics, 0);
    EXPECT_EQ(ui.openProgress, 0);
    EXPECT_EQ(readFile(dir.file("s.sam")), file);
    EXPECT_EQ(controller.busy(), 0);
}

TEST_F(Controller, GenerationRefusals) {
    ui.onEditPrep = [this](PrepConfiguration& p) {
        p = prepOf(0);
        return PanelOutcome::Accepted;
    };
    ASSERT_EQ(controller.configurePrep(), 1);
    EXPECT_EQ(controller.generateSample(), 0);
    EXPECT_EQ(ui.of("warning"), Strings{"Warning|  No samples to generate"});

    ASSERT_EQ(controller.project().prep.sampler->setSamples(5), 1);
    controller.project().prep.sampleFile = dir.file("no-such-dir/s.sam");
    EXPECT_EQ(controller.generateSample(), 0);
    EXPECT_EQ(ui.of("error"),
              Strings{"Error|Error trying to write to the Sample file.\nIs it locked by another application?"});
    EXPECT_EQ(ui.openProgress, 0);
    EXPECT_EQ(controller.project().prep.samples.rowCount(), 0);

    // A cancelled panel changes nothing.
    ui.onEditPrep = [](PrepConfiguration&) { return PanelOutcome::Cancelled; };
    EXPECT_EQ(controller.configurePrep(), 0);
    EXPECT_EQ(controller.project().prep.sampleFile, dir.file("no-such-dir/s.sam"));
}

TEST_F(Controller, InternalRunOfFiftyRowsAdvancesTwoPercentPerRow) {
    configureAndGenerate(50);
    selectModel(internalModel({"a", "k"}));
    ui.percentages.clear();
    EXPECT_EQ(controller.runModel(1), 1);
    EXPECT_EQ(ui.of("linkFactors").size(), 1u);
    ASSERT_EQ(ui.progress.size(), 2u);
    EXPECT_EQ(ui.progress[1].title, "Model execution");
    EXPECT_EQ(ui.progress[1].heading, "MODEL EXECUTION");
    EXPECT_EQ(ui.progress[1].fileLine, "Model name:  sum");
    // Targets 1, 2, ... : a row is two percent, so each value shows twice;
    // the target 99 reaches 100 and ends the loop.
    std::vector<int> expected{0};
    for (int target = 1; target <= 98; ++target) expected.push_back(2 * ((target + 1) / 2));
    EXPECT_EQ(ui.percentages, expected);

    const ProjectConfiguration& project = controller.project();
    ASSERT_EQ(project.hasVels, 1);
    EXPECT_EQ(project.vels.outputCount(), 1);
    EXPECT_EQ(project.vels.outputs[0].name, std::string("y"));
    ASSERT_EQ(project.model.runCount(), 50);
    for (int32_t r : {0, 49}) {
        double a = 0.0;
        ASSERT_EQ(controller.project().prep.samples.getValue(r, 0, &a), 1);
        EXPECT_NEAR(run(r)[0], a + 0.5, 1e-5);
    }
    EXPECT_EQ(controller.analyse(), 1);
    EXPECT_EQ(ui.of("postprocess").size(), 1u);
}

TEST_F(Controller, InternalRunFailuresLeaveNoResults) {
    configureAndGenerate(200);
    selectModel(internalModel({"a", "k", "extra"}));
    EXPECT_EQ(controller.runModel(1), 0);
    EXPECT_EQ(ui.of("error"),
              Strings{"Error|The number of model inputs differs from the number of factors in the generated sample"});
    EXPECT_TRUE(ui.of("linkFactors").empty());

    // Stopped, while the user also clicks elsewhere: nothing else happens
    // during the run, and the run leaves no results.
    selectModel(internalModel({"a", "k"}));
    ui.stopAtDrain = ui.drains + 5;
    int calls = 0;
    ui.onDrain = [&] {
        ++calls;
        EXPECT_EQ(controller.clearAll(), 1);
        EXPECT_EQ(controller.loadProject(dir.file("none.psc")), 1);
        EXPECT_EQ(controller.runModel(0), 1);
    };
    EXPECT_EQ(controller.runModel(1), 0);
    EXPECT_EQ(calls, 5);
    EXPECT_EQ(ui.of("error").size(), 1u);  // nothing new
    EXPECT_EQ(controller.project().hasPrep, 1);
    EXPECT_EQ(controller.project().hasVels, 0);
    EXPECT_EQ(controller.project().model.runCount(), 0);
    EXPECT_EQ(ui.openProgress, 0);
    EXPECT_EQ(controller.busy(), 0);
    ui.onDrain = nullptr;
    EXPECT_EQ(controller.analyse(), 0);
    EXPECT_EQ(ui.of("error").back(), "Error|The generated sample cardinality is different from model outputs size");
}

TEST_F(Controller, ExternalModels) {
    configureAndGenerate(3);
    const std::string sample = dir.file("s.sam");
    // Runs in the installation directory with the sample file as its argument.
    selectModel(externalModel(script("good.sh", "test \"$1\" = '" + sample + "' || exit 5\n"
                                                "printf '1\\ny\\ntime = no\\n3\\n1\\n2\\n3\\n' > out.txt\n"),
                              ModelConfiguration::kExternal));
    EXPECT_EQ(controller.runModel(1), 1);
    EXPECT_TRUE(ui.of("error").empty());
    ASSERT_EQ(ui.progress.size(), 2u);
    EXPECT_EQ(ui.progress[1].kind, ProgressKind::Animation);
    EXPECT_EQ(ui.progress[1].title, "External model execution");
    EXPECT_EQ(ui.progress[1].modelLine, dir.file("good.sh"));
    EXPECT_EQ(ui.progress[1].fileLine, sample);
    EXPECT_EQ(ui.animationSteps, ui.polls);
    EXPECT_EQ(run(2), std::vector<double>{3});
    EXPECT_EQ(controller.project().vels.outputCount(), 1);

    // Exit code 3: reported, and the output file (still there) is not read.
    selectModel(externalModel(script("three.sh", "printf '1\\nz\\ntime = no\\n3\\n7\\n8\\n9\\n' > out.txt\nexit 3\n"),
                              ModelConfiguration::kExternal));
    EXPECT_EQ(controller.runModel(1), 0);
    EXPECT_EQ(ui.of("error"), Strings{"Error|Model execution returned with error code"});
    EXPECT_EQ(controller.project().model.runCount(), 0);  // the selection's part had no results

    // Missing.
    selectModel(externalModel(dir.file("missing.sh"), ModelConfiguration::kExternal));
    EXPECT_EQ(controller.runModel(1), 0);
    EXPECT_EQ(ui.of("error").back(), "Error|The model execution process can't be loaded.\nError 2\ncmd: \"" +
                                         dir.file("missing.sh") + "\" \"" + sample + "\"");

    // Hanging, stopped by the user: the process is gone, nothing was read.
    selectModel(externalModel(script("hang.sh", "echo $$ > pid.txt\nexec sleep 30\n"), ModelConfiguration::kExternal));
    const std::size_t errors = ui.of("error").size();
    // The user presses stop once the model is surely running.
    ui.onDrain = [this] {
        if (ui.stopAtDrain == 0 && !readFile(dir.file("pid.txt")).empty()) ui.stopAtDrain = ui.drains + 1;
    };
    EXPECT_EQ(controller.runModel(1), 0);
    ui.onDrain = nullptr;
    EXPECT_EQ(ui.of("error").size(), errors);
    EXPECT_EQ(ui.openProgress, 0);
    const pid_t pid = std::stoi(readFile(dir.file("pid.txt")));
    EXPECT_EQ(::kill(pid, 0), -1);

    // No spreadsheet application in this program.
    ModelConfiguration book;
    book.setExternal("Excel Application", dir.file("book.xlsx"), 1);
    book.setKind(ModelConfiguration::kExternal);
    selectModel(book);
    EXPECT_EQ(controller.runModel(1), 0);
    const Strings all = ui.of("error");
    EXPECT_EQ(Strings(all.end() - 2, all.end()),
              (Strings{"Error|Excel not registered properly", "Error|Error in the Excel model execution"}));

    // An engine that reads a workbook's results, or fails.
    struct Engine : SpreadsheetEngine {
        int result = 1;
        int refreshes = 0;
        int runSpreadsheet(ModelConfiguration& model, const PrepConfiguration& prep, MessageSink& messages,
                           const std::function<void()>& refresh) override {
            refresh();
            ++refreshes;
            if (result != 1 || prep.samples.rowCount() != 3) return 0;
            model.setExternal(model.executable(), model.outputFile() + ".txt", 1);
            return model.readModelOutput(messages);
        }
    } engine;
    writeFile(dir.file("book.xlsx.txt"), "1\nw\ntime = no\n3\n4\n5\n6\n");
    controller.setSpreadsheetEngine(&engine);
    EXPECT_EQ(controller.runModel(1), 1);
    EXPECT_EQ(engine.refreshes, 1);
    EXPECT_EQ(run(2), std::vector<double>{6});
    EXPECT_EQ(controller.project().vels.outputs.at(0).name, "w");
    engine.result = 0;
    EXPECT_EQ(controller.runModel(1), 0);
    EXPECT_EQ(ui.of("error").size(), all.size() + 1);
    EXPECT_EQ(ui.of("error").back(), "Error|Error in the Excel model execution");
    EXPECT_EQ(controller.project().hasVels, 0);
}

TEST_F(Controller, OutputFileReadWithoutARunAndTheCardinalityCheck) {
    configureAndGenerate(3);
    // A script that would leave a marker if it were started.
    selectModel(externalModel(script("never.sh", "touch started\n"), ModelConfiguration::kNoModel));
    writeFile(dir.file("out.txt"), "1\ny\ntime = no\n2\n10\n20\n");
    // Asked to make the sample again, the user keeps it, and the run goes on with it.
    ui.answers = {1};
    EXPECT_EQ(controller.runModel(0), 1);
    EXPECT_EQ(ui.of("question").size(), 1u);
    EXPECT_EQ(ui.progress.size(), 1u);  // only the first generation's
    EXPECT_FALSE(fs::exists(dir.file("started")));
    EXPECT_EQ(run(1), std::vector<double>{20});
    EXPECT_EQ(controller.analyse(), 0);
    EXPECT_EQ(ui.of("error"), Strings{"Error|The generated sample cardinality is different from model outputs size"});
    EXPECT_TRUE(ui.of("postprocess").empty());

    writeFile(dir.file("out.txt"), "1\ny\ntime = no\n3\n10\n20\n30\n");
    {
        // A method whose statistics class this build lacks: the analysis opens all the same.
        ScopedSensitivityClass none(sensitivityTypeOf(kRandomMethod), [] { return std::unique_ptr<SensitivityStats>(); });
        ASSERT_EQ(controller.runModel(1), 1);
    }
    EXPECT_EQ(controller.project().vels.sensitivity, nullptr);
    ASSERT_EQ(controller.setDemoMode(1), 1);
    EXPECT_EQ(controller.analyse(), 1);
    ASSERT_EQ(ui.shown.back().what, "postprocess");
    EXPECT_TRUE(ui.shown.back().demoMode);

    // A damaged output file: the driver's message after the reader's own.
    writeFile(dir.file("out.txt"), "1\n2y\ntime = no\n3\n10\n20\n30\n");
    EXPECT_EQ(controller.runModel(1), 0);
    const Strings all = ui.of("error");
    EXPECT_EQ(Strings(all.end() - 2, all.end()),
              (Strings{"Error|Incorrect model variable name: 2y", "Error|Error reading model output file"}));
    // The run that failed took the earlier results with it.
    EXPECT_EQ(controller.project().hasVels, 0);
    EXPECT_EQ(controller.project().model.runCount(), 0);
}

TEST_F(Controller, ProjectsSavedAndLoaded) {
    configureAndGenerate(3);
    writeFile(dir.file("out.txt"), "1\ny\ntime = no\n3\n10\n20\n30\n");
    selectModel(externalModel("", ModelConfiguration::kNoModel));
    ASSERT_EQ(controller.runModel(1), 1);

    // Without a file name the save fails, and the changes stay unsaved.
    EXPECT_EQ(controller.saveProject(nullptr), 0);
    EXPECT_EQ(ui.of("error"),
              Strings{"Error|Error trying to write to the Tarvex configuration file.\nIs it locked by another application?"});
    EXPECT_EQ(controller.modified(), 1);
    const std::string path = dir.file("p.psc");
    ASSERT_EQ(controller.saveProject(&path), 1);
    EXPECT_EQ(controller.modified(), 0);

    ASSERT_EQ(controller.setMonteCarloMode(1), 1);
    ASSERT_EQ(controller.setDemoMode(1), 1);
    EXPECT_EQ(controller.setDemoMode(2), 0);
    EXPECT_EQ(controller.demoMode(), 1);
    ASSERT_EQ(controller.clearAll(), 1);
    EXPECT_EQ(controller.demoMode() + controller.monteCarloMode() + controller.modified(), 0);
    ASSERT_EQ(controller.setMonteCarloMode(1), 1);
    ASSERT_EQ(controller.setDemoMode(1), 1);
    EXPECT_FALSE(controller.readyToRun());
    ASSERT_EQ(controller.newPrep(), 1);
    EXPECT_EQ(controller.sampleStale(), 1);

    // A load takes the whole project and clears modified and sampleStale only.
    selectModel(externalModel("x", ModelConfiguration::kExternal));
    ASSERT_EQ(controller.modified(), 1);
    ASSERT_EQ(controller.loadProject(path), 1);
    const ProjectConfiguration& project = controller.project();
    EXPECT_EQ(project.hasPrep + project.hasModel + project.hasVels, 3);
    EXPECT_EQ(project.fileName(), path);
    EXPECT_EQ(project.prep.samples.rowCount(), 3);
    EXPECT_EQ(run(2), std::vector<double>{30});
    EXPECT_EQ(controller.modified(), 0);
    EXPECT_EQ(controller.sampleStale(), 0);
    EXPECT_EQ(controller.demoMode(), 1);
    EXPECT_EQ(controller.monteCarloMode(), 1);
    EXPECT_TRUE(controller.readyToRun());
    EXPECT_EQ(controller.analyse(), 1);

    // A damaged or missing file changes nothing.
    std::ostringstream before;
    project.write(before);
    selectModel(externalModel("y", ModelConfiguration::kExternal));
    std::ostringstream selected;
    project.write(selected);
    std::string damaged = readFile(path);
    damaged.resize(damaged.size() / 2);
    writeFile(dir.file("bad.psc"), damaged);
    EXPECT_EQ(controller.loadProject(dir.file("bad.psc")), 0);
    EXPECT_EQ(ui.of("error").back(), "Error opening file|Error reading configuration file.");
    EXPECT_EQ(controller.loadProject(dir.file("none.psc")), 0);
    EXPECT_EQ(ui.of("error").back(),
              "Error opening file|  Error opening input file\n " + dir.file("none.psc") + "\n Loading Aborted.");
    std::ostringstream after;
    project.write(after);
    EXPECT_EQ(after.str(), selected.str());
    EXPECT_NE(after.str(), before.str());
    EXPECT_EQ(controller.modified(), 1);
    EXPECT_EQ(project.fileName(), path);

    // The other loads report their own failures.
    EXPECT_EQ(controller.loadSampleFile(dir.file("bad.psc")), 0);
    EXPECT_EQ(controller.importSampleFile(dir.file("bad.psc")), 0);
    EXPECT_EQ(controller.loadResultsFile(dir.file("bad.psc")), 0);
    const Strings all = ui.of("error");
    EXPECT_EQ(Strings(all.end() - 3, all.end()),
              (Strings{"Error|Error reading samples file", "Error|Error reading external samples file",
                       "Error|  Error reading UA/SA file"}));
    std::ostringstream last;
    project.write(last);
    EXPECT_EQ(last.str(), selected.str());
}

}  // namespace
}  // namespace tarvex
