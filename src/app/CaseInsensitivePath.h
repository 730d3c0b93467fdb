#pragma once
// File names inside the installation are matched without regard to case: the demo
// menu opens "LevelE.dem" and "Linear.dem" where the files are levelE.dem and
// linear.dem, which one name reached on the file systems the cases were made on.
#include <string>

namespace tarvex {

// dir + "/" + name when that file exists; otherwise dir + "/" + the first entry of
// `dir` (in name order, so the choice doesn't depend on the directory's layout) whose
// name equals `name` ignoring ASCII case; otherwise dir + "/" + name, so that opening
// it fails as for any missing file.
std::string resolveIgnoringCase(const std::string& dir, const std::string& name);

}  // namespace tarvex
