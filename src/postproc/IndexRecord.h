#pragma once
// One factor (or group, or term) of a sensitivity result: its name, its kind,
// and its values, variable after variable, each variable holding the slots
// its statistics class defines.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tarvex {

class FactorList;

enum FactorKind : int32_t {
    kConstantFactor = 0,    // distribution "Constant": never computed
    kRelationFactor = 1,    // distribution "Relation": never computed
    kCorrelatedFactor = 2,  // uncertain, removed by the collinearity check
    kUncertainFactor = 3,   // the only kind whose values are computed
};

// The kind a factor starts with, from its distribution name: uncertain unless
// the name is one of the two literals. Decided by the names alone, so that a
// factor read from any file gets the same kind as when it was made.
FactorKind factorKindOf(const std::string& distributionName);

struct IndexRecord {
    std::string name;
    int32_t kind = kUncertainFactor;
    std::vector<double> values;
    // Only Sobol terms name the factors they are made of.
    std::vector<std::string> groupNames;

    int32_t groupCount() const { return static_cast<int32_t>(groupNames.size()); }
    bool operator==(const IndexRecord&) const = default;
};

// One record per factor of the list, in list order: its name, the kind its
// distribution name gives, and `valueCount` values of 0.0.
std::vector<IndexRecord> factorRecords(const FactorList& factors, std::size_t valueCount);

}  // namespace tarvex
