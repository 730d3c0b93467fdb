#pragma once
// The runs of a fixed sample, typed into a text file rather than into the
// panel's sheet: one run per line, one value per factor in list order,
// separated by blanks or tabs. Empty lines and lines starting with '#' are
// skipped, so that a file can carry a header of factor names.
#include <cstdint>
#include <string>
#include <vector>

namespace tarvex::cli {

// 1 with `rows` filled; 0 with `errorText` naming the file and the line
// that is wrong (a value that is no finite number, or a count of values
// other than `width`). `rows` is empty after a failure.
[[nodiscard]] int readFixedRows(const std::string& path, int32_t width, std::vector<std::vector<double>>& rows,
                                std::string& errorText);

}  // namespace tarvex::cli
