#pragma once
// "Save table" of the uncertainty panel: the statistics of one variable and
// the panel's sheet of points as a text file.
#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

namespace tarvex {

class UaStats;

inline constexpr const char* kCannotSaveFileText = "I cannot save the file";

// The text:
//   "Uncertainty analysis for var <name>", an empty line,
//   mean, std, square std (the variance), Tcheb and TTest by "%7.3g", each
//   behind its label, an empty line,
//   then every cell of `sheet` by "%20s" and a TAB, each row ended by LF.
void writeUaTable(std::ostream& out, const UaStats& stats, int32_t index,
                  const std::vector<std::vector<std::string>>& sheet);

// The same into `path`, replacing it only once all is written. 1, or 0 when
// the file could not be written (the caller shows kCannotSaveFileText) or
// the variable does not exist.
[[nodiscard]] int saveUaTable(const std::string& path, const UaStats& stats, int32_t index,
                              const std::vector<std::vector<std::string>>& sheet);

}  // namespace tarvex
