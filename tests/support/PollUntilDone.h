#pragma once
// Waits for a started model as a front end does between its polls, with a
// short pause instead of the user's half second.
#include <chrono>
#include <functional>
#include <thread>

#include "model/ModelProcess.h"

namespace tarvex::test {

enum class Ended { Finished, Stopped, Lost };

// After each pause `step` is called; when it returns false the model is stopped.
inline Ended pollUntilDone(ModelProcess& process, const std::function<bool()>& step = {}) {
    while (process.poll() == ModelProcess::State::Running) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        if (step && !step()) {
            process.stop();
            return Ended::Stopped;
        }
    }
    return process.state() == ModelProcess::State::Exited ? Ended::Finished : Ended::Lost;
}

}  // namespace tarvex::test
