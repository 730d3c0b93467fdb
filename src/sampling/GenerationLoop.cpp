#include "sampling/GenerationLoop.h"

#include "sampling/PrepConfiguration.h"

namespace tarvex {

GenerationOutcome runGeneration(PrepConfiguration& config, const std::function<bool(int percent)>& step) {
    config.prepareGeneration();
    int target = 1;
    int percent = config.generate(target);
    GenerationOutcome outcome{kGenerationDone, {}};
    while (percent < 100) {
        if (percent < 0 || (step && !step(percent))) {
            outcome.result = percent < 0 ? kGenerationFailed : kGenerationStopped;
            config.cancelGeneration();
            break;
        }
        ++target;
        percent = config.generate(target);
    }
    outcome.warningText = config.warningText();
    return outcome;
}

}  // namespace tarvex
