#include "factors/Interval.h"

namespace tarvex {

int Interval::setBounds(double l, double r) {
    if (!(l < r)) {
        errorText_ = "left bound >= of right bound";
        return 0;
    }
    left = l;
    right = r;
    return 1;
}

int Interval::setWeight(double w) {
    if (!(w > 0.0 && w <= 1.0)) {
        errorText_ = "Weight value error";
        return 0;
    }
    weight = w;
    return 1;
}

int LogInterval::setBounds(double l, double r) {
    if (!(l > 0.0)) {
        errorText_ = "left bound < 0";
        return 0;
    }
    return Interval::setBounds(l, r);
}

} // namespace tarvex
