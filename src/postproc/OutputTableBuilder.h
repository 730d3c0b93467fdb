#pragma once
// The values of the selected variables per run, from the model's results:
// one row per run in run order, one column per selected entry. An entry is
// an output, an output at a time or at its maximum, or an expression over
// such references (OutputExpression.h).
//
// An output at a time reads the run's value at that time; a time between two
// of the run's times takes the straight line between their values, a time
// before the first or after the last the value at that end. A plain output
// name reads the run's first time (without a time axis, its only one). A run
// whose expression fails has NaN in its cell, which the statistics count in
// no bin rather than as a made-up 0.0.
#include <string>
#include <vector>

namespace tarvex {

class ModelConfiguration;
class OutputTable;

inline constexpr const char* kReadModelOutputErrorText = "Error reading model output file";

// Replaces `table` with the values. 1, or 0 with `errorText` set:
// kNoVariableSelectedText for no entry, kExpressionErrorText for an entry
// that names no output and is no valid expression over them,
// kReadModelOutputErrorText when the results are incomplete or their time
// axis was never finished. The table is empty after a failure.
[[nodiscard]] int buildOutputTable(const ModelConfiguration& model, const std::vector<std::string>& entries,
                                   OutputTable& table, std::string& errorText);

}  // namespace tarvex
