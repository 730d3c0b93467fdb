#include "common/RememberedDirectories.h"

#include <unistd.h>

namespace tarvex {

int RememberedDirectories::set(Which which, const std::string& dir) {
    // An empty text can't become the current directory, so a value never goes back
    // to null through a setter. A text with an embedded NUL names no directory.
    if (dir.empty() || dir.find('\0') != std::string::npos) return 0;
    if (::chdir(dir.c_str()) != 0) return 0;
    values_[which] = dir;
    return 1;
}

}  // namespace tarvex
