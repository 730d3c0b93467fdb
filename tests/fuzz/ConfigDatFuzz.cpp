// config.dat: the directories read are directories that exist, and when they
// are absolute the file written from them reads back the same.
#include <filesystem>

#include "FuzzSupport.h"
#include "app/ConfigDatFile.h"

namespace tarvex {

TARVEX_FUZZ_TARGET(ConfigDat, 1000) {
    RememberedDirectories directories;
    if (!ConfigDatFile::read(fuzz::scratchInput(input), directories)) return fuzz::Outcome::Refused;
    bool absolute = true;
    bool any = false;
    for (int i = 0; i < RememberedDirectories::kCount; ++i) {
        const auto which = static_cast<RememberedDirectories::Which>(i);
        if (!directories.isSet(which)) continue;
        any = true;
        std::error_code ec;
        fuzz::check(std::filesystem::is_directory(directories.get(which), ec) || directories.get(which)[0] != '/',
                    "a remembered directory does not exist: " + directories.get(which));
        absolute = absolute && directories.get(which)[0] == '/';
    }
    if (!absolute) return fuzz::Outcome::Accepted;
    const std::string copy = fuzz::ScratchFiles::instance().path("written.dat");
    fuzz::check(ConfigDatFile::write(copy, directories) == 1, "the directories read cannot be written");
    RememberedDirectories again;
    fuzz::check(ConfigDatFile::read(copy, again) == 1, "the file written cannot be read");
    for (int i = 0; i < RememberedDirectories::kCount; ++i) {
        const auto which = static_cast<RememberedDirectories::Which>(i);
        fuzz::check(again.get(which) == directories.get(which), "written and read back, a directory changed");
    }
    return any ? fuzz::Outcome::Accepted : fuzz::Outcome::Refused;
}

}  // namespace tarvex
