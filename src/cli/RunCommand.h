#pragma once
// `tarvex-batch run`: a project file (.psc) loaded, its sample generated as
// needed, its model run and the results kept, then saved as a project file
// or a post-processor file (.spc), back to the input or to --output. A run
// that fails or is stopped (Ctrl-C) writes nothing: the project file stays
// as it was.
#include <string>

#include "cli/CommandOutcome.h"

namespace CLI {
class App;
}

namespace tarvex::cli {

struct Console;

inline constexpr const char* kRunStoppedText = "Stopped: the project file was left as it was";

class RunCommand {
public:
    explicit RunCommand(CLI::App& parent);
    CLI::App* app() const { return app_; }
    CommandOutcome run(Console& console);

private:
    CLI::App* app_ = nullptr;
    std::string projectFile_, outputFile_;
    std::string regenerate_ = "yes";
    bool quiet_ = false;
};

}  // namespace tarvex::cli
