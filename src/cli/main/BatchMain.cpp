// tarvex-batch: the engine driven from the command line.
#include "cli/BatchApp.h"
#include "cli/Console.h"

int main(int argc, char** argv) {
    tarvex::cli::Console console = tarvex::cli::processConsole();
    return tarvex::cli::runBatch(argc, argv, console);
}
