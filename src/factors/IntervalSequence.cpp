#include "factors/IntervalSequence.h"

#include <cmath>

namespace tarvex {

Interval* IntervalSequence::intervalAt(int i) const {
    if (i < 0 || i >= count()) return nullptr;
    return items[static_cast<std::size_t>(i)].get();
}

void IntervalSequence::removeAt(int i) {
    if (i < 0 || i >= count()) return;
    items.erase(items.begin() + i);
}

int IntervalSequence::checkWeights(std::string& text) const {
    double sum = 0.0;
    for (const auto& item : items) sum += item->weight;
    if (!(std::fabs(sum - 1.0) < 1e-13)) {
        text = "Sum of weights not equal to 1";
        return 0;
    }
    return 1;
}

} // namespace tarvex
