#pragma once
// Making a factor from its type name, as the factor file names it.
#include <memory>
#include <string>

#include "factors/Factor.h"

namespace tarvex {

// A default factor of the kind a factor file may hold, or null: the names are
// tried in the order "Constant", "Normal", "Exponential", "Gamma", "Beta",
// "Relation", "Weibull", "LogNormal", "LogUniform", "Triangular", "Uniform",
// "Discrete". "Dummy" is not among them: a column without a distribution
// cannot come back from a file.
std::unique_ptr<Factor> newReadableFactor(const std::string& typeName);

// 1 for the kinds that carry a distribution and so take part in correlations
// (everything but "Constant" and "Relation"), else 0.
int isCorrelatableType(const std::string& typeName);

} // namespace tarvex
