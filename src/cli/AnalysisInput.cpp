#include "cli/AnalysisInput.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "postproc/PostprocessorFile.h"

namespace tarvex::cli {

CommandOutcome loadAnalysisInput(const std::string& path, AnalysisInput& input) {
    std::string extension = std::filesystem::path(path).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    if (extension == ".spc") {
        if (!loadPostprocessorFile(path, input.prep, input.model, input.vels))
            return CommandOutcome::failure(kReadVelsFileErrorText);
        return CommandOutcome::success();
    }
    return CommandOutcome::usage("Cannot analyse " + path + ": analyse reads post-processor files (.spc)");
}

}  // namespace tarvex::cli
