#pragma once
// The variables an analysis is asked for, in the order the user gave them,
// turned into the texts a selection holds:
//
//   --var Y            an output, or a text already in selection form:
//                      "Y[max]", "Y[2.5]"
//   --max Y            "Y[max]", the maximum over the run's times
//   --at Y=2.5         "Y[2.5]", the value at a time within the range
//   --times Y=0:1:0.25 one text per time from 0, adding 0.25, below 1
//   --expr "Y/Z[0]"    an expression over outputs
//
// Each is checked as the selection dialog checks it, with its messages.
#include <string>
#include <vector>

#include "cli/CommandOutcome.h"

namespace tarvex {
class ModelConfiguration;
}

namespace tarvex::cli {

struct VariableRequest {
    enum Kind { kVariable, kMaximum, kAtTime, kTimes, kExpression };
    Kind kind = kVariable;
    std::string text;  // what followed the option
};

// Appends the selection texts to `entries`. A request that names no output,
// a time out of range, bounds or a step that the dialog would refuse, or an
// expression that does not evaluate is a usage outcome with the dialog's
// message.
CommandOutcome resolveVariables(const std::vector<VariableRequest>& requests, const ModelConfiguration& model,
                                std::vector<std::string>& entries);

}  // namespace tarvex::cli
