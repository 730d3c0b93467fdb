#pragma once
// The rules of choosing a variable for analysis, shared by the selection
// dialog, the main panel and the batch tool: the names of an output at a
// time, the texts of the time range, the list of times of the multi-time
// choice, and the checks with their messages.
#include <cstdint>
#include <string>
#include <vector>

namespace tarvex {

class ModelConfiguration;

inline constexpr const char* kSelectVariableTitle = "Select variable for analysis";
inline constexpr const char* kWrongValueText = "Wrong value";
inline constexpr const char* kWrongBoundValueText = "Wrong bound value";
inline constexpr const char* kWrongIntervalValueText = "Wrong interval value";
inline constexpr const char* kNoVariableSelectedText = "   No variable selected.";
inline constexpr const char* kDeleteAllQuestionText = "   Deleting all items.\n  Are you sure?";

// "Adding variable <output>".
std::string addingVariableTitle(const std::string& output);

// "<output>[max]": the maximum over the run's times.
std::string maxVariableName(const std::string& output);
// "<output>[<time by %g>]": the value at that time.
std::string timeVariableName(const std::string& output, double time);

// An end of the time range as the dialog shows it: "%7.3g" below 0.001 or
// from 1000.0 on, "%.3f" otherwise.
std::string timeRangeText(double value);
// A time of the list of available times: "%30.20g".
std::string availableTimeText(double time);

// The smallest and the largest time of all runs; 0 when there is no run.
[[nodiscard]] int outputTimeRange(const ModelConfiguration& model, double& minimum, double& maximum);
// Every time some run has, ascending, each once.
std::vector<double> availableTimes(const ModelConfiguration& model);

// A number typed into a field: the whole text (blanks around it aside) one
// finite number. False otherwise.
[[nodiscard]] bool parseFieldNumber(const std::string& text, double& value);

// The checks of the dialog's confirmation; "" when the choice stands,
// otherwise the message to show under the title "Error".
// One time: it must be a number within the range, else "Wrong value".
std::string checkSingleTime(const std::string& timeText, double minimum, double maximum);
// Several times: both bounds numbers within the range, the upper one not
// below the lower one, else "Wrong bound value"; the step a number above 0.0,
// else "Wrong interval value". A step so small that the list would hold more
// than kMaxTimeNames times is refused like a step of 0: such a list would
// only hang the dialog.
std::string checkTimeBounds(const std::string& lowerText, const std::string& upperText, const std::string& stepText,
                            double minimum, double maximum);
inline constexpr int64_t kMaxTimeNames = 100000;

// The names of the multi-time choice: one per time from `lower`, adding
// `step`, while the time is strictly below `upper` (0, 0.25, 0.5, 0.75 for
// 0 to 1 by 0.25). Empty for a step that checkTimeBounds refuses.
std::vector<std::string> multiTimeNames(const std::string& output, double lower, double upper, double step);

}  // namespace tarvex
