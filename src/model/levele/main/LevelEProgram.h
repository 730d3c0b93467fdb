#pragma once
// tarvex-levele: the Level E model as an external model program. Started as
// {program, sample file} from the installation directory, it computes every
// run of the sample and writes the model output file beside it.
#include <iosfwd>
#include <string>
#include <vector>

namespace tarvex::levele {

inline constexpr int kExitOk = 0;
inline constexpr int kExitFailure = 1;  // bad input, or the output not written
inline constexpr int kExitUsage = 2;    // a command line the program does not understand

// Runs the program on `args` (without the program's name). Messages go to
// `err` as "tarvex-levele: ...", help and version to `out`. Returns the exit
// status.
int runLevelE(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace tarvex::levele
