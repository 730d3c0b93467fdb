#pragma once
// The post-processor file (.spc): the Prep record, the Model record and the
// Vels record, one after the other. Reading fills temporaries and moves them
// into the caller's three parts only when all three were read.
#include <iosfwd>
#include <string>

namespace tarvex {

class ModelConfiguration;
class PrepConfiguration;
class VelsConfiguration;

inline constexpr const char* kWriteVelsFileErrorText =
    "Error trying to write to the Statistical post processor file.\nIs it locked by another application?";
inline constexpr const char* kReadVelsFileErrorText = "  Error reading UA/SA file";
inline constexpr const char* kVelsFileUnwritableText = "Can't write on selected file.\n";
inline constexpr const char* kVelsFileChooserTitle = "Output file for Vels configuration";
inline constexpr const char* kVelsFilePattern = "*.spc";
inline constexpr const char* kVelsFileFilter = "*.spc (vels's files)";

void writePostprocessorText(std::ostream& out, const PrepConfiguration& prep, const ModelConfiguration& model,
                            const VelsConfiguration& vels);
// 1, or 0 with the stream failed and the three parts as they were.
[[nodiscard]] int readPostprocessorText(std::istream& in, PrepConfiguration& prep, ModelConfiguration& model,
                                        VelsConfiguration& vels);

// The file at `path`, replaced only once everything is written. 1, or 0
// when it could not be written (the caller shows kWriteVelsFileErrorText).
[[nodiscard]] int savePostprocessorFile(const std::string& path, const PrepConfiguration& prep,
                                        const ModelConfiguration& model, const VelsConfiguration& vels);
// 1, or 0 for a file that is missing or damaged anywhere (the caller shows
// kReadVelsFileErrorText); the three parts are then as they were.
[[nodiscard]] int loadPostprocessorFile(const std::string& path, PrepConfiguration& prep, ModelConfiguration& model,
                                        VelsConfiguration& vels);

}  // namespace tarvex
