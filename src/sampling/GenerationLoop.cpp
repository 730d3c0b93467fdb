#include "sampling/GenerationLoop.h"

#include "sampling/PrepConfiguration.h"

namespace tarvex {

int runGeneration(PrepConfiguration& config, const std::function<bool(int percent)>& step) {
    config.prepareGeneration();
    int target = 1;
    int percent = config.generate(target);
    while (percent < 100) {
        if (percent < 0) {
            config.cancelGeneration();
            return kGenerationFailed;
        }
        if (step && !step(percent)) {
            config.cancelGeneration();
            return kGenerationStopped;
        }
        ++target;
        percent = config.generate(target);
    }
    return kGenerationDone;
}

}  // namespace tarvex
