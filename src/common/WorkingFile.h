#pragma once
// Working files of the engine's stores, in the temporary directory.
#include <string>

namespace tarvex {

// The directory for working files: $TEMP, else $TMPDIR, else /tmp.
std::string workingDirectory();

// Creates a new, empty file "tmp<seconds>_<milliseconds>.data" in
// workingDirectory(), both numbers cut to 16 bits. The create is exclusive:
// when the name is taken a suffix "_<n>" is tried, so two stores never share
// a file. Returns a read-write descriptor (closed on exec, so that model
// processes do not inherit it) and the path in `name`, or -1 with errno set.
[[nodiscard]] int createWorkingFile(std::string* name);

}  // namespace tarvex
