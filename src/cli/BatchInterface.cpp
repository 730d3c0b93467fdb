#include "cli/BatchInterface.h"

#include <chrono>
#include <ostream>
#include <thread>

#include "app/RunController.h"
#include "cli/Console.h"
#include "cli/ProgressBar.h"

namespace tarvex::cli {

namespace {

// Set by the handler; read by the one interface whose operation is in progress.
std::atomic<bool> g_stop{false};
static_assert(std::atomic<bool>::is_always_lock_free, "the stop flag is written from a signal handler");

extern "C" void onInterrupt(int) { g_stop.store(true); }

std::string buttonLabel(const std::string& button) {
    return !button.empty() && button.front() == '^' ? button.substr(1) : button;
}

}  // namespace

BatchInterface::BatchInterface(Console& console, QuestionPolicy policy, bool quiet)
    : console_(console), policy_(policy), quiet_(quiet) {}

BatchInterface::~BatchInterface() {
    restoreHandler();
}

std::string BatchInterface::oneLine(const std::string& text) {
    std::string out;
    bool blank = false;
    for (char c : text) {
        if (c == ' ' || c == '\t' || c == '\n' || c == '\r') {
            blank = true;
            continue;
        }
        if (blank && !out.empty()) out += ' ';
        blank = false;
        out += c;
    }
    return out;
}

void BatchInterface::message(MessageKind kind, const std::string& title, const std::string& text) {
    if (kind == MessageKind::Error) ++errors_;
    console_.err << "tarvex-batch: ";
    const std::string shownTitle = oneLine(title);
    if (!shownTitle.empty()) console_.err << shownTitle << ": ";
    console_.err << oneLine(text) << '\n';
}

int BatchInterface::ask(const Question& question) {
    int answer = 0;
    if (question.text == kRegenerateText && !policy_.regenerate) {
        for (std::size_t b = 0; b < question.buttons.size(); ++b)
            if (buttonLabel(question.buttons[b]) == "No") answer = int(b);
    }
    const std::string chosen =
        std::size_t(answer) < question.buttons.size() ? buttonLabel(question.buttons[std::size_t(answer)]) : "";
    console_.err << "tarvex-batch: " << oneLine(question.title) << ": " << oneLine(question.text) << " " << chosen
                 << '\n';
    return answer;
}

bool BatchInterface::chooseFile(const FileRequest&, FileChoice&) {
    return false;
}

void BatchInterface::beginProgress(const ProgressRequest& request) {
    if (!held_) {
        g_stop.store(false);
        interrupted_ = false;
    }
    installHandler();
    bar_.reset();
    if (quiet_) return;
    if (request.kind == ProgressKind::Animation) {
        console_.err << "tarvex-batch: " << request.title << ": " << request.modelLine << " " << request.fileLine
                     << '\n';
        return;
    }
    bar_ = std::make_unique<ProgressBar>(console_.err, console_.errIsTerminal, console_.clock, request.title);
}

void BatchInterface::setPercentage(int percent) {
    if (bar_ && percent >= 0 && percent <= 100) bar_->update(percent);
}

void BatchInterface::setProgressFileLine(const std::string&) {}

void BatchInterface::stepAnimation() {}

bool BatchInterface::stopRequested() {
    if (g_stop.load()) interrupted_ = true;
    return interrupted_;
}

void BatchInterface::endProgress() {
    if (bar_) bar_->finish();
    bar_.reset();
    stopRequested();
    if (held_) return;
    restoreHandler();
    g_stop.store(false);
}

void BatchInterface::catchInterrupts() {
    g_stop.store(false);
    interrupted_ = false;
    installHandler();
    held_ = true;
}

void BatchInterface::releaseInterrupts() {
    stopRequested();  // a Ctrl-C after the last look still counts
    held_ = false;
    restoreHandler();
    g_stop.store(false);
}

void BatchInterface::waitForPoll() {
    // Ten looks at the flag in the half second, so that Ctrl-C stops a model
    // at once rather than at the next poll.
    for (int i = 0; i < 10 && !g_stop.load(); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(50));
}

void BatchInterface::installHandler() {
    if (handlerInstalled_) return;
    struct sigaction action {};
    action.sa_handler = onInterrupt;
    sigemptyset(&action.sa_mask);
    action.sa_flags = 0;
    handlerInstalled_ = ::sigaction(SIGINT, &action, &previous_) == 0;
}

void BatchInterface::restoreHandler() {
    if (!handlerInstalled_) return;
    ::sigaction(SIGINT, &previous_, nullptr);
    handlerInstalled_ = false;
}

}  // namespace tarvex::cli
