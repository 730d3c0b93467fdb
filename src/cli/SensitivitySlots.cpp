#include "cli/SensitivitySlots.h"

#include <algorithm>

#include "postproc/SensitivityStats.h"

namespace tarvex::cli {

namespace {

int32_t slotsPerVariable(const SensitivityStats& stats, const IndexRecord& record) {
    if (stats.variableCount < 1) return 0;
    return static_cast<int32_t>(record.values.size() / static_cast<std::size_t>(stats.variableCount));
}

int32_t widestRecord(const SensitivityStats& stats) {
    int32_t widest = 0;
    for (const IndexRecord& r : stats.records) widest = std::max(widest, slotsPerVariable(stats, r));
    return widest;
}

bool sameWidths(const SensitivityStats& stats) {
    for (const IndexRecord& r : stats.records)
        if (slotsPerVariable(stats, r) != slotsPerVariable(stats, stats.records.front())) return false;
    return true;
}

}  // namespace

const std::vector<std::string>& regressionMeasureNames() {
    static const std::vector<std::string> names = {"PEAR", "SPEA", "PCC", "PRCC", "SRC", "SRRC", "Smirnov"};
    return names;
}

std::optional<SlotLayout> slotLayout(const SensitivityStats& stats) {
    SlotLayout layout;
    switch (stats.typeId) {
    case 0: {
        layout.title = "Regression and rank measures";
        const auto& measures = regressionMeasureNames();
        const int32_t n = static_cast<int32_t>(measures.size());
        for (int32_t m = 0; m < n; ++m) layout.columns.push_back({measures[std::size_t(m)], m});
        for (int32_t m = 0; m < n; ++m) layout.columns.push_back({measures[std::size_t(m)] + " rank", n + m});
        for (int32_t m = 0; m < n; ++m) layout.columns.push_back({measures[std::size_t(m)] + " significant", 2 * n + m});
        return layout;
    }
    case 1:
        layout.title = "Morris indexes";
        layout.columns = {{"Morris Index", 0}, {"Sigma", 1}};
        return layout;
    case 2:
        layout.title = "Fast indexes";
        layout.columns = {{"First order", 0}, {"Total order", 1}};
        return layout;
    case 3:
        layout.title = "Importance indicators";
        layout.columns = {{"Importance", 0}};
        return layout;
    case 4:
        layout.title = "Sobol indexes";
        // The higher-order form is the one whose one-factor terms hold three values.
        if (widestRecord(stats) >= 3) {
            layout.columns = {{"Index", 0, 0}, {"Total", 1, -1}, {"Closed", 2, 1}};
        } else {
            layout.columns = {{"First order", 0}, {"Total order", 1}};
        }
        return layout;
    default:
        return std::nullopt;
    }
}

std::vector<std::optional<double>> columnValues(const SensitivityStats& stats, const SlotColumn& column,
                                                int32_t variable) {
    const std::size_t count = stats.records.size();
    std::vector<std::optional<double>> out(count);
    if (!stats.computed || count == 0) return out;
    // Where all records are alike the class's own getter reads them; a slot
    // number means different values in records of different widths.
    std::vector<double> values(count);
    const bool whole = sameWidths(stats) && stats.slotValues(column.slot, variable, values.data()) == 1;
    const int32_t widest = widestRecord(stats);
    for (std::size_t r = 0; r < count; ++r) {
        const IndexRecord& record = stats.records[r];
        if (record.kind != kUncertainFactor) continue;
        if (whole) {
            out[r] = values[r];
            continue;
        }
        // Records of different widths: each read by its own.
        const int32_t slots = slotsPerVariable(stats, record);
        const int32_t slot = slots == widest ? column.slot : column.shortSlot;
        if (slot < 0 || slot >= slots || variable < 0 || variable >= stats.variableCount) continue;
        out[r] = record.values[std::size_t(variable) * std::size_t(slots) + std::size_t(slot)];
    }
    return out;
}

}  // namespace tarvex::cli
