#include "cli/SampleCommand.h"

#include <filesystem>
#include <ostream>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "cli/Console.h"
#include "cli/ProgressBar.h"
#include "correlation/FactorFile.h"
#include "sampling/GenerationLoop.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex::cli {

SampleCommand::SampleCommand(CLI::App& parent) {
    app_ = parent.add_subcommand("sample", "Generate a sample from a factor file (.fac) into a sample file (.sam)");
    app_->add_option("factors", factorFile_, "Factor file (.fac); its correlations are used as it holds them")
        ->required()
        ->type_name("FILE");
    app_->add_option("-o,--output", sampleFile_, "Sample file to write (.sam)")->required()->type_name("FILE");

    std::vector<std::string> methods;
    for (const MethodName& m : methodOptionNames()) methods.emplace_back(m.option);
    app_->add_option("-m,--method", methodName_, "Sampling method")
        ->required()
        ->transform(CLI::IsMember(methods, CLI::ignore_case));

    sizeOpt_ = app_->add_option("-n,--size", size_, "Runs to generate (random, latin, lptau, fast)");
    seedOpt_ = app_->add_option("--seed", seed_, "Seed of the random stream (random, latin, morris, fast, replicated-latin)");
    trajectoriesOpt_ = app_->add_option("--trajectories", trajectories_, "Morris: trajectories r; runs are r (k + 1)");
    levelsOpt_ = app_->add_option("--levels", levels_, "Morris: levels of the grid");
    baseOpt_ = app_->add_option("--base", base_,
                                "sobol: rows of each base matrix; replicated-latin: runs of the base design");
    replicationsOpt_ = app_->add_option("--replications", replications_, "replicated-latin: replicates of the base design");
    orderOpt_ = app_->add_option("--order", order_, "sobol: indices up to this order (first and total order without it)");
    app_->add_flag("--cheap", settings_.cheap, "sobol: the cheap design, orders above k/2 recovered from the complement");
    app_->add_option("--fast-mode", fastMode_, "fast: classic (first order), total (first and total), groups")
        ->check(CLI::IsMember({"classic", "total", "groups"}));
    app_->add_option("--group", settings_.groups, "fast: a group of factors, NAME=FACTOR,FACTOR,... (repeatable)")
        ->allow_extra_args(false);
    app_->add_option("--rows", settings_.rowsFile, "fixed: text file of runs, one line per run, one value per factor")
        ->type_name("FILE");
    app_->add_flag("--starting-row", settings_.startingRow,
                   "fixed: add the starting row (constants, medians, relations) as a run");
    app_->add_flag("--json", json_, "Print the result as JSON");
    app_->add_flag("-q,--quiet", quiet_, "No progress on standard error");
}

CommandOutcome SampleCommand::run(Console& console) {
    for (const MethodName& m : methodOptionNames())
        if (methodName_ == m.option) settings_.method = m.methodId;
    auto take = [](CLI::Option* opt, int64_t value, std::optional<int64_t>& into) {
        if (opt->count() > 0) into = value;
    };
    take(sizeOpt_, size_, settings_.size);
    take(seedOpt_, seed_, settings_.seed);
    take(trajectoriesOpt_, trajectories_, settings_.trajectories);
    take(levelsOpt_, levels_, settings_.levels);
    take(baseOpt_, base_, settings_.base);
    take(replicationsOpt_, replications_, settings_.replications);
    take(orderOpt_, order_, settings_.order);
    if (!fastMode_.empty()) settings_.fastMode = fastModeOf(fastMode_);

    // Paths are fixed before any reader can move the current directory.
    std::error_code ec;
    const std::filesystem::path absolute = std::filesystem::absolute(sampleFile_, ec);
    const std::string output = ec ? sampleFile_ : absolute.string();

    PrepConfiguration prep;
    std::string error;
    if (!loadFactorFile(factorFile_, prep.factors, error)) return CommandOutcome::failure(error);
    if (CommandOutcome o = makeSampler(settings_, prep.factors, prep.sampler); o.status != kExitSuccess) return o;

    ProgressBar bar(console.err, console.errIsTerminal, console.clock, "Generating " + prep.sampler->methodName());
    const GenerationOutcome generated = runGeneration(prep, [&](int percent) {
        if (!quiet_) bar.update(percent);
        return true;
    });
    if (generated.result == kGenerationDone && !quiet_) bar.update(100);
    bar.finish();
    if (generated.result != kGenerationDone) {
        std::string text = prep.sampler->errorText();
        if (text == kNoErrorsText) text = prep.errorText();
        return CommandOutcome::failure(text != kNoErrorsText ? text : "The generation failed");
    }
    if (!generated.warningText.empty()) console.err << "tarvex-batch: warning: " << generated.warningText << '\n';

    prep.sampleFile = output;
    if (!prep.writeSampleFile(output)) return CommandOutcome::failure(prep.errorText());

    if (json_) {
        nlohmann::json result{{"sampleFile", output},
                              {"method", prep.sampler->methodName()},
                              {"methodId", prep.sampler->methodId()},
                              {"samples", prep.sampler->numSamples()},
                              {"rows", prep.samples.rowCount()},
                              {"factors", prep.factors.factorCount()},
                              {"warning", generated.warningText}};
        console.out << result.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) << '\n';
    } else {
        console.out << "Generated samples: " << prep.sampler->numSamples() << '\n'
                    << "Sample file: " << output << '\n';
    }
    return CommandOutcome::success();
}

}  // namespace tarvex::cli
