#pragma once
#include <cmath>

#include "factors/Uniform.h"

namespace tarvex {

// Piecewise log-uniform law: inside each interval ln X is uniform.
class LogUniform : public Uniform {
public:
    LogUniform();
    LogUniform(const LogUniform& other);

    int getType() const override { return kLogUniform; }
    std::unique_ptr<Factor> clone() const override { return std::make_unique<LogUniform>(*this); }

    double mean() const override;
    double stdDev() const override;
    void inverseMany(double* values, int64_t count) const override;

protected:
    std::unique_ptr<Interval> newInterval() const override;
    double partialWeight(const Interval& iv, double x) const override;
    double intervalDensity(const Interval& iv, double x) const override;
    template <class Bounds>
    static double logShare(const Bounds& iv, double x) {
        return (std::log(x) - std::log(iv.left)) * iv.weight / (std::log(iv.right) - std::log(iv.left));
    }
};

} // namespace tarvex
