#pragma once
// Factor files (.fac) on disk, and reading a factor list without risking the
// caller's own.
#include <iosfwd>
#include <string>

namespace tarvex {

class FactorList;

inline constexpr const char* kFactorFileOpenText = "Error opening factors file";
inline constexpr const char* kFactorFileOutputText = "Error opening file for output";
inline constexpr const char* kFactorFileWriteText = "Error writing output file";
inline constexpr const char* kFactorFileReadText = "Error reading factors file";

// Reads a factor list from the stream into a temporary list and, on success
// only, puts it in place of `list` (whose source text stays). On failure
// `list` is as it was and 0 is returned; the stream is in its fail state.
[[nodiscard]] int readFactorListInto(std::istream& in, FactorList& list);

// Loads a factor file the same way. On success the list's source text becomes
// the path. On failure `errorText` holds kFactorFileOpenText or
// kFactorFileReadText, and `list` is unchanged; callers that must reset their
// list on failure clear it themselves.
[[nodiscard]] int loadFactorFile(const std::string& path, FactorList& list, std::string& errorText);

// Saves the list. The file is put in place only once written whole, so a
// failed save leaves an existing file intact. Texts: kFactorFileOutputText
// when the file can't be opened, kFactorFileWriteText when writing fails.
[[nodiscard]] int saveFactorFile(const std::string& path, const FactorList& list, std::string& errorText);

} // namespace tarvex
