#pragma once
#include "factors/NormalTails.h"
#include "factors/TruncatedDistribution.h"

namespace tarvex {

// Normal law of mean `mean` and standard deviation `stdDeviation`.
class Normal : public TruncatedDistribution {
public:
    Normal();
    Normal(const Normal& other);

    int getType() const override { return kNormal; }
    std::unique_ptr<Factor> clone() const override { return std::make_unique<Normal>(*this); }

    double mean() const override { return meanValue; }
    double stdDev() const override { return stdDeviation; }
    double cumulative(double x) const override;
    double density(double x) const override;
    void inverseMany(double* values, int64_t count) const override;

    double getMean() const { return meanValue; }
    double getStdDeviation() const { return stdDeviation; }
    [[nodiscard]] int setMean(double v);
    [[nodiscard]] int setStdDeviation(double v);
    // Tests its arguments, in order: left <= right, right < 1, left > 0.
    [[nodiscard]] int setTruncations(double left, double right);

protected:
    // The cumulative, inline so that the searches of inverseMany can have it
    // in their loop; -1 for a standard deviation that is not positive.
    double normalCumulative(double x) const {
        if (!(stdDeviation > 0.0)) return -1.0;
        double lower = 0.0, upper = 0.0;
        normalTails((x - meanValue) / stdDeviation, lower, upper);
        return lower;
    }

    void writeData(std::ostream& out) const override;
    [[nodiscard]] int readData(std::istream& in) override;
    double meanValue = 0.0;
    double stdDeviation = 1.0;
};

} // namespace tarvex
