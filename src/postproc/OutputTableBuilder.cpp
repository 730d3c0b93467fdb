#include "postproc/OutputTableBuilder.h"

#include <cmath>
#include <limits>
#include <new>

#include "model/DataStream.h"
#include "model/ModelConfiguration.h"
#include "postproc/OutputExpression.h"
#include "postproc/OutputTable.h"
#include "postproc/VariableSelection.h"

namespace tarvex {

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// One entry: a single reference, or an expression over several.
struct Entry {
    bool isExpression = false;
    OutputReference reference;
    OutputExpression expression;
};

// Output `o` of a run of `points` times, `outputs` outputs each.
double referenceValue(const OutputReference& ref, const double* times, int32_t points, const double* values,
                      int32_t outputs) {
    if (points <= 0) return kNaN;
    auto at = [&](int32_t p) { return values[static_cast<std::size_t>(p) * outputs + ref.output]; };
    switch (ref.kind) {
    case OutputReference::kPlain:
        return at(0);
    case OutputReference::kMaximum: {
        double best = at(0);
        for (int32_t p = 1; p < points; ++p)
            if (std::isnan(best) || at(p) > best) best = at(p);
        return best;
    }
    case OutputReference::kAtTime: {
        int32_t p = 0;
        while (p < points && times[p] < ref.time) ++p;
        if (p == points) return at(points - 1);
        if (times[p] == ref.time || p == 0) return at(p);
        const double t0 = times[p - 1], t1 = times[p];
        return at(p - 1) + (at(p) - at(p - 1)) * (ref.time - t0) / (t1 - t0);
    }
    }
    return kNaN;
}

}  // namespace

// Running out of memory is a failure like any other.
int buildOutputTable(const ModelConfiguration& model, const std::vector<std::string>& entries, OutputTable& table,
                     std::string& errorText) try {
    table.clear();
    if (entries.empty()) {
        errorText = kNoVariableSelectedText;
        return 0;
    }
    const std::vector<std::string>& names = model.outputNames();
    std::vector<Entry> parsed(entries.size());
    for (std::size_t e = 0; e < entries.size(); ++e) {
        if (parseReference(entries[e], names, parsed[e].reference)) continue;
        parsed[e].isExpression = true;
        if (!parsed[e].expression.parse(entries[e], names)) {
            errorText = kExpressionErrorText;
            return 0;
        }
    }
    const int32_t mode = model.timeMode();
    if ((mode != 0 && mode != 2 && mode != 3) || model.runTimes().runCount() != model.runCount()) {
        errorText = kReadModelOutputErrorText;
        return 0;
    }

    if (!table.allocate(static_cast<int32_t>(entries.size()))) {
        errorText = table.errorText();
        return 0;
    }
    const int32_t outputs = model.outputCount();
    DataStream data(model.dataFile(), "rb");
    std::vector<double> values, row(entries.size()), bound;
    for (int32_t r = 0; r < model.runCount(); ++r) {
        const int32_t points = model.runTimes().count(r);
        const double* times = model.runTimes().times(r);
        values.resize(static_cast<std::size_t>(points) * static_cast<std::size_t>(outputs));
        if (!data || !data.read(values.data(), values.size())) {
            table.clear();
            errorText = kReadModelOutputErrorText;
            return 0;
        }
        for (std::size_t e = 0; e < parsed.size(); ++e) {
            const Entry& entry = parsed[e];
            if (!entry.isExpression) {
                row[e] = referenceValue(entry.reference, times, points, values.data(), outputs);
                continue;
            }
            const std::vector<OutputReference>& refs = entry.expression.references();
            bound.resize(refs.size());
            for (std::size_t k = 0; k < refs.size(); ++k)
                bound[k] = referenceValue(refs[k], times, points, values.data(), outputs);
            row[e] = entry.expression.evaluate(bound.data());
        }
        if (!table.addRow(row.data())) {
            errorText = table.errorText();
            table.clear();
            return 0;
        }
    }
    return 1;
} catch (const std::bad_alloc&) {
    table.clear();
    errorText = kReadModelOutputErrorText;
    return 0;
}

}  // namespace tarvex
