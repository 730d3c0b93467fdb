#include "cli/UaReport.h"

#include <cmath>
#include <cstdio>
#include <ostream>

#include "cli/TextTable.h"
#include "postproc/UaCurves.h"
#include "postproc/UaStats.h"

namespace tarvex::cli {

namespace {

struct UaColumn {
    const char* name;
    double (*value)(const UaStats&, int32_t);
};

const UaColumn kColumns[] = {
    {"mean", [](const UaStats& s, int32_t i) { return s.mean(i); }},
    {"variance", [](const UaStats& s, int32_t i) { return s.std(i) * s.std(i); }},
    {"std", [](const UaStats& s, int32_t i) { return s.std(i); }},
    {"skewness", [](const UaStats& s, int32_t i) { return s.skewness(i); }},
    {"kurtosis", [](const UaStats& s, int32_t i) { return s.kurtosis(i); }},
    {"minimum", [](const UaStats& s, int32_t i) { return s.minimum(i); }},
    {"maximum", [](const UaStats& s, int32_t i) { return s.maximum(i); }},
    {"Tcheb", [](const UaStats& s, int32_t i) { return s.tchebyBound(i); }},
    {"TTest", [](const UaStats& s, int32_t i) { return s.tTestBound(i); }},
};

std::string nameOf(const UaStats& stats, int32_t i) {
    const std::string* name = stats.name(i);
    return name ? *name : std::string();
}

}  // namespace

void writeUaText(std::ostream& out, const UaStats& stats) {
    char head[128];
    std::snprintf(head, sizeof head, "Uncertainty analysis: %d runs, confidence %g\n", stats.sampleSize,
                  stats.tchebyConfidence);
    out << head;
    std::vector<std::string> header{"variable"};
    for (const UaColumn& c : kColumns) header.emplace_back(c.name);
    TextTable table(header);
    for (int32_t i = 0; i < stats.variableCount; ++i) {
        std::vector<std::string> row{nameOf(stats, i)};
        for (const UaColumn& c : kColumns) row.push_back(trimmed(formatUaValue(c.value(stats, i))));
        table.addRow(std::move(row));
    }
    table.write(out);
}

nlohmann::json uaJson(const UaStats& stats) {
    nlohmann::json variables = nlohmann::json::array();
    for (int32_t i = 0; i < stats.variableCount; ++i) {
        nlohmann::json v;
        v["name"] = nameOf(stats, i);
        for (const UaColumn& c : kColumns) {
            const double x = c.value(stats, i);
            v[c.name] = std::isfinite(x) && x != kUaMissing ? nlohmann::json(x) : nlohmann::json(nullptr);
        }
        variables.push_back(std::move(v));
    }
    return {{"runs", stats.sampleSize}, {"confidence", stats.tchebyConfidence}, {"variables", std::move(variables)}};
}

}  // namespace tarvex::cli
