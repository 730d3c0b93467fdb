#include "panels/layer/EventQueue.h"

#include <QCoreApplication>

namespace tarvex {

int EventQueue::drain() {
    if (!QCoreApplication::instance()) return 0;
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents(QEventLoop::AllEvents);
    return 1;
}

void EventQueue::exitLoop(int status) { QCoreApplication::exit(status); }

}  // namespace tarvex
