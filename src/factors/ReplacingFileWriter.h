#pragma once
// Writing a text file so that a failure leaves the former file intact.
#include <functional>
#include <iosfwd>
#include <string>

namespace tarvex {

enum class WriteOutcome { Written, OpenFailed, WriteFailed };

// Writes through `writer` into a new file in the directory of `path` and,
// when the stream is still good after flushing, renames it over `path`. The
// new file takes the permissions of the file it replaces (or the usual ones
// under the process's umask). Where `path` is not a plain file (a symbolic
// link, a device) or no file can be made beside it, `path` is written
// directly. On OpenFailed and WriteFailed the former file is untouched
// (except in that direct case).
[[nodiscard]] WriteOutcome writeReplacingFile(const std::string& path, const std::function<void(std::ostream&)>& writer);

} // namespace tarvex
