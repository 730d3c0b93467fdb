#include "app/DemoRepair.h"

#include <filesystem>
#include <fstream>
#include <system_error>

#include "common/AtomicFileWriter.h"

namespace tarvex {

std::string DemoRepair::repairLine(const std::string& line, const std::string& mainDir) {
    if (line.find("MAINDIR") == std::string::npos) return line;
    const std::size_t bracket = line.find(']');
    if (bracket == std::string::npos) return line;
    return mainDir + line.substr(bracket + 1);
}

int DemoRepair::repairFile(const std::string& mainDir, const std::string& caseName) {
    namespace fs = std::filesystem;
    const std::string demPath = mainDir + "/Demo/" + caseName + ".dem";
    std::error_code ec;

    std::ifstream in;
    const bool present = fs::exists(demPath, ec);
    if (present) {
        in.open(demPath, std::ios::binary);
        if (!in) return 0;
    }
    // The loop tests the stream before each read, as the files have always been
    // repaired: a file that ends with a line end gains one empty line, and an empty
    // file becomes a single line end. Lines are copied whole whatever their length,
    // so that no part of a case is lost. A missing file gives an empty one.
    bool readFailed = false;
    const WriteOutcome outcome = writeFileAtomically(demPath, [&](std::ostream& out) {
        if (!present) return;
        std::string line;
        while (in.good()) {
            std::getline(in, line);
            out << repairLine(line, mainDir) << '\n';
        }
        if (in.bad()) {
            readFailed = true;
            out.setstate(std::ios::badbit);
        }
    });
    return outcome == WriteOutcome::Written && !readFailed ? 1 : 0;
}

void DemoRepair::repairAll(const std::string& mainDir) {
    for (const char* name : kCaseNames) (void)repairFile(mainDir, name);  // a failed case stays as it was
}

}  // namespace tarvex
