#pragma once
// The sensitivity measures of a computed statistics object, whatever its
// class: per analysed variable a table of one row per factor (or term) and
// one column per value the class keeps, named by SensitivitySlots. A factor
// that is not uncertain shows what it is ("Constant", "Related factor",
// "Correlated factor") in place of its values.
#include <iosfwd>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "cli/SensitivitySlots.h"

namespace tarvex {
class SensitivityStats;
}

namespace tarvex::cli {

// `columns` are the layout's columns to show, in order.
void writeSensitivityText(std::ostream& out, const SensitivityStats& stats, const std::string& title,
                          const std::vector<SlotColumn>& columns, const std::vector<std::string>& variableNames);
nlohmann::json sensitivityJson(const SensitivityStats& stats, const std::string& title,
                               const std::vector<SlotColumn>& columns, const std::vector<std::string>& variableNames);

}  // namespace tarvex::cli
