// tarvex-batch: the engine driven from the command line.
#include <exception>
#include <iostream>

#include "cli/BatchApp.h"
#include "cli/CommandOutcome.h"
#include "cli/Console.h"

int main(int argc, char** argv) {
    // The engine reports through return values; what escapes as an exception
    // (memory exhausted by a huge request) still ends with a message.
    try {
        tarvex::cli::Console console = tarvex::cli::processConsole();
        return tarvex::cli::runBatch(argc, argv, console);
    } catch (const std::exception& e) {
        std::cerr << "tarvex-batch: " << e.what() << '\n';
        return tarvex::cli::kExitFailure;
    }
}
