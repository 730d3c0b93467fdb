#pragma once
// The environment part of a start, shared by the desktop program and the batch tool:
// read ./Tarvex.cfg, set MainDir, repair the demonstration files on the first start,
// rewrite ./Tarvex.cfg with its mark. The caller then sets the panel search path from
// Environment::panelSearchPath() (desktop program) and goes on.
#include <ostream>

#include "common/Environment.h"
#include "app/StartupFile.h"

namespace tarvex {

class EnvironmentStart {
public:
    // 1 when the program may go on; 0 when it must end with exitStatus.
    int proceed = 0;
    // The status the caller ends the process with when proceed is 0. A start-up file
    // that can't be used ends the program with 0, although the start failed.
    int exitStatus = 0;
    // 1 when the demonstration files were repaired by this start.
    int repaired = 0;
    // The start-up file as read (the mark before the rewrite).
    StartupFile startupFile;

    // Runs the steps from the current directory. When ./Tarvex.cfg can't be used it
    // writes the start-up file's error message and a line end to `err`, touches no
    // file and leaves the environment as it was. Never ends the process itself.
    // Returns proceed.
    [[nodiscard]] int run(std::ostream& err, Environment& environment = Environment::instance());
};

}  // namespace tarvex
