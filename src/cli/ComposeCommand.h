#pragma once
// `tarvex-batch compose`: a project file (.psc) made from a factor file, a
// sampling method with its settings (as `sample` takes them), the sample
// file the project will write, and a model: an internal model file (.imd),
// an external program with the output file it writes, or an output file
// alone (no model is run; its values are read as they stand).
#include <string>

#include "cli/CommandOutcome.h"
#include "cli/SamplerOptions.h"

namespace CLI {
class App;
class Option;
}

namespace tarvex::cli {

struct Console;

inline constexpr const char* kComposeModelText =
    "Give one model: --internal FILE, --external FILE with --output FILE, or --output-only FILE";

class ComposeCommand {
public:
    explicit ComposeCommand(CLI::App& parent);
    CLI::App* app() const { return app_; }
    CommandOutcome run(Console& console);

private:
    CLI::App* app_ = nullptr;
    std::string factorFile_, projectFile_, sampleFile_;
    std::string internal_, external_, output_, outputOnly_;
    SamplerOptions sampler_;
};

}  // namespace tarvex::cli
