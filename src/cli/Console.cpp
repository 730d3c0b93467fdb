#include "cli/Console.h"

#include <unistd.h>

#include <chrono>
#include <iostream>

namespace tarvex::cli {

Console processConsole() {
    const auto origin = std::chrono::steady_clock::now();
    return Console{std::cout, std::cerr, ::isatty(STDERR_FILENO) == 1, [origin] {
                       return std::chrono::duration<double>(std::chrono::steady_clock::now() - origin).count();
                   }};
}

}  // namespace tarvex::cli
