#pragma once
// A main panel over a scratch installation: scripted dialogs, modal panels recorded
// and accepted, and files made with the engine's own writers (a generated sample, an
// internal model, projects and demonstration cases) for the panel to open.
#include <gtest/gtest.h>

#include <QAction>
#include <QPushButton>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "../sampling/SamplingFixtures.h"
#include "PanelTestSupport.h"
#include "TestSupport.h"
#include "app/ProjectConfiguration.h"
#include "common/Environment.h"
#include "model/InternalModel.h"
#include "panels/PMainPanel.h"
#include "postproc/PostprocessorFile.h"
#include "sampling/RandomSampler.h"

namespace tarvex::test {

inline constexpr const char* kMainTitle = "Tarvex: Simulation environment for uncertainty and sensitivity analysis";

// Every gadget whose sensitivity the workflow decides.
inline const std::vector<std::string> kStateGadgets = {
    "BMonteCarlo", "SelSamplesSource", "BConfigure", "BGenerate", "BOld", "TOldGeneration", "BImport", "TImportFile",
    "BVisualize", "BSelectInput", "TeExternalConf", "BStart", "BAbortMonteCarlo", "BSeeLog", "BAnalyse", "BVelsFile",
    "TVelsFile"};
inline const std::vector<std::string> kShownGadgets = {"BGenerate", "BVisualize", "IcArrow1", "IcArrow2"};

class MainWorkflow : public ::testing::Test, public PanelTestBase {
protected:
    MainWorkflow() : cwd_(dir.path()), savedDirectories_(Environment::instance().directories()) {
        Environment& env = Environment::instance();
        savedMainDir_ = env.mainDir();
        env.setMainDir(dir.path().string());
        env.directories() = RememberedDirectories();
    }
    ~MainWorkflow() override {
        panel.reset();
        Environment& env = Environment::instance();
        env.directories() = savedDirectories_;
        env.setMainDir(savedMainDir_);
    }

    PMainPanel& make() {
        panel = std::make_unique<PMainPanel>("PMainPanel", kMainTitle, 30, 154, 500, 500, dir.path().string());
        return *panel;
    }

    // --- the user's actions
    void press(const std::string& button) {
        auto* b = qobject_cast<QPushButton*>(panel->getObject(button));
        ASSERT_NE(b, nullptr) << button;
        ASSERT_TRUE(b->isEnabled()) << button << " is insensitive";
        b->click();
    }
    void choose(int sourceIndex) {
        ASSERT_EQ(panel->setSelectorIndex("SelSamplesSource", sourceIndex), 1);
        panel->invokeCallback("changeSel");
    }
    void menu(int m, int item) {
        QAction* a = panel->menuItem("MnMenu", m, item);
        ASSERT_NE(a, nullptr);
        ASSERT_TRUE(a->isEnabled());
        a->trigger();
    }

    // --- what the user sees: "+" sensitive gadgets, "-" hidden ones, and the two items
    std::string state() const {
        std::string s;
        for (const std::string& g : kStateGadgets)
            if (panel->isSensitive(g)) s += g + " ";
        s += "| hidden:";
        for (const std::string& g : kShownGadgets)
            if (!panel->isVisible(g)) s += " " + g;
        s += " | quick save " + std::to_string(panel->isMenuItemSensitive("MnMenu", 0, 2));
        s += " | exit demo " + std::to_string(panel->isMenuItemSensitive("MnMenu", 1, 5));
        return s;
    }
    std::vector<std::string> messages() {
        std::vector<std::string> out;
        for (const auto& m : dialogs->messages) out.push_back(m.title + "|" + m.text);
        return out;
    }

    // --- files made by the engine
    // Two factors, a uniform on [1, 2] and the constant 0.5, `rows` random rows.
    PrepConfiguration samplePrep(int32_t rows, const std::string& file) {
        PrepConfiguration prep;
        EXPECT_EQ(prep.factors.addFactor(testing::uniformFactor("a", 1.0, 2.0)), 1);
        EXPECT_EQ(prep.factors.addFactor(testing::constantFactor("k", 0.5)), 1);
        auto random = std::make_unique<RandomSampler>();
        EXPECT_EQ(random->setSamples(rows), 1);
        prep.sampler = std::move(random);
        prep.sampleFile = file;
        prep.prepareGeneration();
        int percent = 0;
        for (int target = 1; target <= 100 && percent >= 0 && percent < 100; ++target) percent = prep.generate(target);
        EXPECT_EQ(percent, 100);
        return prep;
    }
    std::string writeSample(int32_t rows, const std::string& name = "s.sam") {
        const std::string path = dir.file(name);
        PrepConfiguration prep = samplePrep(rows, path);
        EXPECT_EQ(prep.writeSampleFile(path), 1);
        return path;
    }
    // y = a + k over the inputs a and k, and the internal z.
    InternalModel sumModel() {
        InternalModel m;
        EXPECT_EQ(m.setName("sum"), 1);
        EXPECT_EQ(m.addVariable("a"), 1);
        EXPECT_EQ(m.addVariable("k"), 1);
        EXPECT_EQ(m.addExpression(0, "z", "a*2", 0), 1);
        EXPECT_EQ(m.addExpression(1, "y", "a+k", 1), 1);
        EXPECT_EQ(m.addExpression(2, "w", "z-k", 1), 1);
        return m;
    }
    std::string writeModel(const std::string& name = "sum.imd") {
        InternalModel m = sumModel();
        EXPECT_EQ(m.writeFile(dir.file(name)), 1);
        return dir.file(name);
    }
    // A post-processor file (also the layout of a demonstration case) of a 4-row sample
    // and the internal model.
    void writeResults(const std::string& path) {
        PrepConfiguration prep = samplePrep(4, dir.file("demo.sam"));
        ModelConfiguration model;
        model.setInternalModel(std::make_unique<InternalModel>(sumModel()));
        VelsConfiguration vels;
        vels.setOutputs(2, {"y", "w"});
        ASSERT_EQ(savePostprocessorFile(path, prep, model, vels), 1);
    }
    std::string script(const std::string& name, const std::string& body) {
        const std::string path = dir.file(name);
        writeFile(path, "#!/bin/sh\n" + body);
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return path;
    }

    ScratchDir dir;
    DialogScript dialogs;
    std::vector<std::string> modals;  // "name|title" of every modal panel opened
    ModalHook hook{[this](Panel& p) {
        modals.push_back(p.name() + "|" + p.title());
        return 1;
    }};
    std::unique_ptr<PMainPanel> panel;

private:
    CurrentDirGuard cwd_;
    RememberedDirectories savedDirectories_;
    std::string savedMainDir_;
};

}  // namespace tarvex::test
