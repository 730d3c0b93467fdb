#include "factors/IntervalSequence.h"

#include <cstdint>
#include <istream>
#include <ostream>

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

void IntervalSequence::write(std::ostream& out) const {
    out << '\t' << count() << '\n';
    for (const auto& iv : items) out << iv->left << '\t' << iv->right << '\t' << iv->weight << '\n';
}

int IntervalSequence::read(std::istream& in, const std::function<std::unique_ptr<Interval>()>& make) {
    clear();
    int32_t n = 0;
    if (!(in >> n)) return 0;
    if (n < 1) {
        in.setstate(std::ios::failbit);
        return 0;
    }
    for (int32_t k = 0; k < n; ++k) {
        std::unique_ptr<Interval> iv = make();
        if (!(in >> iv->left >> iv->right >> iv->weight)) return 0;
        append(std::move(iv));
    }
    return 1;
}

} // namespace tarvex
