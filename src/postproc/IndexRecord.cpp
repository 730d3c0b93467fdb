#include "postproc/IndexRecord.h"

namespace tarvex {

FactorKind factorKindOf(const std::string& distributionName) {
    FactorKind kind = kUncertainFactor;
    if (distributionName == "Constant") kind = kConstantFactor;
    if (distributionName == "Relation") kind = kRelationFactor;
    return kind;
}

}  // namespace tarvex
