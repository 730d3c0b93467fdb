// The desktop program's start sequence.
#include <clocale>
#include <iostream>

#include "common/Environment.h"
#include "app/EnvironmentStart.h"
#include "panels/layer/SearchPath.h"
#include "panels/TarvexApplication.h"

namespace tarvex {

int tarvexMain(int argc, char** argv) {
    // 1. The system's locale (Qt re-applies it and keeps numbers in the C form).
    std::setlocale(LC_ALL, "");

    // 2. The application and its display. Without a display: -1, and no file touched.
    char name[] = "Tarvex";
    TarvexApplication application(name, nullptr, argc, argv);
    if (!application.hasDisplay()) return -1;

    // 3.-7. ./Tarvex.cfg, MainDir, the first-start repair, the rewrite of the mark.
    Environment& environment = Environment::instance();
    EnvironmentStart start;
    if (!start.run(std::cerr, environment)) return start.exitStatus;
    application.setMainDirectory(environment.mainDir());

    // 8. Where panel files, pictures and help pages are found.
    SearchPath::clear();
    for (const std::string& dir : environment.panelSearchPath()) SearchPath::append(dir);

    // 9. The panels and the event loop; 10. the application goes with this scope.
    application.run();
    return 0;
}

}  // namespace tarvex
