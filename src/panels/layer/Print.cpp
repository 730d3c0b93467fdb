#include "panels/layer/Print.h"

#include <cstdio>

namespace tarvex {

void printLine(const std::string& text) {
    std::fputs(text.c_str(), stderr);
    std::fputc('\n', stderr);
    std::fflush(stderr);
}

}  // namespace tarvex
