#include "cli/ProgressBar.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ostream>
#include <utility>

namespace tarvex::cli {

namespace {
constexpr int kBarWidth = 30;
}

ProgressBar::ProgressBar(std::ostream& out, bool terminal, std::function<double()> clock, std::string label)
    : out_(out), terminal_(terminal), clock_(std::move(clock)), label_(std::move(label)) {
    start_ = clock_ ? clock_() : 0.0;
}

std::string ProgressBar::formatDuration(double seconds) {
    if (!(seconds > 0.0)) seconds = 0.0;
    const long long total = std::llround(std::min(seconds, 1e9));
    char text[32];
    if (total >= 3600) {
        std::snprintf(text, sizeof text, "%lld:%02lld:%02lld", total / 3600, total / 60 % 60, total % 60);
    } else {
        std::snprintf(text, sizeof text, "%lld:%02lld", total / 60, total % 60);
    }
    return text;
}

void ProgressBar::drawLine(int percent) {
    const int filled = percent * kBarWidth / 100;
    std::string bar(static_cast<std::size_t>(filled), '#');
    bar.append(static_cast<std::size_t>(kBarWidth - filled), ' ');
    char head[16];
    std::snprintf(head, sizeof head, "%3d%%", percent);
    out_ << '\r' << label_ << " [" << bar << "] " << head;
    if (percent >= 100) {
        out_ << "  done in " << formatDuration((clock_ ? clock_() : 0.0) - start_) << "   ";
    } else if (percent > 0) {
        // What is left at the pace of what was done.
        const double elapsed = (clock_ ? clock_() : 0.0) - start_;
        out_ << "  " << formatDuration(elapsed * (100 - percent) / percent) << " left   ";
    } else {
        out_ << "               ";
    }
    out_.flush();
}

void ProgressBar::update(int percent) {
    if (finished_) return;
    percent = std::clamp(percent, 0, 100);
    if (percent <= shown_) return;
    shown_ = percent;
    if (terminal_) {
        drawLine(percent);
        return;
    }
    const int tenth = percent / 10;
    if (tenth <= lastTenth_) return;
    lastTenth_ = tenth;
    out_ << label_ << ": " << tenth * 10 << "%\n";
    out_.flush();
}

void ProgressBar::finish() {
    if (finished_) return;
    finished_ = true;
    if (terminal_ && shown_ >= 0) {
        out_ << '\n';
        out_.flush();
    }
}

}  // namespace tarvex::cli
