#include "sampling/GenerationLoop.h"

#include "sampling/PrepConfiguration.h"

namespace tarvex {

GenerationOutcome runGeneration(PrepConfiguration& config, const std::function<bool(int percent)>& step) {
    config.prepareGeneration();
    int target = 1;
    int percent = config.generate(target);
    GenerationOutcome outcome;
    while (percent < 100) {
        if (percent < 0) {
            config.cancelGeneration();
            outcome.result = kGenerationFailed;
            outcome.warningText = config.warningText();
            return outcome;
        }
        if (step && !step(percent)) {
            config.cancelGeneration();
            outcome.result = kGenerationStopped;
            outcome.warningText = config.warningText();
            return outcome;
        }
        ++target;
        percent = config.generate(target);
    }
    outcome.result = kGenerationDone;
    outcome.warningText = config.warningText();
    return outcome;
}

}  // namespace tarvex
