#pragma once
// The settings of a sampling method as the batch tool takes them, and the
// sampler they make. Each method has the settings its panel offers:
//
//   random            --size, --seed
//   latin             --size, --seed
//   lptau             --size
//   morris            --trajectories, --levels, --seed (size r (k + 1))
//   fast              --size, --seed, --fast-mode, --group
//   replicated-latin  --base, --replications, --seed (size m r)
//   sobol             --base, --order, --cheap (size: base times the blocks)
//   fixed             --rows FILE and/or --starting-row
//
// A setting that does not belong to the chosen method, a missing one, or
// one out of range is refused before anything is generated, with the text
// the engine (or the method's panel) gives for it.
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/CommandOutcome.h"

namespace tarvex {
class FactorList;
class Sampler;
}

namespace tarvex::cli {

// The panels' texts for counts and seeds they refuse.
inline constexpr const char* kRandomSettingsText = "  Seed and Number of executions must be positive values";
inline constexpr const char* kLatinSettingsText = "Incorrect value for Seed or Number of executions";
inline constexpr const char* kFastExecutionsText = "  Number of executions must be a positive value";
inline constexpr const char* kInvalidNameText = "  Invalid name field.";
inline constexpr const char* kFastUnitsText =
    "The first and total order FAST compares at least two factors or groups";

struct MethodName {
    const char* option;  // what --method takes
    int32_t methodId;
};
// Every method by its option name, in method number order.
const std::vector<MethodName>& methodOptionNames();

struct SamplerSettings {
    int32_t method = -1;
    // Numbers are taken wide so that a value past 32 bits is refused with
    // the method's text, not wrapped.
    std::optional<int64_t> size, seed, trajectories, levels, base, replications, order;
    bool cheap = false;
    std::optional<int32_t> fastMode;   // 0 classic, 1 first and total, 2 groups
    std::vector<std::string> groups;   // "NAME=factor,factor,..."
    std::string rowsFile;              // fixed samples: one run per line
    bool startingRow = false;          // fixed samples: the panel's starting row as a run
};

// FAST analysis modes by name: "classic", "total", "groups".
std::optional<int32_t> fastModeOf(const std::string& name);

// A sampler for `factors` with these settings, ready for generation. A
// refusal is a usage outcome with its text; a rows file that cannot be
// read, or a starting row that cannot be made, is a failure.
CommandOutcome makeSampler(const SamplerSettings& settings, FactorList& factors, std::unique_ptr<Sampler>& sampler);

}  // namespace tarvex::cli
