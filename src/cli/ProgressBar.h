#pragma once
// Progress of a long step on the error stream. On a terminal one line is
// redrawn in place: label, bar, percent and the time still to go, judged
// from the pace so far. Elsewhere (a log file, a pipe) a plain line is
// written each time the percent passes a tenth, so that logs stay short
// and readable.
#include <functional>
#include <iosfwd>
#include <string>

namespace tarvex::cli {

class ProgressBar {
public:
    // `clock` gives seconds from any fixed origin.
    ProgressBar(std::ostream& out, bool terminal, std::function<double()> clock, std::string label);

    // The percent reached, 0 to 100; lower or repeated values draw nothing new.
    void update(int percent);
    // Ends the display: on a terminal the line is closed, and a run that
    // stopped short leaves its last percent standing.
    void finish();

    // "m:ss", or "h:mm:ss" from an hour on; negative seconds count as 0.
    static std::string formatDuration(double seconds);

private:
    void drawLine(int percent);

    std::ostream& out_;
    bool terminal_;
    std::function<double()> clock_;
    std::string label_;
    double start_ = 0.0;
    int shown_ = -1;       // last percent drawn
    int lastTenth_ = -1;   // last tenth written in plain mode
    bool finished_ = false;
};

}  // namespace tarvex::cli
