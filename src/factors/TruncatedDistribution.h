#pragma once
// A distribution sampled only between two cumulative probabilities. The
// truncation maps u into [leftTruncation, rightTruncation] before the table
// lookup; density, cumulative and the moments stay those of the untruncated law.
#include "factors/Distribution.h"

namespace tarvex {

class TruncatedDistribution : public Distribution {
public:
    // Takes both class-wide defaults; the classes with a natural lower end
    // (Exponential, Gamma, Weibull) then force the left one to 0.
    TruncatedDistribution();
    TruncatedDistribution(const TruncatedDistribution& other);

    // Both setters test the truncations already stored, not the new value: a
    // left truncation of 0 (the classes with a lower end) can never be changed
    // this way. Kept so, files and panels rely on it.
    [[nodiscard]] virtual int setLeftTruncation(double v);
    [[nodiscard]] virtual int setRightTruncation(double v);

    double getLeftTruncation() const { return leftTruncation; }
    double getRightTruncation() const { return rightTruncation; }

    // Class-wide defaults taken by every new truncated factor. The single
    // setters again test the stored defaults; setDefaultTruncations tests its
    // arguments (0 < left < right < 1).
    [[nodiscard]] static int setDefaultLeftTruncation(double v);
    [[nodiscard]] static int setDefaultRightTruncation(double v);
    [[nodiscard]] static int setDefaultTruncations(double left, double right);
    static double defaultLeftTruncation();
    static double defaultRightTruncation();

protected:
    // u is mapped into [leftTruncation, rightTruncation] first; the search is
    // looser than the untruncated one and has no pass limit: it ends when the
    // bracket can no longer be split.
    InverseRule inverseRule() const override;

    double leftTruncation;
    double rightTruncation;
};

} // namespace tarvex
