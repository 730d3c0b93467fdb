#pragma once
#include <cmath>

#include "factors/Normal.h"

namespace tarvex {

// X whose logarithm is normal: the two stored fields are the mean and the
// standard deviation of ln X.
class LogNormal : public Normal {
public:
    LogNormal();
    LogNormal(const LogNormal& other);

    int getType() const override { return kLogNormal; }
    std::unique_ptr<Factor> clone() const override { return std::make_unique<LogNormal>(*this); }

    double mean() const override;
    double stdDev() const override;
    double cumulative(double x) const override;
    double density(double x) const override;
    void inverseMany(double* values, int64_t count) const override;

private:
    double logNormalCumulative(double x) const { return x < 0.0 ? 0.0 : normalCumulative(std::log(x)); }
};

} // namespace tarvex
