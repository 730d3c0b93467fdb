#include "postproc/UaTableFile.h"

#include <cstdio>
#include <ostream>

#include "common/AtomicFileWriter.h"
#include "postproc/UaStats.h"

namespace tarvex {

namespace {

std::string g73(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%7.3g", value);
    return text;
}

}  // namespace

void writeUaTable(std::ostream& out, const UaStats& stats, int32_t index,
                  const std::vector<std::vector<std::string>>& sheet) {
    const std::string* name = stats.name(index);
    const double deviation = stats.std(index);
    out << "Uncertainty analysis for var " << (name ? *name : std::string()) << "\n\n";
    out << "      mean: " << g73(stats.mean(index)) << '\n';
    out << "       std: " << g73(deviation) << '\n';
    out << "square std: " << g73(deviation * deviation) << '\n';
    out << "     Tcheb: " << g73(stats.tchebyBound(index)) << '\n';
    out << "     TTest: " << g73(stats.tTestBound(index)) << "\n\n";
    for (const auto& row : sheet) {
        // "%20s": right-aligned in 20 columns, a longer text whole.
        for (const std::string& text : row) {
            if (text.size() < 20) out << std::string(20 - text.size(), ' ');
            out << text << '\t';
        }
        out << '\n';
    }
}

int saveUaTable(const std::string& path, const UaStats& stats, int32_t index,
                const std::vector<std::vector<std::string>>& sheet) {
    if (!stats.name(index)) return 0;
    return saveFileAtomically(path, [&](std::ostream& out) { writeUaTable(out, stats, index, sheet); });
}

}  // namespace tarvex
