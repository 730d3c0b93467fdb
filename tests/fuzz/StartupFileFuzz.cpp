// The start-up file: what is read names an installation directory on one
// line, and the file written from it reads back the same.
#include "FuzzSupport.h"
#include "app/StartupFile.h"

namespace tarvex {

TARVEX_FUZZ_TARGET(StartupFile, 1000) {
    StartupFile startup;
    if (!startup.read(fuzz::scratchInput(input))) {
        fuzz::check(startup.installLine.empty() && startup.mark == 0, "a refused file left values behind");
        return fuzz::Outcome::Refused;
    }
    fuzz::check(!startup.installLine.empty() && startup.installLine.size() <= 1023 &&
                    startup.installLine.find('\n') == std::string::npos,
                "the directory read is no single line of 1 to 1023 characters");
    // One carriage return ending the line is taken for a line end of another
    // system; a directory whose name ends in one more can't be written back.
    if (startup.installLine.back() == '\r') return fuzz::Outcome::Accepted;
    const std::string copy = fuzz::ScratchFiles::instance().path("written.cfg");
    fuzz::check(startup.write(copy) == 1, "the file read cannot be written");
    StartupFile again;
    fuzz::check(again.read(copy) == 1 && again.installLine == startup.installLine && again.mark == startup.mark,
                "written and read back, the file says something else: " + again.installLine);
    return fuzz::Outcome::Accepted;
}

}  // namespace tarvex
