#pragma once
// The sampling method's options on a subcommand (--method and the settings
// of each method), shared by every subcommand that makes a sampler so that
// they all take the same words.
#include <cstdint>
#include <string>

#include "cli/SamplerSettings.h"

namespace CLI {
class App;
class Option;
}

namespace tarvex::cli {

class SamplerOptions {
public:
    // Adds --method (required) and the methods' settings to `app`.
    void addTo(CLI::App& app);
    // The settings given, after a successful parse.
    SamplerSettings settings() const;

private:
    std::string methodName_;
    int64_t size_ = 0, seed_ = 0, trajectories_ = 0, levels_ = 0, base_ = 0, replications_ = 0, order_ = 0;
    CLI::Option *sizeOpt_ = nullptr, *seedOpt_ = nullptr, *trajectoriesOpt_ = nullptr, *levelsOpt_ = nullptr,
                *baseOpt_ = nullptr, *replicationsOpt_ = nullptr, *orderOpt_ = nullptr;
    std::string fastMode_;
    SamplerSettings settings_;
};

}  // namespace tarvex::cli
