// tarvex-levele: the Level E model program (see LevelEProgram.h).
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "model/levele/main/LevelEProgram.h"

int main(int argc, char** argv) {
    // The engine reports through return values; what escapes as an exception
    // (memory exhausted by a huge sample) still ends with a message.
    try {
        const std::vector<std::string> args(argv + (argc > 0 ? 1 : 0), argv + (argc > 0 ? argc : 0));
        return tarvex::levele::runLevelE(args, std::cout, std::cerr);
    } catch (const std::exception& e) {
        std::cerr << "tarvex-levele: " << e.what() << '\n';
        return tarvex::levele::kExitFailure;
    }
}
