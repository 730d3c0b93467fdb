#pragma once
// One run of an external model: the executable is started with the sample
// file's path as its only argument, in the installation directory, and then
// polled until it ends, is stopped by the user, or can no longer be observed.
// The waiting between polls belongs to the caller, who serves the user
// meanwhile: nothing here sleeps.
#include <string>
#include <sys/types.h>

namespace tarvex {

class ModelProcess {
public:
    enum class State { NotStarted, Running, Exited, Lost };

    ModelProcess() = default;
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

    // Looks at the process without blocking: Running, Exited (exitCode() is
    // valid) or Lost.
    State poll();

    // Kills a running process and records the exit code 1, as a stopped model has.
    void stop();

    State state() const { return state_; }
    int exitCode() const { return exitCode_; }
    pid_t pid() const { return pid_; }
    const std::string& errorText() const { return errorText_; }

private:
    void reap(int status);

    pid_t pid_ = -1;
    State state_ = State::NotStarted;
    int exitCode_ = 0;
    std::string errorText_ = "No errors";
};

}  // namespace tarvex
