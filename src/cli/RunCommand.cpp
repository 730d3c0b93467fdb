#include "cli/RunCommand.h"

#include <filesystem>
#include <ostream>

#include <CLI/CLI.hpp>

#include "app/RunController.h"
#include "cli/BatchInterface.h"
#include "cli/Console.h"
#include "postproc/PostprocessorFile.h"

namespace tarvex::cli {

namespace {

std::string absolutePath(const std::string& path) {
    std::error_code ec;
    const std::filesystem::path made = std::filesystem::absolute(path, ec);
    return ec ? path : made.lexically_normal().string();
}

std::string extensionOf(const std::string& path) {
    std::string ext = std::filesystem::path(path).extension().string();
    for (char& c : ext) c = char(std::tolower(static_cast<unsigned char>(c)));
    return ext;
}

}  // namespace

RunCommand::RunCommand(CLI::App& parent) {
    app_ = parent.add_subcommand("run", "Run a project's model over its sample and save the results (.psc or .spc)");
    app_->add_option("project", projectFile_, "Project file (.psc)")->required()->type_name("FILE");
    app_->add_option("-o,--output", outputFile_, "Where to save: a project file (.psc) or a post-processor file (.spc); "
                                                 "the input project by default")
        ->type_name("FILE");
    app_->add_option("--regenerate", regenerate_, "Make a new sample over the one the project holds")
        ->check(CLI::IsMember({"yes", "no"}))
        ->capture_default_str();
    app_->add_flag("-q,--quiet", quiet_, "No progress on standard error");
}

CommandOutcome RunCommand::run(Console& console) {
    // Paths are fixed before loading moves the current directory.
    const std::string input = absolutePath(projectFile_);
    const std::string output = outputFile_.empty() ? input : absolutePath(outputFile_);
    const std::string ext = extensionOf(output);
    if (ext != ".psc" && ext != ".spc")
        return CommandOutcome::usage("The output file must be a project file (.psc) or a post-processor file (.spc)");

    BatchInterface ui(console, QuestionPolicy{regenerate_ == "yes"}, quiet_);
    // An external model runs beside its project.
    RunController controller(ui, std::filesystem::path(input).parent_path().string());
    // The controller has told the user why: the outcome adds nothing.
    if (!controller.loadProject(input)) return CommandOutcome::failure("");
    if (controller.project().hasPrep != 1) return CommandOutcome::failure("The project has no sample configuration");
    if (controller.project().hasModel != 1) return CommandOutcome::failure("The project has no model");
    if (!controller.setMonteCarloMode(1)) return CommandOutcome::failure("The project cannot be run");

    ui.catchInterrupts();
    const int ran = controller.runModel(0);
    ui.releaseInterrupts();
    if (ui.interrupted()) return CommandOutcome::failure(kRunStoppedText);
    if (!ran) return CommandOutcome::failure("");

    ProjectConfiguration& project = controller.project();
    if (ext == ".spc") {
        if (!savePostprocessorFile(output, project.prep, project.model, project.vels))
            return CommandOutcome::failure(BatchInterface::oneLine(kWriteVelsFileErrorText));
    } else if (!controller.saveProject(&output)) {
        return CommandOutcome::failure("");
    }
    console.out << "Runs: " << project.model.runCount() << '\n' << "Saved: " << output << '\n';
    return CommandOutcome::success();
}

}  // namespace tarvex::cli
