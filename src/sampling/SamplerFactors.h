#pragma once
// What the samplers ask of a factor list, in their own terms.
#include <cstdint>

#include "correlation/FactorList.h"
#include "factors/Constant.h"

namespace tarvex {

// A factor with a distribution: everything but constants and relations (the
// list's isCorrelatable by type code, without comparing type names per cell).
inline bool isStochastic(const FactorList& list, int f) {
    const Factor* factor = list.getFactor(f);
    if (factor == nullptr) return false;
    const int type = factor->getType();
    return type != kConstant && type != kRelation;
}

inline bool isConstantFactor(const FactorList& list, int f) {
    const Factor* factor = list.getFactor(f);
    return factor != nullptr && factor->getType() == kConstant;
}

inline double constantValue(const FactorList& list, int f) {
    return static_cast<const Constant*>(list.getFactor(f))->value;
}

// The parent in the dependence tree, -1 for a root. Tree links count only
// in the dependence-tree mode: under any other mode every stochastic factor
// is sampled as a root.
inline int parentOf(const FactorList& list, int f) {
    if (list.correlationMode != kTreeCorrelation) return -1;
    if (f < 0 || f >= list.tree().size()) return -1;
    return list.tree().node(f).parent;
}

inline double linkCorrelation(const FactorList& list, int f) { return list.tree().node(f).correlation; }

// Stochastic factors among factors 0..f, minus one: the column of factor f in
// a rank table.
inline int32_t stochasticRank(const FactorList& list, int f) {
    int32_t k = -1;
    for (int i = 0; i <= f; ++i) k += isStochastic(list, i) ? 1 : 0;
    return k;
}

}  // namespace tarvex
