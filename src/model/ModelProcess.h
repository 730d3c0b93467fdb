#pragma once
// One run of an external model: the executable is started with the sample
// file's path as its only argument, in the installation directory, and then
// polled until it ends, is stopped by the user, or can no longer be observed.
#include <chrono>
#include <functional>
#include <string>
#include <sys/types.h>

namespace tarvex {

class ModelProcess {
public:
    enum class State { NotStarted, Running, Exited, Lost };

    // The outcome of waiting for the process with runUntilDone().
    enum class Outcome { Finished, Stopped, Lost };

    explicit ModelProcess(std::chrono::milliseconds pollInterval = std::chrono::milliseconds(500));
    ~ModelProcess();
    ModelProcess(const ModelProcess&) = delete;
    ModelProcess& operator=(const ModelProcess&) = delete;

    // The command line shown to the user: both paths in double quotes.
    static std::string commandLine(const std::string& executable, const std::string& sampleFile);

    // Starts {executable, sampleFile} with `workingDirectory` as its current
    // directory. Returns 1, or 0 with errorText set to the load-failure message
    // carrying errno and the command line.
    [[nodiscard]] int start(const std::string& executable, const std::string& sampleFile,
              const std::string& workingDirectory);

    // Looks at the process without blocking.
    State poll();

    // Kills a running process and records the exit code 1, as a stopped model has.
    void stop();

    // Waits in slices of the poll interval while the process runs. After each
    // slice `step` is called (animation, event draining); when it returns false
    // the process is stopped. The exit code is in exitCode() after Finished.
    [[nodiscard]] Outcome runUntilDone(const std::function<bool()>& step);

    State state() const { return state_; }
    int exitCode() const { return exitCode_; }
    pid_t pid() const { return pid_; }
    const std::string& errorText() const { return errorText_; }

private:
    void reap(int status);

    std::chrono::milliseconds pollInterval_;
    pid_t pid_ = -1;
    State state_ = State::NotStarted;
    int exitCode_ = 0;
    std::string errorText_ = "No errors";
};

}  // namespace tarvex
