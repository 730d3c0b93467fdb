#pragma once
// The command line of tarvex-batch: its subcommands, their parsing, and the
// exit status (see CommandOutcome.h). Help and the version go to `out`;
// errors, with a usage line for bad usage, to `err`.
#include <string>
#include <vector>

namespace tarvex::cli {

struct Console;

// `args` without the program's name.
int runBatch(const std::vector<std::string>& args, Console& console);
int runBatch(int argc, const char* const* argv, Console& console);

}  // namespace tarvex::cli
