#include "cli/ComposeCommand.h"

#include <filesystem>
#include <ostream>

#include <CLI/CLI.hpp>

#include "app/ProjectConfiguration.h"
#include "app/RunController.h"
#include "cli/BatchInterface.h"
#include "cli/Console.h"
#include "correlation/FactorFile.h"
#include "model/InternalModel.h"

namespace tarvex::cli {

namespace {

std::string absolutePath(const std::string& path) {
    std::error_code ec;
    const std::filesystem::path made = std::filesystem::absolute(path, ec);
    return ec ? path : made.lexically_normal().string();
}

}  // namespace

ComposeCommand::ComposeCommand(CLI::App& parent) {
    app_ = parent.add_subcommand("compose", "Make a project (.psc) from a factor file, a sampling method and a model");
    app_->add_option("factors", factorFile_, "Factor file (.fac)")->required()->type_name("FILE");
    app_->add_option("project", projectFile_, "Project file to write (.psc)")->required()->type_name("FILE");
    app_->add_option("--sample", sampleFile_, "Sample file the project writes (.sam); the project's name with .sam "
                                              "by default")
        ->type_name("FILE");
    sampler_.addTo(*app_);
    app_->add_option("--internal", internal_, "Internal model file (.imd)")->type_name("FILE");
    app_->add_option("--external", external_, "External model: a program run with the sample file as its argument")
        ->type_name("FILE");
    app_->add_option("--output", output_, "The external model's output file")->type_name("FILE");
    app_->add_option("--output-only", outputOnly_, "No model: the output file's values are read as they stand")
        ->type_name("FILE");
}

CommandOutcome ComposeCommand::run(Console& console) {
    const int models = int(!internal_.empty()) + int(!external_.empty()) + int(!outputOnly_.empty());
    if (models != 1 || external_.empty() != output_.empty()) return CommandOutcome::usage(kComposeModelText);
    const std::string ext = std::filesystem::path(projectFile_).extension().string();
    if (ext != ".psc" && ext != ".PSC") return CommandOutcome::usage("The project file must be a .psc file");

    const std::string project = absolutePath(projectFile_);
    const std::string sample =
        absolutePath(sampleFile_.empty() ? std::filesystem::path(projectFile_).replace_extension(".sam").string()
                                         : sampleFile_);
    const std::string factorFile = absolutePath(factorFile_);
    const std::string internal = internal_.empty() ? "" : absolutePath(internal_);

    ProjectConfiguration composed;
    std::string error;
    if (!loadFactorFile(factorFile, composed.prep.factors, error)) return CommandOutcome::failure(error);
    if (CommandOutcome o = makeSampler(sampler_.settings(), composed.prep.factors, composed.prep.sampler);
        o.status != kExitSuccess)
        return o;
    composed.prep.sampleFile = sample;
    composed.hasPrep = 1;

    ModelConfiguration& model = composed.model;
    if (!internal.empty()) {
        auto equations = std::make_unique<InternalModel>();
        if (!equations->readFile(internal)) return CommandOutcome::failure(BatchInterface::oneLine(equations->errorText()));
        model.setInternalModel(std::move(equations));
    } else if (!external_.empty()) {
        model.setExternal(absolutePath(external_), absolutePath(output_), 0);
        model.setKind(ModelConfiguration::kExternal);
    } else {
        model.setExternal("", absolutePath(outputOnly_), 0);
        model.setKind(ModelConfiguration::kNoModel);
    }
    composed.hasModel = 1;

    if (!composed.save(project)) return CommandOutcome::failure(BatchInterface::oneLine(kWriteProjectErrorText));
    console.out << "Project: " << project << '\n' << "Sample file: " << sample << '\n';
    return CommandOutcome::success();
}

}  // namespace tarvex::cli
