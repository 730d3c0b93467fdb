#include "correlation/ColumnFile.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>
#include <unistd.h>

#include "common/WorkingFile.h"

namespace tarvex {

ColumnFile::ColumnFile() {
    std::string name;
    fd_ = createWorkingFile(&name);
    if (fd_ >= 0) ::unlink(name.c_str());
}

ColumnFile::~ColumnFile() {
    if (fd_ >= 0) ::close(fd_);
}

bool ColumnFile::write(int64_t offset, const void* data, int64_t bytes) {
    if (offset < 0 || bytes < 0) return false;
    if (fd_ < 0) {
        if (size_t(offset + bytes) > memory_.size()) memory_.resize(size_t(offset + bytes));
        std::memcpy(memory_.data() + offset, data, size_t(bytes));
        return true;
    }
    const char* p = static_cast<const char*>(data);
    while (bytes > 0) {
        const ssize_t n = ::pwrite(fd_, p, size_t(bytes), off_t(offset));
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        p += n;
        offset += n;
        bytes -= n;
    }
    return true;
}

bool ColumnFile::read(int64_t offset, void* data, int64_t bytes) const {
    if (offset < 0 || bytes < 0) return false;
    char* p = static_cast<char*>(data);
    if (fd_ < 0) {
        const int64_t have = std::clamp<int64_t>(int64_t(memory_.size()) - offset, 0, bytes);
        if (have > 0) std::memcpy(p, memory_.data() + offset, size_t(have));
        std::memset(p + have, 0, size_t(bytes - have));
        return true;
    }
    while (bytes > 0) {
        const ssize_t n = ::pread(fd_, p, size_t(bytes), off_t(offset));
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) return false;
        if (n == 0) {  // past the end: never written
            std::memset(p, 0, size_t(bytes));
            return true;
        }
        p += n;
        offset += n;
        bytes -= n;
    }
    return true;
}

}  // namespace tarvex
