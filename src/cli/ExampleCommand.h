#pragma once
// `tarvex-batch example NAME`: a built-in case made in code, run through the
// run controller in a scratch directory, and its indices printed beside
// their analytic values. The scratch directory is removed afterwards unless
// --keep names one to keep the project, sample and results in.
#include <cstdint>
#include <string>

#include "cli/CommandOutcome.h"

namespace CLI {
class App;
class Option;
}

namespace tarvex::cli {

struct Console;

class ExampleCommand {
public:
    explicit ExampleCommand(CLI::App& parent);
    CLI::App* app() const { return app_; }
    CommandOutcome run(Console& console);

private:
    CLI::App* app_ = nullptr;
    std::string name_, keep_;
    int64_t base_ = 0;
    CLI::Option* baseOpt_ = nullptr;
    bool json_ = false, quiet_ = false;
};

}  // namespace tarvex::cli
