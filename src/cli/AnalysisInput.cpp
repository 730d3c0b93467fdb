#include "cli/AnalysisInput.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "app/ProjectConfiguration.h"
#include "postproc/PostprocessorFile.h"

namespace tarvex::cli {

CommandOutcome loadAnalysisInput(const std::string& path, AnalysisInput& input) {
    std::string extension = std::filesystem::path(path).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    // A demonstration case has the post-processor file's layout.
    if (extension == ".spc" || extension == ".dem") {
        if (!loadPostprocessorFile(path, input.prep, input.model, input.vels))
            return CommandOutcome::failure(kReadVelsFileErrorText);
        return CommandOutcome::success();
    }
    if (extension == ".psc") {
        ProjectConfiguration project;
        if (!project.load(path)) return CommandOutcome::failure("Error reading configuration file.");
        if (!project.hasPrep || !project.hasModel || !project.hasVels)
            return CommandOutcome::failure("The project " + path + " holds no results: run it first");
        input.prep.swap(project.prep);
        input.model.swap(project.model);
        input.vels = std::move(project.vels);
        return CommandOutcome::success();
    }
    return CommandOutcome::usage("Cannot analyse " + path +
                                 ": analyse reads post-processor files (.spc), projects (.psc) and demonstration "
                                 "cases (.dem)");
}

}  // namespace tarvex::cli
