#include "common/WorkingFile.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/time.h>
#include <unistd.h>

namespace tarvex {

std::string workingDirectory() {
    for (const char* variable : {"TEMP", "TMPDIR"}) {
        const char* value = std::getenv(variable);
        if (value && *value) return value;
    }
    return "/tmp";
}

int createWorkingFile(std::string* name) {
    struct timeval now {};
    gettimeofday(&now, nullptr);
    const auto seconds = static_cast<unsigned short>(now.tv_sec);
    const auto millis = static_cast<unsigned short>(now.tv_usec / 1000);
    std::string dir = workingDirectory();
    if (dir.size() > 1 && dir.back() == '/') dir.pop_back();

    char leaf[64];
    for (int attempt = 0; attempt < 100000; ++attempt) {
        if (attempt == 0)
            std::snprintf(leaf, sizeof leaf, "tmp%hu_%hu.data", seconds, millis);
        else
            std::snprintf(leaf, sizeof leaf, "tmp%hu_%hu_%d.data", seconds, millis, attempt);
        std::string path = dir + "/" + leaf;
        const int fd = ::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (fd >= 0) {
            if (name) *name = std::move(path);
            return fd;
        }
        if (errno != EEXIST) {
            if (name) *name = std::move(path);
            return -1;
        }
    }
    errno = EEXIST;
    return -1;
}

}  // namespace tarvex
