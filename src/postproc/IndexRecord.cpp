#include "postproc/IndexRecord.h"

#include "correlation/FactorList.h"
#include "factors/Factor.h"

namespace tarvex {

FactorKind factorKindOf(const std::string& distributionName) {
    FactorKind kind = kUncertainFactor;
    if (distributionName == "Constant") kind = kConstantFactor;
    if (distributionName == "Relation") kind = kRelationFactor;
    return kind;
}

std::vector<IndexRecord> factorRecords(const FactorList& factors, std::size_t valueCount) {
    std::vector<IndexRecord> records(static_cast<std::size_t>(factors.factorCount()));
    for (int f = 0; f < factors.factorCount(); ++f) {
        IndexRecord& record = records[static_cast<std::size_t>(f)];
        const Factor* factor = factors.getFactor(f);
        record.name = factor->name();
        record.kind = factorKindOf(factor->typeName());
        record.values.assign(valueCount, 0.0);
    }
    return records;
}

}  // namespace tarvex
