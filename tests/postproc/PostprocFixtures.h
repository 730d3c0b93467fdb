#pragma once
// Projects for the post-processor tests: a small generated sample and model
// results read from a model output file.
#include <gtest/gtest.h>

#include <string>

#include "../sampling/SamplingFixtures.h"
#include "TestSupport.h"
#include "model/MessageSink.h"
#include "model/ModelConfiguration.h"
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

}  // namespace tarvex::test
