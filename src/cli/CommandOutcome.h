#pragma once
// What a subcommand of the batch tool ends with: the process's exit status
// and, on failure, the one message the user is told.
//
//   0  success
//   1  a failure the program reports with its own message (a file that
//      cannot be read or written, a generation or analysis that fails)
//   2  bad usage: unknown options, missing arguments, settings that
//      contradict each other or lie out of range; a usage line follows
#include <string>

namespace tarvex::cli {

enum ExitStatus : int { kExitSuccess = 0, kExitFailure = 1, kExitUsage = 2 };

struct CommandOutcome {
    int status = kExitSuccess;
    std::string message;

    static CommandOutcome success() { return {}; }
    static CommandOutcome failure(std::string text) { return {kExitFailure, std::move(text)}; }
    static CommandOutcome usage(std::string text) { return {kExitUsage, std::move(text)}; }
};

}  // namespace tarvex::cli
