#pragma once
// The print facility that works without any panel: one line on standard error.
#include <string>

namespace tarvex {

void printLine(const std::string& text);

}  // namespace tarvex
