#include "cli/SamplerSettings.h"

#include <algorithm>
#include <fstream>
#include <limits>
#include <sstream>

#include "cli/FixedRowsFile.h"
#include "correlation/FactorList.h"
#include "factors/Factor.h"
#include "sampling/FastSampler.h"
#include "sampling/FixedSampler.h"
#include "sampling/MorrisSampler.h"
#include "sampling/RepLatinSampler.h"
#include "sampling/Sampler.h"
#include "sampling/SobolSampler.h"

namespace tarvex::cli {

namespace {

constexpr int64_t kInt32Max = std::numeric_limits<int32_t>::max();

// Which settings a method takes; a setting given to another method is a
// contradiction rather than something to ignore silently.
enum Setting : unsigned {
    kSize = 1u << 0,
    kSeed = 1u << 1,
    kTrajectories = 1u << 2,
    kLevels = 1u << 3,
    kBase = 1u << 4,
    kReplications = 1u << 5,
    kOrder = 1u << 6,
    kCheap = 1u << 7,
    kFastMode = 1u << 8,
    kGroup = 1u << 9,
    kRows = 1u << 10,
    kStartingRow = 1u << 11,
};

unsigned settingsOf(int32_t method) {
    switch (method) {
    case kRandomMethod:
    case kLatinMethod: return kSize | kSeed;
    case kLpTauMethod: return kSize;
    case kMorrisMethod: return kTrajectories | kLevels | kSeed;
    case kFastMethod: return kSize | kSeed | kFastMode | kGroup;
    case kRepLatinMethod: return kBase | kReplications | kSeed;
    case kSobolMethod: return kBase | kOrder | kCheap;
    case kFixedMethod: return kRows | kStartingRow;
    default: return 0;
    }
}

struct Given {
    Setting setting;
    const char* option;
    bool given;
};

std::vector<Given> givenSettings(const SamplerSettings& s) {
    return {{kSize, "--size", s.size.has_value()},
            {kSeed, "--seed", s.seed.has_value()},
            {kTrajectories, "--trajectories", s.trajectories.has_value()},
            {kLevels, "--levels", s.levels.has_value()},
            {kBase, "--base", s.base.has_value()},
            {kReplications, "--replications", s.replications.has_value()},
            {kOrder, "--order", s.order.has_value()},
            {kCheap, "--cheap", s.cheap},
            {kFastMode, "--fast-mode", s.fastMode.has_value()},
            {kGroup, "--group", !s.groups.empty()},
            {kRows, "--rows", !s.rowsFile.empty()},
            {kStartingRow, "--starting-row", s.startingRow}};
}

std::string required(const char* option, int32_t method) {
    return std::string(option) + " is required by the " + Sampler::nameOf(method) + " method";
}

// A count or seed inside 1 .. 2^31 - 1.
bool positive32(const std::optional<int64_t>& v) { return v && *v >= 1 && *v <= kInt32Max; }

CommandOutcome seedAndSize(Sampler& sampler, const SamplerSettings& s, const char* panelText) {
    if (!s.size) return CommandOutcome::usage(required("--size", s.method));
    if (!positive32(s.size) || (s.seed && !positive32(s.seed))) return CommandOutcome::usage(panelText);
    if (!sampler.setSamples(int32_t(*s.size))) return CommandOutcome::usage(sampler.errorText());
    if (s.seed && !sampler.setSeed(int32_t(*s.seed))) return CommandOutcome::usage(sampler.errorText());
    return CommandOutcome::success();
}

CommandOutcome setSeedIfGiven(Sampler& sampler, const SamplerSettings& s) {
    if (!s.seed) return CommandOutcome::success();
    if (!positive32(s.seed) || !sampler.setSeed(int32_t(*s.seed))) return CommandOutcome::usage(kBadSeedText);
    return CommandOutcome::success();
}

CommandOutcome morris(MorrisSampler& sampler, const SamplerSettings& s, const FactorList& factors) {
    if (!s.trajectories) return CommandOutcome::usage(required("--trajectories", s.method));
    if (!s.levels) return CommandOutcome::usage(required("--levels", s.method));
    if (*s.trajectories < 1 || *s.trajectories > kInt32Max) return CommandOutcome::usage(kBadTrajectoriesText);
    if (*s.levels < 1 || *s.levels > kInt32Max) return CommandOutcome::usage(kBadLevelsText);
    if (*s.levels < 2) return CommandOutcome::usage(kTooFewLevelsText);
    const int64_t runs = *s.trajectories * (int64_t(factors.correlatableCount()) + 1);
    if (runs > kInt32Max) return CommandOutcome::usage(kNegativeSamplesText);
    if (!sampler.setTrajectories(uint32_t(*s.trajectories)) || !sampler.setLevels(uint32_t(*s.levels)) ||
        !sampler.setSamples(int32_t(runs)))
        return CommandOutcome::usage(sampler.errorText());
    return setSeedIfGiven(sampler, s);
}

// "NAME=a,b,c": a group of stochastic factors that no other group holds.
CommandOutcome fastGroups(FastSampler& sampler, const SamplerSettings& s, const FactorList& factors) {
    for (const std::string& group : s.groups) {
        const std::size_t eq = group.find('=');
        if (eq == std::string::npos) return CommandOutcome::usage("--group takes NAME=FACTOR,FACTOR,...: " + group);
        const std::string name = group.substr(0, eq);
        const auto& known = sampler.groupNames();
        if (name.empty() || std::find(known.begin(), known.end(), name) != known.end() || !sampler.addGroup(name))
            return CommandOutcome::usage(kInvalidNameText);
        std::stringstream members(group.substr(eq + 1));
        std::string member;
        while (std::getline(members, member, ',')) {
            if (member.empty()) continue;
            const int f = factors.findFactor(member);
            if (f < 0 || factors.isCorrelatable(f) != 1)
                return CommandOutcome::usage("Group " + name + ": " + member + " is not a stochastic factor of the list");
            if (sampler.isInGroup(member)) return CommandOutcome::usage("Group " + name + ": " + member + " is in another group");
            if (!sampler.addElement(name, member)) return CommandOutcome::usage(kInvalidNameText);
        }
    }
    return CommandOutcome::success();
}

CommandOutcome fast(FastSampler& sampler, const SamplerSettings& s, const FactorList& factors) {
    if (!s.size) return CommandOutcome::usage(required("--size", s.method));
    if (!positive32(s.size)) return CommandOutcome::usage(kFastExecutionsText);
    const int32_t mode = s.fastMode.value_or(0);
    if (!s.groups.empty() && mode != 2) return CommandOutcome::usage("--group needs --fast-mode groups");
    if (!sampler.setAnalysisMode(mode) || !sampler.setSamples(int32_t(*s.size)))
        return CommandOutcome::usage(sampler.errorText());
    if (CommandOutcome o = setSeedIfGiven(sampler, s); o.status != kExitSuccess) return o;
    if (CommandOutcome o = fastGroups(sampler, s, factors); o.status != kExitSuccess) return o;
    // The extended tests compare units (factors, or groups and the factors in
    // none); with fewer than two the engine stops without a text of its own.
    const int32_t k = factors.correlatableCount();
    const int32_t units = mode == 2 ? k - int32_t(sampler.elementNames().size()) + int32_t(sampler.groupNames().size()) : k;
    if (mode != 0 && units < 2) return CommandOutcome::usage(kFastUnitsText);
    if (!sampler.checkSampleSize(k)) return CommandOutcome::usage(sampler.errorText());
    return CommandOutcome::success();
}

CommandOutcome replicated(RepLatinSampler& sampler, const SamplerSettings& s, const FactorList& factors) {
    if (!s.base) return CommandOutcome::usage(required("--base", s.method));
    if (!s.replications) return CommandOutcome::usage(required("--replications", s.method));
    if (!positive32(s.base) || !positive32(s.replications) || (s.seed && !positive32(s.seed)) ||
        *s.base * *s.replications > kInt32Max)
        return CommandOutcome::usage(kLatinSettingsText);
    sampler.synchroniseElements(factors);
    if (!sampler.setBaseDesign(int32_t(*s.base))) return CommandOutcome::usage(kLatinSettingsText);
    sampler.setReplications(int32_t(*s.replications));
    if (!sampler.setSamples(int32_t(*s.base * *s.replications))) return CommandOutcome::usage(sampler.errorText());
    return setSeedIfGiven(sampler, s);
}

CommandOutcome sobol(SobolSampler& sampler, const SamplerSettings& s, const FactorList& factors) {
    if (!s.base) return CommandOutcome::usage(required("--base", s.method));
    if (*s.base < 1 || *s.base > kInt32Max || !sampler.setBaseSize(int32_t(*s.base)))
        return CommandOutcome::usage(kSobolBadBaseSizeText);
    if (s.cheap && !s.order) return CommandOutcome::usage("--cheap needs --order");
    const int32_t k = factors.correlatableCount();
    if (s.order && (*s.order < 1 || *s.order > k)) return CommandOutcome::usage(kSobolOrderTooBigText);
    const int32_t kind = s.order ? 3 : 1;
    const int32_t order = s.order ? int32_t(*s.order) : 0;
    sampler.setDesignKind(kind);
    if (s.order) sampler.setOrder(order);
    const int64_t blocks = SobolSampler::blockCount(k, kind, order, s.cheap);
    if (blocks > kInt32Max / *s.base) return CommandOutcome::usage(kSobolTooManyRunsText);
    if (!sampler.setSamples(int32_t(blocks * *s.base))) return CommandOutcome::usage(sampler.errorText());
    return CommandOutcome::success();
}

CommandOutcome fixed(FixedSampler& sampler, const SamplerSettings& s, FactorList& factors) {
    if (s.rowsFile.empty() && !s.startingRow) return CommandOutcome::usage(required("--rows or --starting-row", s.method));
    const int32_t width = factors.factorCount();
    if (!sampler.setNumFactors(width)) return CommandOutcome::failure(sampler.errorText());
    if (s.startingRow) {
        std::vector<double> row;
        std::string error;
        if (!FixedSampler::startingRow(factors, row, error)) return CommandOutcome::failure(error);
        if (!sampler.addRow(row.data())) return CommandOutcome::failure(sampler.errorText());
    }
    if (!s.rowsFile.empty()) {
        std::vector<std::vector<double>> rows;
        std::string error;
        if (!readFixedRows(s.rowsFile, width, rows, error)) return CommandOutcome::failure(error);
        for (const auto& row : rows)
            if (!sampler.addRow(row.data())) return CommandOutcome::failure(sampler.errorText());
    }
    if (!sampler.setSamples(sampler.values().rowCount())) return CommandOutcome::failure(sampler.errorText());
    return CommandOutcome::success();
}

}  // namespace

const std::vector<MethodName>& methodOptionNames() {
    static const std::vector<MethodName> names = {
        {"fast", kFastMethod},     {"fixed", kFixedMethod},   {"latin", kLatinMethod},
        {"lptau", kLpTauMethod},   {"morris", kMorrisMethod}, {"random", kRandomMethod},
        {"replicated-latin", kRepLatinMethod}, {"sobol", kSobolMethod},
    };
    return names;
}

std::optional<int32_t> fastModeOf(const std::string& name) {
    if (name == "classic") return 0;
    if (name == "total") return 1;
    if (name == "groups") return 2;
    return std::nullopt;
}

CommandOutcome makeSampler(const SamplerSettings& settings, FactorList& factors, std::unique_ptr<Sampler>& sampler) {
    sampler = Sampler::create(settings.method);
    if (!sampler) return CommandOutcome::usage("Unknown sampling method");
    const unsigned allowed = settingsOf(settings.method);
    for (const Given& g : givenSettings(settings)) {
        if (g.given && !(allowed & g.setting))
            return CommandOutcome::usage(std::string(g.option) + " does not apply to the " + sampler->methodName() +
                                         " method");
    }
    CommandOutcome outcome;
    switch (settings.method) {
    case kRandomMethod: outcome = seedAndSize(*sampler, settings, kRandomSettingsText); break;
    case kLatinMethod: outcome = seedAndSize(*sampler, settings, kLatinSettingsText); break;
    case kLpTauMethod:
        if (!settings.size) outcome = CommandOutcome::usage(required("--size", settings.method));
        else if (!positive32(settings.size) || !sampler->setSamples(int32_t(*settings.size)))
            outcome = CommandOutcome::usage(kNegativeSamplesText);
        break;
    case kMorrisMethod: outcome = morris(static_cast<MorrisSampler&>(*sampler), settings, factors); break;
    case kFastMethod: outcome = fast(static_cast<FastSampler&>(*sampler), settings, factors); break;
    case kRepLatinMethod: outcome = replicated(static_cast<RepLatinSampler&>(*sampler), settings, factors); break;
    case kSobolMethod: outcome = sobol(static_cast<SobolSampler&>(*sampler), settings, factors); break;
    case kFixedMethod: outcome = fixed(static_cast<FixedSampler&>(*sampler), settings, factors); break;
    default: break;
    }
    if (outcome.status != kExitSuccess) sampler.reset();
    return outcome;
}

}  // namespace tarvex::cli
