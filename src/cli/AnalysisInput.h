#pragma once
// What an analysis reads: the three parts of a project, from the file the
// user names. The post-processor file (.spc) holds all three; a project
// file or a demonstration case adds its own branch to loadAnalysisInput and
// nothing else changes.
#include <string>

#include "cli/CommandOutcome.h"
#include "model/ModelConfiguration.h"
#include "postproc/VelsConfiguration.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex::cli {

struct AnalysisInput {
    PrepConfiguration prep;
    ModelConfiguration model;
    VelsConfiguration vels;
};

// Reads `path` by its extension. A file of a kind that cannot be analysed
// is a usage outcome; one that cannot be read, a failure with the reader's
// text.
CommandOutcome loadAnalysisInput(const std::string& path, AnalysisInput& input);

}  // namespace tarvex::cli
