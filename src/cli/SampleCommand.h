#pragma once
// `tarvex-batch sample`: a sample from a factor file by one of the eight
// methods, generated through the engine's own loop (the correlation is the
// one the factor file holds) and saved as a sample file (.sam).
#include <string>

#include "cli/CommandOutcome.h"
#include "cli/SamplerSettings.h"

namespace CLI {
class App;
class Option;
}

namespace tarvex::cli {

struct Console;

class SampleCommand {
public:
    // Adds the subcommand and its options to `parent`.
    explicit SampleCommand(CLI::App& parent);
    CLI::App* app() const { return app_; }
    // After a successful parse, when the subcommand was given.
    CommandOutcome run(Console& console);

private:
    CLI::App* app_ = nullptr;
    std::string factorFile_, sampleFile_;
    std::string methodName_;
    int64_t size_ = 0, seed_ = 0, trajectories_ = 0, levels_ = 0, base_ = 0, replications_ = 0, order_ = 0;
    CLI::Option *sizeOpt_ = nullptr, *seedOpt_ = nullptr, *trajectoriesOpt_ = nullptr, *levelsOpt_ = nullptr,
                *baseOpt_ = nullptr, *replicationsOpt_ = nullptr, *orderOpt_ = nullptr;
    std::string fastMode_;
    SamplerSettings settings_;
    bool json_ = false, quiet_ = false;
};

}  // namespace tarvex::cli
