#pragma once
// How the engine's readers speak to the user without knowing who listens: the
// desktop program shows a message dialog, the batch tool writes to standard
// error, tests record what was said.
#include <string>

namespace tarvex {

class MessageSink {
public:
    virtual ~MessageSink() = default;
    virtual void warning(const std::string& title, const std::string& text) = 0;
    virtual void error(const std::string& title, const std::string& text) = 0;
};

} // namespace tarvex
