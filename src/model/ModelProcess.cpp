#include "model/ModelProcess.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <spawn.h>
#include <sys/wait.h>
#include <vector>

extern char** environ;

namespace tarvex {

ModelProcess::~ModelProcess() {
    // Never leave a model running or a zombie behind when the run is abandoned.
    if (state_ == State::Running) stop();
}

std::string ModelProcess::commandLine(const std::string& executable, const std::string& sampleFile) {
    return "\"" + executable + "\" \"" + sampleFile + "\"";
}

int ModelProcess::start(const std::string& executable, const std::string& sampleFile,
                        const std::string& workingDirectory) {
    if (state_ == State::Running) stop();
    state_ = State::NotStarted;
    exitCode_ = 0;

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    if (!workingDirectory.empty()) posix_spawn_file_actions_addchdir_np(&actions, workingDirectory.c_str());

    // The child changes its directory before it loads the model, so a path
    // typed relative to ours must be made absolute first.
    std::string program = executable;
    if (!program.empty() && program[0] != '/') {
        std::error_code ec;
        const std::filesystem::path here = std::filesystem::current_path(ec);
        if (!ec) program = (here / program).string();
    }
    std::vector<char*> argv{const_cast<char*>(executable.c_str()), const_cast<char*>(sampleFile.c_str()),
                            nullptr};
    pid_t child = -1;
    // glibc's posix_spawn reports a failed chdir or exec as its own result, so
    // a model that can't be loaded is known here, not at the first poll.
    int err = posix_spawn(&child, program.c_str(), &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (err != 0) {
        char buffer[64];
        std::snprintf(buffer, sizeof buffer, "%d", err);
        errorText_ = "The model execution process can't be loaded.\nError " + std::string(buffer) +
                     "\ncmd: " + commandLine(executable, sampleFile);
        return 0;
    }
    pid_ = child;
    state_ = State::Running;
    return 1;
}

void ModelProcess::reap(int status) {
    if (WIFEXITED(status)) {
        exitCode_ = WEXITSTATUS(status);
    } else if (WIFSIGNALED(status)) {
        // A model killed by a signal did not finish: make sure it never reads as 0.
        exitCode_ = 128 + WTERMSIG(status);
    } else {
        exitCode_ = 1;
    }
    state_ = State::Exited;
    pid_ = -1;
}

ModelProcess::State ModelProcess::poll() {
    if (state_ != State::Running) return state_;
    int status = 0;
    pid_t r;
    do {
        r = waitpid(pid_, &status, WNOHANG);
    } while (r < 0 && errno == EINTR);
    if (r == 0) return state_;
    if (r == pid_) {
        reap(status);
    } else {
        errorText_ = "Lost connection to model execution";
        state_ = State::Lost;
        pid_ = -1;
    }
    return state_;
}

void ModelProcess::stop() {
    if (state_ != State::Running) return;
    kill(pid_, SIGKILL);
    int status = 0;
    while (waitpid(pid_, &status, 0) < 0 && errno == EINTR) {
    }
    pid_ = -1;
    state_ = State::Exited;
    exitCode_ = 1;
}

}  // namespace tarvex
