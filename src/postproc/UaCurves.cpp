#include "postproc/UaCurves.h"

#include <cstdio>

namespace tarvex {

int buildUaCurves(const UaStats& stats, int32_t index, int scale, UaCurves& curves) {
    const Histogram* table = scale == 0 ? stats.linearHistogram(index)
                             : scale == 1 ? stats.logHistogram(index)
                                          : nullptr;
    if (!table) return 0;
    const double runs = stats.sampleSize;
    float running = 0.0f;
    for (std::size_t k = 0; k < table->size(); ++k) {
        const float x = static_cast<float>((*table)[k].edge);
        const double count = (*table)[k].count;
        running += static_cast<float>(count / runs);
        curves.density[k] = {x, static_cast<float>(count)};
        curves.cumulative[k] = {x, running};
        curves.complement[k] = {x, 1.0f - running};
    }
    return 1;
}

double shownIntervalProbability(const UaStats& stats, double a, double b, int32_t index, int scale) {
    const double p = stats.intervalProbability(a, b, index, scale);
    return p > 1.0 ? 1.0 : p;
}

std::string formatUaValue(double value) {
    char text[64];
    const double magnitude = value < 0.0 ? -value : value;
    std::snprintf(text, sizeof text, magnitude < 0.001 || magnitude > 10000.0 ? "%7.3g" : "%7f", value);
    return text;
}

std::vector<std::string> uaStatisticsColumn(const UaStats& stats, int32_t index) {
    const double deviation = stats.std(index);
    return {formatUaValue(stats.mean(index)),      formatUaValue(deviation * deviation),
            formatUaValue(deviation),              formatUaValue(stats.skewness(index)),
            formatUaValue(stats.kurtosis(index)),  formatUaValue(stats.tchebyBound(index)),
            formatUaValue(stats.tTestBound(index))};
}

std::vector<std::vector<std::string>> uaPointsSheet(const UaCurves& curves) {
    std::vector<std::vector<std::string>> sheet;
    sheet.push_back({"Value", "Runs", "Density", "Cumulative", "Complementary"});
    for (std::size_t k = 0; k < curves.density.size(); ++k) {
        char count[32];
        std::snprintf(count, sizeof count, "%d", static_cast<int>(curves.density[k].y));
        sheet.push_back({formatUaValue(curves.density[k].x), count, formatUaValue(curves.density[k].y),
                         formatUaValue(curves.cumulative[k].y), formatUaValue(curves.complement[k].y)});
    }
    return sheet;
}

}  // namespace tarvex
