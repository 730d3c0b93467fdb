#include "plots/Ticks.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace tarvex {

void Ticks::widen(double& min, double& max) {
    if (!std::isfinite(min) && !std::isfinite(max)) {
        min = 0.0;
        max = 1.0;
    } else if (!std::isfinite(min)) {
        min = max;
    } else if (!std::isfinite(max)) {
        max = min;
    }
    if (min > max) std::swap(min, max);
    const double magnitude = std::max(std::fabs(min), std::fabs(max));
    if (max - min > magnitude * 1e-12) return;
    // No width worth showing: a tenth of the value either side, or one unit at zero.
    const double centre = min / 2 + max / 2;
    const double half = centre == 0.0 ? 1.0 : std::fabs(centre) * 0.1;
    min = centre - half;
    max = centre + half;
}

TickSet Ticks::linear(double min, double max, int target) {
    TickSet set;
    if (!std::isfinite(min) || !std::isfinite(max)) return set;
    if (min > max) std::swap(min, max);
    if (target < 2) target = 2;
    // Divided before subtracting so that a range of +-1e308 stays finite.
    const double rough = max / target - min / target;
    if (!(rough > 0.0)) {
        set.values.push_back(min);
        return set;
    }
    const double power = std::pow(10.0, std::floor(std::log10(rough)));
    const double fraction = rough / power;
    double step = power * (fraction < 1.5 ? 1.0 : fraction < 3.0 ? 2.0 : fraction < 7.0 ? 5.0 : 10.0);
    if (!std::isfinite(step)) step = rough;
    set.step = step;
    const double first = std::ceil(min / step - 1e-9);
    const double last = std::floor(max / step + 1e-9);
    for (double k = first; k <= last && set.values.size() < 64; k += 1.0) {
        double v = k * step;
        if (std::fabs(v) < step * 1e-3) v = 0.0;
        v = std::clamp(v, min, max);
        if (!set.values.empty() && v <= set.values.back()) continue;
        set.values.push_back(v);
    }
    return set;
}

TickSet Ticks::logarithmic(double min, double max, int target) {
    if (min > max) std::swap(min, max);
    if (!(min > 0.0) || !std::isfinite(max)) return linear(min, max, target);
    const int lo = static_cast<int>(std::ceil(std::log10(min) - 1e-9));
    const int hi = static_cast<int>(std::floor(std::log10(max) + 1e-9));
    if (hi - lo < 1) return linear(min, max, target);
    const int every = std::max(1, (hi - lo + target - 1) / target);
    TickSet set;
    for (int e = lo; e <= hi; e += every) set.values.push_back(std::pow(10.0, e));
    return set;
}

std::string Ticks::label(const std::string& format, double value) {
    char buf[128];
    const int n = std::snprintf(buf, sizeof buf, format.c_str(), value);
    if (n < 0) return {};
    return std::string(buf, static_cast<size_t>(std::min<int>(n, sizeof buf - 1)));
}

const char* Ticks::factorFormat(double step, double largestBound) {
    if (std::fabs(largestBound) >= 1e4 || step < 0.01) return "%.1e";
    if (step < 1.0) return "%.2f";
    return "%.1f";
}

}  // namespace tarvex
