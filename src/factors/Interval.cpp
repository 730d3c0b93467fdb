#include "factors/Interval.h"

namespace tarvex {

int Interval::setBounds(double l, double r) {
    if (!(l < r)) {
        errorText = "left bound >= of right bound";
        return 0;
    }
    left = l;
    right = r;
    return 1;
}

int LogInterval::setBounds(double l, double r) {
    if (!(l > 0.0)) {
        errorText = "left bound < 0";
        return 0;
    }
    return Interval::setBounds(l, r);
}

} // namespace tarvex
