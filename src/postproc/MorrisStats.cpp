#include "postproc/MorrisStats.h"

#include <algorithm>
#include <cmath>
#include <ostream>
#include <vector>

#include "postproc/OutputTable.h"
#include "sampling/MorrisSampler.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex {

int MorrisStats::compute(PrepConfiguration& configuration, OutputTable& outputs) {
    errorText = "No errors";
    const auto* design = dynamic_cast<const MorrisSampler*>(configuration.sampler.get());
    if (design == nullptr) {
        clear();
        errorText = kNotMorrisDesignText;
        return 0;
    }
    if (!variablesFit(outputs)) {
        clear();
        return 0;
    }

    // The runs that exist in the design's record and in the outputs alike.
    const std::vector<int32_t>& changed = design->changedFactor();
    int64_t runs = std::max<int64_t>(design->numSamples(), 0);
    runs = std::min<int64_t>({runs, int64_t(changed.size()), int64_t(outputs.rowCount())});
    const uint32_t trajectories = design->trajectories();
    // Only the trajectories the runs start are ever written; the others hold
    // effects of 0.0, which add nothing to s and t.
    int64_t columns = 0;
    for (int64_t i = 0; i < runs; ++i) columns += changed[size_t(i)] < 0 ? 1 : 0;
    columns = std::min<int64_t>(columns, trajectories);

    records = factorRecords(configuration.factors, size_t(variableCount) * kSlots);
    factorCount = int32_t(records.size());
    int64_t uncertain = 0;
    for (const IndexRecord& record : records) uncertain += record.kind == kUncertainFactor ? 1 : 0;

    const double r = double(trajectories);
    std::vector<double> y(static_cast<size_t>(runs));
    // Row per uncertain factor, its trajectories side by side.
    std::vector<double> effects(size_t(uncertain * columns));
    for (int32_t v = 0; v < variableCount; ++v) {
        if (!outputs.column(v, int32_t(runs), y.data())) {
            clear();
            errorText = outputs.errorText();
            return 0;
        }
        std::fill(effects.begin(), effects.end(), 0.0);
        int64_t column = -1;
        for (int64_t i = 0; i < runs; ++i) {
            const int32_t factor = changed[size_t(i)];
            if (factor < 0) {
                ++column;
                continue;
            }
            if (i == 0 || column < 0 || column >= columns || factor >= uncertain) continue;
            effects[size_t(factor * columns + column)] = std::fabs(2.0 * (y[size_t(i - 1)] - y[size_t(i)]));
        }
        int64_t row = 0;
        for (IndexRecord& record : records) {
            if (record.kind != kUncertainFactor) continue;
            const double* e = effects.data() + row * columns;
            double s = 0.0, t = 0.0;
            for (int64_t j = 0; j < columns; ++j) {
                s += e[j];
                t += e[j] * e[j];
            }
            record.values[size_t(v) * kSlots] = std::fabs(s / r);
            record.values[size_t(v) * kSlots + 1] = std::sqrt((r * t - s * s) / ((r - 1.0) * r));
            ++row;
        }
    }
    computed = 1;
    return 1;
}

void MorrisStats::writeTable(std::ostream& out, const ResultTableRequest& request) const {
    out << kMorrisTableTitle;
    writeSheet(out, request, {0, 1}, {kMorrisIndexHeading, kMorrisSigmaHeading});
}

}  // namespace tarvex
