#include "app/ConfigDatFile.h"

#include <filesystem>
#include <fstream>
#include <system_error>

#include "common/AtomicFileWriter.h"
#include "common/Environment.h"
#include "common/TextLines.h"

namespace tarvex {

// Without an installation directory (a project made before the start, or in a test
// that sets none) there is no config.dat: its path would name the file system's root.
ConfigDatFile::ConfigDatFile(Environment& environment) : environment_(&environment) {
    if (!environment_->mainDir().empty()) (void)read(environment_->configDatPath(), environment_->directories());
}

ConfigDatFile::~ConfigDatFile() {
    // A failed write goes unnoticed: nobody is left to tell.
    if (!environment_->mainDir().empty()) (void)write(environment_->configDatPath(), environment_->directories());
}

int ConfigDatFile::read(const std::string& path, RememberedDirectories& directories) {
    std::error_code ec;
    if (!std::filesystem::exists(path, ec)) return 0;
    std::ifstream in(path);
    if (!in) return 0;
    std::string line;
    for (int i = 0; i < RememberedDirectories::kCount; ++i) {
        if (!readLineUpTo(in, line, kEnvironmentLineMax)) break;
        // A directory that is gone keeps its old value.
        (void)directories.set(static_cast<RememberedDirectories::Which>(i), line);
    }
    return 1;
}

int ConfigDatFile::write(const std::string& path, const RememberedDirectories& directories) {
    return saveFileAtomically(path, [&directories](std::ostream& out) {
        for (int i = 0; i < RememberedDirectories::kCount; ++i)
            out << directories.get(static_cast<RememberedDirectories::Which>(i)) << '\n';
        out << '\n';
    });
}

}  // namespace tarvex
