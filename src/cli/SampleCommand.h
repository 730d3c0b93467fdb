#pragma once
// `tarvex-batch sample`: a sample from a factor file by one of the eight
// methods, generated through the engine's own loop (the correlation is the
// one the factor file holds) and saved as a sample file (.sam).
#include <string>

#include "cli/CommandOutcome.h"
#include "cli/SamplerOptions.h"

namespace CLI {
class App;
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
    SamplerOptions sampler_;
    bool json_ = false, quiet_ = false;
};

}  // namespace tarvex::cli
