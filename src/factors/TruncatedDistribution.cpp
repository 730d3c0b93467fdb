#include "factors/TruncatedDistribution.h"

#include <cmath>

namespace tarvex {

namespace {

double gDefaultLeft = 0.001;
double gDefaultRight = 0.999;

} // namespace

TruncatedDistribution::TruncatedDistribution()
    : leftTruncation(gDefaultLeft), rightTruncation(gDefaultRight) {}

TruncatedDistribution::TruncatedDistribution(const TruncatedDistribution& other)
    : Distribution(other), leftTruncation(other.leftTruncation), rightTruncation(other.rightTruncation) {}

InverseRule TruncatedDistribution::inverseRule() const {
    InverseRule rule;
    rule.scale = rightTruncation - leftTruncation;
    rule.offset = leftTruncation;
    rule.relTol = 1e-6;
    rule.maxPasses = -1;
    rule.lowerShortcut = false;
    return rule;
}

int TruncatedDistribution::setLeftTruncation(double v) {
    if (leftTruncation > 0.0 && leftTruncation <= rightTruncation) {
        leftTruncation = v;
        return 1;
    }
    errorText_ = "Left truncation cannot be less than 0.001 or greater than right truncation";
    return 0;
}

int TruncatedDistribution::setRightTruncation(double v) {
    if (rightTruncation >= leftTruncation && rightTruncation < 1.0) {
        rightTruncation = v;
        return 1;
    }
    errorText_ = "Right truncation cannot be less than left truncation or greater than 0.999";
    return 0;
}

int TruncatedDistribution::setDefaultLeftTruncation(double v) {
    if (!(gDefaultLeft > 0.0 && gDefaultLeft <= gDefaultRight)) return 0;
    gDefaultLeft = v;
    return 1;
}

int TruncatedDistribution::setDefaultRightTruncation(double v) {
    if (!(gDefaultRight >= gDefaultLeft && gDefaultRight < 1.0)) return 0;
    gDefaultRight = v;
    return 1;
}

int TruncatedDistribution::setDefaultTruncations(double left, double right) {
    if (!(left > 0.0 && right < 1.0 && left < right)) return 0;
    gDefaultLeft = left;
    gDefaultRight = right;
    return 1;
}

double TruncatedDistribution::defaultLeftTruncation() {
    return gDefaultLeft;
}

double TruncatedDistribution::defaultRightTruncation() {
    return gDefaultRight;
}

} // namespace tarvex
