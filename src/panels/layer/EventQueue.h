#pragma once
// The event queue as long operations use it: a loop inside a callback returns to the
// queue at every step, so that the window stays alive and a stop button can be pressed.
#include <functional>

namespace tarvex {

class EventQueue {
public:
    // Dispatches every event that is waiting, then returns. Returns 0 when there is no
    // application to dispatch for.
    static int drain();
    // Ends the event loop with `status`; the program's run returns it.
    static void exitLoop(int status);
    // Tests replace what a drain does: the hook runs in its place (it may press a
    // button, look at a gauge, or dispatch the queue itself) and its result is drain's.
    // An empty function restores the real drain.
    static void setDrainHook(std::function<int()> hook);
    // What the real drain does, for hooks that want it as well.
    static int dispatchPending();
};

}  // namespace tarvex
