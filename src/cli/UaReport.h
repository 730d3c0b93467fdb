#pragma once
// The uncertainty statistics of every analysed variable, as a table for
// people (the panel's number format) and as JSON (full precision; a value
// that does not exist is null).
#include <iosfwd>

#include <nlohmann/json.hpp>

namespace tarvex {
class UaStats;
}

namespace tarvex::cli {

// Header "Uncertainty analysis: N runs, confidence C", then one row per
// variable: mean, variance, std, skewness, kurtosis, minimum, maximum and
// the two bounds on the mean.
void writeUaText(std::ostream& out, const UaStats& stats);
nlohmann::json uaJson(const UaStats& stats);

}  // namespace tarvex::cli
