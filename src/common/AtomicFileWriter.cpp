#include "common/AtomicFileWriter.h"

#include <cerrno>
#include <cstdlib>
#include <functional>
#include <fcntl.h>
#include <ostream>
#include <streambuf>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace tarvex {

namespace {

// Bytes a file may take before writes fail; negative: no limit.
int64_t gFailAfterBytes = -1;

// An output buffer over a descriptor that reports every failed write (a full
// disk surfaces at the write or at the sync, never silently).
class DescriptorBuffer : public std::streambuf {
public:
    DescriptorBuffer(int fd, int64_t failAfter) : fd_(fd), budget_(failAfter), buffer_(1 << 16) {
        setp(buffer_.data(), buffer_.data() + buffer_.size());
    }
    DescriptorBuffer(const DescriptorBuffer&) = delete;
    DescriptorBuffer& operator=(const DescriptorBuffer&) = delete;

protected:
    int_type overflow(int_type c) override {
        if (!drain()) return traits_type::eof();
        if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
        *pptr() = traits_type::to_char_type(c);
        pbump(1);
        return c;
    }
    int sync() override { return drain() ? 0 : -1; }

private:
    bool drain() {
        const char* p = pbase();
        std::size_t left = static_cast<std::size_t>(pptr() - pbase());
        while (left > 0) {
            std::size_t chunk = left;
            if (budget_ >= 0 && static_cast<int64_t>(chunk) > budget_) chunk = static_cast<std::size_t>(budget_);
            if (chunk == 0) {
                errno = ENOSPC;
                return false;
            }
            const ssize_t n = ::write(fd_, p, chunk);
            if (n < 0) {
                if (errno == EINTR) continue;
                return false;
            }
            if (budget_ >= 0) budget_ -= n;
            p += n;
            left -= static_cast<std::size_t>(n);
        }
        setp(buffer_.data(), buffer_.data() + buffer_.size());
        return true;
    }

    int fd_;
    int64_t budget_;
    std::vector<char> buffer_;
};

mode_t newFileMode(const std::string& path) {
    struct stat st {};
    if (::stat(path.c_str(), &st) == 0) return st.st_mode & 07777;
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

// Writes all of the text through `fd`, and syncs it to the disk when asked
// (devices and pipes cannot be synced).
bool writeAll(int fd, const std::function<void(std::ostream&)>& writer, bool sync) {
    DescriptorBuffer buffer(fd, gFailAfterBytes);
    std::ostream out(&buffer);
    writer(out);
    out.flush();
    return static_cast<bool>(out) && (!sync || ::fsync(fd) == 0);
}

// The rename itself reaches the disk only with its directory.
void syncDirectoryOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    const std::string directory = slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
    const int fd = ::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return;
    ::fsync(fd);
    ::close(fd);
}

WriteOutcome writeDirectly(const std::string& path, const std::function<void(std::ostream&)>& writer) {
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (fd < 0) return WriteOutcome::OpenFailed;
    const bool written = writeAll(fd, writer, false);
    const bool good = ::close(fd) == 0 && written;
    return good ? WriteOutcome::Written : WriteOutcome::WriteFailed;
}

}  // namespace

WriteOutcome writeFileAtomically(const std::string& path, const std::function<void(std::ostream&)>& writer) {
    struct stat st {};
    if (::lstat(path.c_str(), &st) == 0) {
        // A file the user may not write is not replaced behind his back.
        if (S_ISDIR(st.st_mode) || ::access(path.c_str(), W_OK) != 0) return WriteOutcome::OpenFailed;
        // Only a plain file is replaced; a link, a device or a pipe is
        // written through, so that it stays what it is.
        if (!S_ISREG(st.st_mode)) return writeDirectly(path, writer);
    }

    std::string name = path + ".tmpXXXXXX";
    const int fd = ::mkostemp(name.data(), O_CLOEXEC);
    if (fd < 0) return writeDirectly(path, writer);
    ::fchmod(fd, newFileMode(path));

    const bool written = writeAll(fd, writer, true);
    const bool closed = ::close(fd) == 0;
    if (written && closed && ::rename(name.c_str(), path.c_str()) == 0) {
        syncDirectoryOf(path);
        return WriteOutcome::Written;
    }
    ::unlink(name.c_str());
    return WriteOutcome::WriteFailed;
}

ScopedWriteFailure::ScopedWriteFailure(int64_t bytes) : saved_(gFailAfterBytes) { gFailAfterBytes = bytes; }

ScopedWriteFailure::~ScopedWriteFailure() { gFailAfterBytes = saved_; }

}  // namespace tarvex
