#include "cli/SensitivityReport.h"

#include <cmath>
#include <ostream>

#include "cli/TextTable.h"
#include "postproc/ResultTable.h"
#include "postproc/SensitivityStats.h"

namespace tarvex::cli {

namespace {

std::vector<std::vector<std::optional<double>>> allColumns(const SensitivityStats& stats,
                                                           const std::vector<SlotColumn>& columns, int32_t v) {
    std::vector<std::vector<std::optional<double>>> values;
    for (const SlotColumn& c : columns) values.push_back(columnValues(stats, c, v));
    return values;
}

}  // namespace

void writeSensitivityText(std::ostream& out, const SensitivityStats& stats, const std::string& title,
                          const std::vector<SlotColumn>& columns, const std::vector<std::string>& variableNames) {
    out << "Sensitivity analysis: " << title << '\n';
    for (int32_t v = 0; v < stats.variableCount; ++v) {
        out << '\n' << (std::size_t(v) < variableNames.size() ? variableNames[std::size_t(v)] : std::string()) << '\n';
        std::vector<std::string> header{"factor"};
        for (const SlotColumn& c : columns) header.push_back(c.name);
        TextTable table(header);
        const auto values = allColumns(stats, columns, v);
        for (std::size_t r = 0; r < stats.records.size(); ++r) {
            const IndexRecord& record = stats.records[r];
            std::vector<std::string> row{record.name};
            if (const char* kind = kindCellText(record.kind)) {
                row.emplace_back(kind);
            } else {
                for (const auto& column : values)
                    row.push_back(column[r] ? trimmed(formatIndexValue(*column[r])) : std::string());
            }
            table.addRow(std::move(row));
        }
        table.write(out);
    }
}

nlohmann::json sensitivityJson(const SensitivityStats& stats, const std::string& title,
                               const std::vector<SlotColumn>& columns, const std::vector<std::string>& variableNames) {
    nlohmann::json variables = nlohmann::json::array();
    for (int32_t v = 0; v < stats.variableCount; ++v) {
        const auto values = allColumns(stats, columns, v);
        nlohmann::json records = nlohmann::json::array();
        for (std::size_t r = 0; r < stats.records.size(); ++r) {
            const IndexRecord& record = stats.records[r];
            nlohmann::json entry{{"name", record.name}, {"kind", record.kind}};
            if (const char* kind = kindCellText(record.kind)) entry["note"] = kind;
            nlohmann::json cells = nlohmann::json::object();
            for (std::size_t c = 0; c < columns.size(); ++c) {
                const auto& x = values[c][r];
                if (x) cells[columns[c].name] = std::isfinite(*x) ? nlohmann::json(*x) : nlohmann::json(nullptr);
            }
            entry["values"] = std::move(cells);
            if (record.groupCount() > 1) entry["factors"] = record.groupNames;
            records.push_back(std::move(entry));
        }
        variables.push_back({{"name", std::size_t(v) < variableNames.size() ? variableNames[std::size_t(v)] : ""},
                             {"records", std::move(records)}});
    }
    nlohmann::json columnNames = nlohmann::json::array();
    for (const SlotColumn& c : columns) columnNames.push_back(c.name);
    return {{"typeId", stats.typeId}, {"title", title}, {"columns", std::move(columnNames)},
            {"variables", std::move(variables)}};
}

}  // namespace tarvex::cli
