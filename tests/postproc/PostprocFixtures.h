#pragma once
// Projects for the post-processor tests: a small generated sample and model
// results read from a model output file.
#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "../sampling/SamplingFixtures.h"
#include "TestSupport.h"
#include "common/Environment.h"
#include "model/MessageSink.h"
#include "model/ModelConfiguration.h"
#include "postproc/PostprocessorFile.h"
#include "postproc/VelsConfiguration.h"
#include "sampling/GenerationLoop.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/RandomSampler.h"

namespace tarvex::test {

// Two outputs, Y and Z, over two runs of three time points.
inline constexpr const char* kTimedOutput =
    "2\nY\nZ\ntime = yes\n2\n"
    "RUN 0\n3\n0 1 10\n1 5 20\n2 3 30\n"
    "RUN 1\n3\n0 2 40\n1 4 50\n2 8 60\n";

inline PrepConfiguration randomPrep(int32_t rows) {
    PrepConfiguration prep;
    EXPECT_EQ(prep.factors.addFactor(testing::uniformFactor("a", 1.0, 2.0)), 1);
    EXPECT_EQ(prep.factors.addFactor(testing::constantFactor("k", 0.5)), 1);
    auto random = std::make_unique<RandomSampler>();
    EXPECT_EQ(random->setSamples(rows), 1);
    prep.sampler = std::move(random);
    EXPECT_EQ(runGeneration(prep, nullptr).result, kGenerationDone);
    return prep;
}

struct SilentMessages : MessageSink {
    void warning(const std::string&, const std::string&) override {}
    void error(const std::string&, const std::string&) override {}
};

// Results as an external model would leave them in `outputText`.
inline void readResults(ModelConfiguration& model, const ScratchDir& dir, const std::string& outputText) {
    writeFile(dir.file("model-output.txt"), outputText);
    model.setExternal("", dir.file("model-output.txt"), 0);
    SilentMessages messages;
    EXPECT_EQ(model.readModelOutput(messages), 1);
}

// A table of analysed variables given column by column (all of one length).
inline void fillTable(OutputTable& table, const std::vector<std::vector<double>>& columns) {
    ASSERT_EQ(table.allocate(int32_t(columns.size())), 1);
    std::vector<double> row(columns.size());
    for (std::size_t r = 0; r < columns[0].size(); ++r) {
        for (std::size_t c = 0; c < columns.size(); ++c) row[c] = columns[c][r];
        ASSERT_GT(table.addRow(row.data()), 0);
    }
}

// A cell of a saved table: right-aligned in 20 characters, then TAB.
inline std::string cell(const std::string& text) {
    return std::string(text.size() < 20 ? 20 - text.size() : 0, ' ') + text + "\t";
}

// `stats` as a post-processor file gives it back, saved with `prep` and the
// two outputs of kTimedOutput; null when the file was not read. The
// statistics block as written goes to `block`. Remembered and current
// directories are left as they were.
inline std::unique_ptr<SensitivityStats> throughPostprocessorFile(const PrepConfiguration& prep,
                                                                  const SensitivityStats& stats, std::string& block) {
    const RememberedDirectories saved = Environment::instance().directories();
    ScratchDir dir;
    CurrentDirGuard guard(dir.path());
    ModelConfiguration model;
    readResults(model, dir, kTimedOutput);
    VelsConfiguration vels;
    vels.setOutputs(2, {"Y", "Z"});
    vels.adoptSensitivity(stats);
    std::ostringstream text;
    vels.sensitivity->write(text);
    block = text.str();
    std::unique_ptr<SensitivityStats> back;
    PrepConfiguration prepBack;
    ModelConfiguration modelBack;
    VelsConfiguration velsBack;
    if (savePostprocessorFile(dir.file("stats.spc"), prep, model, vels) == 1 &&
        loadPostprocessorFile(dir.file("stats.spc"), prepBack, modelBack, velsBack) == 1)
        back = std::move(velsBack.sensitivity);
    Environment::instance().directories() = saved;
    return back;
}

}  // namespace tarvex::test
