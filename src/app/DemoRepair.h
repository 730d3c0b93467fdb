#pragma once
// The first-start repair of the demonstration files. They are delivered with the
// placeholder MAINDIR in their path lines ("[MAINDIR]/Demo/ishigami.spc"); the repair
// puts the installation directory in its place ("/opt/tarvex/Demo/ishigami.spc").
#include <array>
#include <string>

namespace tarvex {

class DemoRepair {
public:
    // The cases in the order they are repaired. The files ship under exactly these
    // names; the demo menu's case names differ in case and are resolved inside Demo/.
    static constexpr std::array<const char*, 7> kCaseNames = {
        "Ishigami", "linear", "levelE", "sobolG0", "sobolG1", "sobolG2", "sobolG3"};

    // Repairs all seven files below mainDir + "/Demo". Nothing is reported: a
    // case that can't be repaired stays as it was.
    static void repairAll(const std::string& mainDir);

    // Repairs mainDir/Demo/<caseName>.dem through a temporary file beside it.
    // A missing .dem file becomes an empty one. An existing file that can't be read,
    // or a temporary file that can't be written in full, leaves the .dem file
    // untouched (and no temporary file behind). Returns 1 when the .dem file was
    // replaced.
    [[nodiscard]] static int repairFile(const std::string& mainDir, const std::string& caseName);

    // One line: a line holding MAINDIR becomes mainDir followed by whatever stands
    // behind its first ']'. Other lines, and a placeholder line without any ']',
    // are kept as they are.
    static std::string repairLine(const std::string& line, const std::string& mainDir);
};

}  // namespace tarvex
