#pragma once
// Where the batch tool writes: results to `out`, progress and messages to
// `err`. Whether `err` is a terminal and the clock are given from outside,
// so that tests see exactly what a user or a script would.
#include <functional>
#include <iosfwd>

namespace tarvex::cli {

struct Console {
    std::ostream& out;
    std::ostream& err;
    bool errIsTerminal = false;
    // Seconds from any fixed origin; steady.
    std::function<double()> clock;
};

// The process's own: std::cout, std::cerr, isatty(2), the steady clock.
Console processConsole();

}  // namespace tarvex::cli
