#pragma once
// A generated configuration through its .sam file and back.
#include <string>
#include <utility>

#include "TestSupport.h"
#include "common/Environment.h"
#include "sampling/GenerationLoop.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex::testing {

// Generates `config`, writes its sample file, reads that into a fresh
// configuration and writes it again: the two texts, equal when the record
// round-trips. `back` receives the configuration read.
inline std::pair<std::string, std::string> sampleFileRoundTrip(PrepConfiguration& config, PrepConfiguration& back) {
    test::ScratchDir dir;
    test::CurrentDirGuard guard(dir.path());
    EXPECT_EQ(Environment::instance().directories().setPrepDirectory(dir.path().string()), 1);
    config.sampleFile = dir.file("first.sam");
    EXPECT_EQ(runGeneration(config, nullptr).result, kGenerationDone) << config.errorText();
    EXPECT_EQ(config.writeSampleFile(dir.file("first.sam")), 1);
    EXPECT_EQ(back.readSampleFile(dir.file("first.sam")), 1) << back.errorText();
    EXPECT_EQ(back.writeSampleFile(dir.file("second.sam")), 1);
    std::pair<std::string, std::string> texts{test::readFile(dir.file("first.sam")),
                                              test::readFile(dir.file("second.sam"))};
    Environment::instance().directories().clear(RememberedDirectories::Prep);
    return texts;
}

}  // namespace tarvex::testing
