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
#include "postproc/OutputTable.h"
#include "postproc/PostprocessorFile.h"
#include "postproc/SensitivityStats.h"
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

// Uniform factors on [low, high] in the order named; a name that starts with
// 'k' is a constant of value `constant`.
inline PrepConfiguration factorsOf(const std::vector<std::string>& names, double low = 0.0, double high = 1.0,
                                   double constant = 1.0) {
    PrepConfiguration prep;
    for (const std::string& name : names)
        EXPECT_EQ(prep.factors.addFactor(name[0] == 'k' ? std::unique_ptr<Factor>(testing::constantFactor(name, constant))
                                                        : std::unique_ptr<Factor>(testing::uniformFactor(name, low, high))),
                  1);
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

// A table (of analysed variables, or a sample) given column by column, all
// of one length.
inline void fillTable(sampValues& table, const std::vector<std::vector<double>>& columns) {
    ASSERT_EQ(table.allocate(int32_t(columns.size())), 1);
    std::vector<double> row(columns.size());
    for (std::size_t r = 0; r < columns[0].size(); ++r) {
        for (std::size_t c = 0; c < columns.size(); ++c) row[c] = columns[c][r];
        ASSERT_GT(table.addRow(row.data()), 0);
    }
}

inline OutputTable tableOf(const std::vector<std::vector<double>>& columns) {
    OutputTable table;
    fillTable(table, columns);
    return table;
}

// The first column of `table` without its last run.
inline OutputTable withoutLastRun(OutputTable& table) {
    std::vector<double> y;
    for (int32_t r = 0; r + 1 < table.rowCount(); ++r) y.push_back(table.value(r, 0));
    return tableOf({y});
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

// The round trip of a statistics block: `stats` saved in a post-processor
// file and loaded again comes back as a computed object of its class that
// writes the very block `stats` wrote (every number at its six digits, "nan"
// included). Returns that block; the object read goes to `read` if given.
template <class Stats>
std::string roundTripBlock(const PrepConfiguration& prep, const Stats& stats, std::unique_ptr<SensitivityStats>* read = nullptr) {
    std::string block;
    std::unique_ptr<SensitivityStats> back = throughPostprocessorFile(prep, stats, block);
    EXPECT_NE(dynamic_cast<const Stats*>(back.get()), nullptr);
    if (back == nullptr) return block;
    EXPECT_EQ(back->computed, 1);
    std::ostringstream again;
    back->write(again);
    EXPECT_EQ(again.str(), block);
    if (read != nullptr) *read = std::move(back);
    return block;
}

}  // namespace tarvex::test
