#pragma once
// The start-up file ./Tarvex.cfg: two lines, the installation directory and the
// installation mark. The mark is 0 until the first start has put the installation
// directory into the demonstration files, and non-zero ever after.
#include <string>

namespace tarvex {

class StartupFile {
public:
    // The name of the file, looked up in the process's current directory.
    static constexpr const char* kFileName = "Tarvex.cfg";

    // What the user is told when the file can't be used. It names the program's old
    // configuration file, and stays so: users and scripts know the text.
    static constexpr const char* kOpenErrorMessage =
        "    Error opening PrepVels configuration file.\n"
        "Can't open PrepVels.cfg in the current directory.\n"
        "\t Terminating.";

    // Line 1 exactly as read (without the line end).
    std::string installLine;
    // Line 2; 0 when it is missing or doesn't parse as a decimal integer.
    int mark = 0;
    const std::string& errorText() const { return errorText_; }

    // Reads both lines. Returns 0 when the file can't be opened, and also when its
    // first line is missing, empty or longer than 1023 characters: such a file names
    // no installation, and going on with it would repair and rewrite files below a
    // wrong directory (an empty one would mean the file system's root). The file is
    // then left as it is.
    [[nodiscard]] int read(const std::string& path);

    // Truncates and rewrites the file: installLine, newline, mark, newline.
    // Returns 0 when it can't be written; the start goes on regardless.
    [[nodiscard]] int write(const std::string& path) const;

    // The mark written back at each start: 0 becomes 1, any other value stays.
    static int markAfterStart(int mark) { return mark == 0 ? 1 : mark; }

private:
    std::string errorText_ = "No errors";
};

}  // namespace tarvex
