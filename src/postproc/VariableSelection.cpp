#include "postproc/VariableSelection.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <sstream>

#include "model/ModelConfiguration.h"
#include "sampling/NumberText.h"

namespace tarvex {

std::string addingVariableTitle(const std::string& output) { return "Adding variable " + output; }

std::string maxVariableName(const std::string& output) { return output + "[max]"; }

std::string timeVariableName(const std::string& output, double time) {
    // "%g" in the C locale, whatever locale the program runs in.
    std::string name = output + "[";
    appendNumber(name, time, 6);
    return name + "]";
}

std::string timeRangeText(double value) {
    char text[64];
    std::snprintf(text, sizeof text, value < 0.001 || value >= 1000.0 ? "%7.3g" : "%.3f", value);
    return text;
}

std::string availableTimeText(double time) {
    char text[64];
    std::snprintf(text, sizeof text, "%30.20g", time);
    return text;
}

int outputTimeRange(const ModelConfiguration& model, double& minimum, double& maximum) {
    const RunTimes& times = model.runTimes();
    bool any = false;
    for (int32_t r = 0; r < times.runCount(); ++r) {
        const double* t = times.times(r);
        for (int32_t p = 0; p < times.count(r); ++p) {
            if (!any || t[p] < minimum) minimum = t[p];
            if (!any || t[p] > maximum) maximum = t[p];
            any = true;
        }
        // Runs that share one grid have nothing more to say.
        if (times.uniform()) break;
    }
    return any ? 1 : 0;
}

std::vector<double> availableTimes(const ModelConfiguration& model) {
    const RunTimes& times = model.runTimes();
    std::vector<double> all;
    for (int32_t r = 0; r < times.runCount(); ++r) {
        all.insert(all.end(), times.times(r), times.times(r) + times.count(r));
        if (times.uniform()) break;
    }
    std::sort(all.begin(), all.end());
    all.erase(std::unique(all.begin(), all.end()), all.end());
    return all;
}

bool parseFieldNumber(const std::string& text, double& value) {
    std::istringstream in(text);
    double parsed = 0.0;
    if (!readNumber(in, parsed) || !std::isfinite(parsed)) return false;
    in >> std::ws;
    if (!in.eof()) return false;
    value = parsed;
    return true;
}

std::string checkSingleTime(const std::string& timeText, double minimum, double maximum) {
    double t = 0.0;
    if (!parseFieldNumber(timeText, t) || t < minimum || t > maximum) return kWrongValueText;
    return "";
}

std::string checkTimeBounds(const std::string& lowerText, const std::string& upperText, const std::string& stepText,
                            double minimum, double maximum) {
    double lower = 0.0, upper = 0.0, step = 0.0;
    if (!parseFieldNumber(lowerText, lower) || !parseFieldNumber(upperText, upper) || lower < minimum ||
        lower > maximum || upper < minimum || upper > maximum || upper < lower)
        return kWrongBoundValueText;
    if (!parseFieldNumber(stepText, step) || !(step > 0.0) || (upper - lower) / step > double(kMaxTimeNames))
        return kWrongIntervalValueText;
    return "";
}

std::vector<std::string> multiTimeNames(const std::string& output, double lower, double upper, double step) {
    std::vector<std::string> names;
    if (!(step > 0.0) || !std::isfinite(lower) || !std::isfinite(upper) || (upper - lower) / step > double(kMaxTimeNames))
        return names;
    // The times are sums of steps, as the dialog has always added them.
    for (double t = lower; t < upper; t += step) {
        names.push_back(timeVariableName(output, t));
        // A step too small to move a time this large.
        if (t + step == t) break;
    }
    return names;
}

}  // namespace tarvex
