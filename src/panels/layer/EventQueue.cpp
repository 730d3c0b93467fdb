#include "panels/layer/EventQueue.h"

#include <QCoreApplication>

namespace tarvex {

namespace {
std::function<int()>& drainHook() {
    static std::function<int()> hook;
    return hook;
}
}  // namespace

int EventQueue::dispatchPending() {
    if (!QCoreApplication::instance()) return 0;
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents(QEventLoop::AllEvents);
    return 1;
}

int EventQueue::drain() {
    if (drainHook()) {
        // A copy: the hook may replace itself while it runs.
        const std::function<int()> hook = drainHook();
        return hook();
    }
    return dispatchPending();
}

void EventQueue::setDrainHook(std::function<int()> hook) { drainHook() = std::move(hook); }

void EventQueue::exitLoop(int status) { QCoreApplication::exit(status); }

}  // namespace tarvex
