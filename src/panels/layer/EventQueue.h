#pragma once
// The event queue as long operations use it: a loop inside a callback returns to the
// queue at every step, so that the window stays alive and a stop button can be pressed.
namespace tarvex {

class EventQueue {
public:
    // Dispatches every event that is waiting, then returns. Returns 0 when there is no
    // application to dispatch for.
    static int drain();
    // Ends the event loop with `status`; the program's run returns it.
    static void exitLoop(int status);
};

}  // namespace tarvex
