#pragma once
// Every file the program saves goes through here, so that a save that fails
// (a full disk, a lost mount, a crash) leaves the former file as it was.
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>

namespace tarvex {

enum class WriteOutcome { Written, OpenFailed, WriteFailed };

// Writes through `writer` into a new file in the directory of `path`, flushes
// and syncs it and, when every byte reached the disk and the stream is still
// good, renames it over `path`. The new file takes the permissions of the
// file it replaces (or the usual ones under the process's umask).
//
// Where `path` is not a plain file (a symbolic link, a device, a pipe) it is
// written through, so that it stays what it is; likewise when no file can be
// made beside it (a directory the user may not write holding a file he may).
// On OpenFailed and WriteFailed the former file is untouched, except in that
// direct case, and no temporary file is left behind.
[[nodiscard]] WriteOutcome writeFileAtomically(const std::string& path, const std::function<void(std::ostream&)>& writer);

// The same as a 1 or 0 status.
[[nodiscard]] inline int saveFileAtomically(const std::string& path, const std::function<void(std::ostream&)>& writer) {
    return writeFileAtomically(path, writer) == WriteOutcome::Written ? 1 : 0;
}

// For tests: while an object of this class lives, every file written through
// writeFileAtomically fails as a full disk would, once `bytes` bytes of it
// have been written. Not for concurrent use.
class ScopedWriteFailure {
public:
    explicit ScopedWriteFailure(int64_t bytes);
    ~ScopedWriteFailure();
    ScopedWriteFailure(const ScopedWriteFailure&) = delete;
    ScopedWriteFailure& operator=(const ScopedWriteFailure&) = delete;

private:
    int64_t saved_;
};

}  // namespace tarvex
