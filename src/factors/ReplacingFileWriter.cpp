#include "factors/ReplacingFileWriter.h"

#include <cstdio>
#include <ext/stdio_filebuf.h>
#include <fcntl.h>
#include <fstream>
#include <ostream>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace tarvex {

namespace {

mode_t newFileMode(const std::string& path) {
    struct stat st {};
    if (::stat(path.c_str(), &st) == 0) return st.st_mode & 07777;
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

WriteOutcome writeDirectly(const std::string& path, const std::function<void(std::ostream&)>& writer) {
    std::ofstream out(path, std::ios::out | std::ios::trunc);
    if (!out) return WriteOutcome::OpenFailed;
    writer(out);
    out.flush();
    return out ? WriteOutcome::Written : WriteOutcome::WriteFailed;
}

} // namespace

WriteOutcome writeReplacingFile(const std::string& path, const std::function<void(std::ostream&)>& writer) {
    struct stat st {};
    if (::lstat(path.c_str(), &st) == 0) {
        // A file the user may not write is not replaced behind his back.
        if (S_ISDIR(st.st_mode) || ::access(path.c_str(), W_OK) != 0) return WriteOutcome::OpenFailed;
        // Only a plain file is replaced; a link, a device or a pipe is
        // written through, so that it stays what it is.
        if (!S_ISREG(st.st_mode)) return writeDirectly(path, writer);
    }

    std::string pattern = path + ".tmpXXXXXX";
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back('\0');
    const int fd = ::mkstemp(name.data());
    if (fd < 0) return writeDirectly(path, writer);
    const std::string tempName(name.data());
    ::fchmod(fd, newFileMode(path));

    bool good = false;
    {
        __gnu_cxx::stdio_filebuf<char> buffer(fd, std::ios::out);
        std::ostream out(&buffer);
        writer(out);
        out.flush();
        good = static_cast<bool>(out) && ::fsync(fd) == 0;
    }  // the buffer closes the descriptor
    if (good && ::rename(tempName.c_str(), path.c_str()) == 0) return WriteOutcome::Written;
    ::unlink(tempName.c_str());
    return WriteOutcome::WriteFailed;
}

} // namespace tarvex
