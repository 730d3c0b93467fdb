#pragma once
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

protected:
    std::unique_ptr<Interval> newInterval() const override;
    double partialWeight(const Interval& iv, double x) const override;
    double intervalDensity(const Interval& iv, double x) const override;
};

} // namespace tarvex
