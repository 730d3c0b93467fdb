#pragma once
// The optional launch request MainDir/Tarvex.ini, which lets another program start
// Tarvex on prepared files. Each line may begin with one of six labels; after the label
// blanks are skipped and the rest of the line, inner blanks included, is its value.
//
//   Tarvex sample file:          a saved sample, loaded at once
//   External sample file:        an external sample, imported at once
//   Tarvex configuration file:   a post-processor file, opened at once
//   Internal model:              remembered, applied after the last line
//   External model executable:   remembered ("Excel Application" for a spreadsheet)
//   External model output file:  remembered
//
// This class only parses the file; the main panel acts on the request.
#include <string>
#include <vector>

namespace tarvex {

class LaunchRequest {
public:
    // The immediate kinds, acted on at the line that holds them.
    enum class Kind { TarvexSampleFile, ExternalSampleFile, TarvexConfigurationFile };
    struct Entry {
        Kind kind;
        std::string path;
        bool operator==(const Entry&) const = default;
    };

    // The executable value that stands for the spreadsheet application.
    static constexpr const char* kSpreadsheetExecutable = "Excel Application";

    // The immediate entries in file order.
    std::vector<Entry> immediate;
    // The remembered values; empty when the file gives none. A later line with the
    // same label replaces an earlier value; a line with an empty value changes nothing.
    std::string internalModel;
    std::string externalModelExecutable;
    std::string externalModelOutputFile;

    // Parses `path` (normally Environment::launchRequestPath()). Returns 0 when the
    // file can't be opened or its first line can't be read: there is no request and
    // the program starts empty. Otherwise returns 1 with the request filled in.
    // Reading stops at a line longer than 1023 characters, which can't be read whole:
    // what came before it stands, it and the lines after it are ignored.
    [[nodiscard]] int read(const std::string& path);

    // Applies one line: returns 1 if it began with a label and had a value.
    int parseLine(const std::string& line);

    bool usesSpreadsheet() const { return externalModelExecutable == kSpreadsheetExecutable; }
    bool empty() const {
        return immediate.empty() && internalModel.empty() && externalModelExecutable.empty() &&
               externalModelOutputFile.empty();
    }
};

}  // namespace tarvex
