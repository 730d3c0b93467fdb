#include "app/EnvironmentStart.h"

#include "app/DemoRepair.h"

namespace tarvex {

int EnvironmentStart::run(std::ostream& err, Environment& environment) {
    proceed = 0;
    exitStatus = 0;
    repaired = 0;
    const std::string cfgPath = std::string("./") + StartupFile::kFileName;
    if (!startupFile.read(cfgPath)) {
        err << StartupFile::kOpenErrorMessage << '\n';
        err.flush();
        return 0;
    }
    environment.setMainDir(startupFile.installLine);

    if (startupFile.mark == 0) {
        DemoRepair::repairAll(environment.mainDir());
        repaired = 1;
    }

    // Rewritten at every start, with the directory line as it was given; a file that
    // can't be written goes unnoticed.
    StartupFile rewritten = startupFile;
    rewritten.mark = StartupFile::markAfterStart(startupFile.mark);
    (void)rewritten.write(cfgPath);

    proceed = 1;
    return 1;
}

}  // namespace tarvex
