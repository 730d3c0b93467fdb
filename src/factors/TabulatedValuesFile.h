#pragma once
// Tabulated values files: the table of a Discrete, Uniform or LogUniform
// factor alone, as its definition panel loads and saves it.
//
// Text: the number of rows on the first line, then one row per line, the
// numbers separated by tabs in the stream's default six-digit format:
// value and weight for a Discrete point, left, right and weight for an
// interval of Uniform or LogUniform.
#include <iosfwd>
#include <string>
#include <vector>

namespace tarvex {

class Discrete;
class Uniform;

inline constexpr const char* kTabulatedOpenText = "Error opening tabulated values file";
inline constexpr const char* kTabulatedReadText = "Error reading tabulated values file";
inline constexpr const char* kTabulatedOpenSaveText = "Error opening saving file";
inline constexpr const char* kTabulatedWriteText = "Error writing tabulated values file";

// One row of the panel's table. A Discrete point uses `left` as its value;
// read from a file its `right` is left + 1, as for the default points.
struct TabulatedRow {
    double left = 0.0;
    double right = 1.0;
    double weight = 1.0;
};

enum class TabulatedKind { Points, Intervals };

// Rows of a factor's present table.
std::vector<TabulatedRow> tabulatedRows(const Discrete& factor);
std::vector<TabulatedRow> tabulatedRows(const Uniform& factor);

// Stream forms. The reader fills `rows` only on success; a missing or
// negative count, or fewer rows than counted, is a failure.
void writeTabulatedValues(std::ostream& out, TabulatedKind kind, const std::vector<TabulatedRow>& rows);
[[nodiscard]] int readTabulatedValues(std::istream& in, TabulatedKind kind, std::vector<TabulatedRow>& rows);

// File forms: 1 on success, otherwise 0 with one of the four texts above in
// `errorText`. Saving writes a new file beside the old one and puts it in its
// place only when complete, so a failed save leaves the old file as it was.
[[nodiscard]] int saveTabulatedValues(const std::string& path, TabulatedKind kind, const std::vector<TabulatedRow>& rows,
                        std::string& errorText);
[[nodiscard]] int loadTabulatedValues(const std::string& path, TabulatedKind kind, std::vector<TabulatedRow>& rows,
                        std::string& errorText);

} // namespace tarvex
