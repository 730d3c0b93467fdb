#include "cli/SamplerOptions.h"

#include <CLI/CLI.hpp>

namespace tarvex::cli {

void SamplerOptions::addTo(CLI::App& app) {
    std::vector<std::string> methods;
    for (const MethodName& m : methodOptionNames()) methods.emplace_back(m.option);
    app.add_option("-m,--method", methodName_, "Sampling method")
        ->required()
        ->transform(CLI::IsMember(methods, CLI::ignore_case));

    sizeOpt_ = app.add_option("-n,--size", size_, "Runs to generate (random, latin, lptau, fast)");
    seedOpt_ = app.add_option("--seed", seed_, "Seed of the random stream (random, latin, morris, fast, replicated-latin)");
    trajectoriesOpt_ = app.add_option("--trajectories", trajectories_, "Morris: trajectories r; runs are r (k + 1)");
    levelsOpt_ = app.add_option("--levels", levels_, "Morris: levels of the grid");
    baseOpt_ = app.add_option("--base", base_, "sobol: rows of each base matrix; replicated-latin: runs of the base design");
    replicationsOpt_ = app.add_option("--replications", replications_, "replicated-latin: replicates of the base design");
    orderOpt_ = app.add_option("--order", order_, "sobol: indices up to this order (first and total order without it)");
    app.add_flag("--cheap", settings_.cheap, "sobol: the cheap design, orders above k/2 recovered from the complement");
    app.add_option("--fast-mode", fastMode_, "fast: classic (first order), total (first and total), groups")
        ->check(CLI::IsMember({"classic", "total", "groups"}));
    app.add_option("--group", settings_.groups, "fast: a group of factors, NAME=FACTOR,FACTOR,... (repeatable)")
        ->allow_extra_args(false);
    app.add_option("--rows", settings_.rowsFile, "fixed: text file of runs, one line per run, one value per factor")
        ->type_name("FILE");
    app.add_flag("--starting-row", settings_.startingRow,
                 "fixed: add the starting row (constants, medians, relations) as a run");
}

SamplerSettings SamplerOptions::settings() const {
    SamplerSettings settings = settings_;
    for (const MethodName& m : methodOptionNames())
        if (methodName_ == m.option) settings.method = m.methodId;
    auto take = [](const CLI::Option* opt, int64_t value, std::optional<int64_t>& into) {
        if (opt->count() > 0) into = value;
    };
    take(sizeOpt_, size_, settings.size);
    take(seedOpt_, seed_, settings.seed);
    take(trajectoriesOpt_, trajectories_, settings.trajectories);
    take(levelsOpt_, levels_, settings.levels);
    take(baseOpt_, base_, settings.base);
    take(replicationsOpt_, replications_, settings.replications);
    take(orderOpt_, order_, settings.order);
    if (!fastMode_.empty()) settings.fastMode = fastModeOf(fastMode_);
    return settings;
}

}  // namespace tarvex::cli
