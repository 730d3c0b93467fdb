#include "app/DemoRepair.h"

#include <filesystem>
#include <fstream>
#include <system_error>

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
    const std::string tmpPath = mainDir + "/Demo/" + caseName + "2.dem";
    std::error_code ec;

    std::ifstream in;
    const bool present = fs::exists(demPath, ec);
    if (present) {
        in.open(demPath, std::ios::binary);
        if (!in) return 0;
    }
    std::ofstream out(tmpPath, std::ios::binary | std::ios::trunc);
    if (!out) return 0;

    // The loop tests the stream before each read, as the files have always been
    // repaired: a file that ends with a line end gains one empty line, and an empty
    // file becomes a single line end. Lines are copied whole whatever their length,
    // so that no part of a case is lost. A missing file gives an empty one.
    if (present) {
        std::string line;
        while (in.good()) {
            std::getline(in, line);
            out << repairLine(line, mainDir) << '\n';
        }
        if (in.bad()) {
            out.close();
            fs::remove(tmpPath, ec);
            return 0;
        }
    }
    out.close();
    if (!out) {
        fs::remove(tmpPath, ec);
        return 0;
    }
    in.close();
    fs::rename(tmpPath, demPath, ec);
    if (ec) {
        fs::remove(tmpPath, ec);
        return 0;
    }
    return 1;
}

void DemoRepair::repairAll(const std::string& mainDir) {
    for (const char* name : kCaseNames) (void)repairFile(mainDir, name);  // a failed case stays as it was
}

}  // namespace tarvex
