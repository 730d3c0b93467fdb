#pragma once
// The names of the values a sensitivity class keeps per factor and per
// variable, by its typeId: one table for every class, so that the batch
// tool prints any of them the same way.
//
//   0 regression  PEAR SPEA PCC PRCC SRC SRRC Smirnov, their ranks (1 the
//                 strongest) and their significance flags (1 or 0)
//   1 Morris      "Morris Index", "Sigma"
//   2 FAST        first order, total order
//   3 importance  importance
//   4 Sobol       first and total order; in the higher-order form index,
//                 total and closed index of a one-factor term, index and
//                 closed index of a larger term
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarvex {
class SensitivityStats;
}

namespace tarvex::cli {

struct SlotColumn {
    std::string name;
    int32_t slot = 0;         // in a record of the class's full width
    int32_t shortSlot = -1;   // in a narrower record (Sobol terms of several factors); -1 none
};

struct SlotLayout {
    std::string title;
    std::vector<SlotColumn> columns;
};

// The layout of a computed object's records; none for a typeId outside the
// table.
std::optional<SlotLayout> slotLayout(const SensitivityStats& stats);

// The values of one column for one variable, one per record; none where a
// record has no such value (or is not an uncertain factor, whose values
// are not computed).
std::vector<std::optional<double>> columnValues(const SensitivityStats& stats, const SlotColumn& column,
                                                int32_t variable);

// The regression measures' names, by measure number.
const std::vector<std::string>& regressionMeasureNames();

}  // namespace tarvex::cli
