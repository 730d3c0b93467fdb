#pragma once
// The one loop that drives a generation, shared by the desktop program, the
// batch tool and the tests. Targets rise by one from 1: a Latin hypercube with
// a dependence tree draws its children through a band sampler made afresh at
// each call, so the same project and seed give the same sample only when
// every front end splits the generation the same way.
#include <functional>
#include <string>

namespace tarvex {

class PrepConfiguration;

enum GenerationResult : int { kGenerationFailed = -1, kGenerationStopped = 0, kGenerationDone = 1 };

struct GenerationOutcome {
    int result = kGenerationFailed;
    // The configuration's warningText: a correlation that could not be
    // imposed on a sample made without it. To be shown even when the result
    // is kGenerationDone.
    std::string warningText;
};

// prepareGeneration, then generate(1), generate(2), ... until 100. After each
// percent below 100, `step(percent)` is called (show it, serve events); a
// false answer stops the run. A stopped or failed run is cancelled: empty
// store, no statistics; on failure the sampler's errorText says why.
[[nodiscard]] GenerationOutcome runGeneration(PrepConfiguration& config, const std::function<bool(int percent)>& step);

}  // namespace tarvex
