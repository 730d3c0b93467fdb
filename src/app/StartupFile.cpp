#include "app/StartupFile.h"

#include <fstream>

#include "common/AtomicFileWriter.h"
#include "common/Environment.h"
#include "common/TextLines.h"

namespace tarvex {

int StartupFile::read(const std::string& path) {
    installLine.clear();
    mark = 0;
    std::ifstream in(path);
    if (!in) {
        errorText_ = "Can't open " + path;
        return 0;
    }
    std::string line;
    if (!readLineUpTo(in, line, kEnvironmentLineMax)) {
        // A failed read that kept characters stopped at the length limit.
        errorText_ = line.empty() ? path + ": the installation directory is missing"
                                 : path + ": the installation directory is longer than 1023 characters";
        return 0;
    }
    if (line.empty()) {
        errorText_ = path + ": the installation directory is missing";
        return 0;
    }
    installLine = line;
    // A mark that doesn't parse (or overflows) counts as 0, so the repair runs.
    int value = 0;
    if (in >> value) mark = value;
    errorText_ = "No errors";
    return 1;
}

int StartupFile::write(const std::string& path) const {
    return saveFileAtomically(path, [this](std::ostream& out) { out << installLine << '\n' << mark << '\n'; });
}

}  // namespace tarvex
