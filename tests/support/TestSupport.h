#pragma once
// Small helpers shared by the test folders: a scratch directory that removes
// itself, and whole-file reads and writes.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <system_error>
#include <unistd.h>

namespace tarvex::test {

class ScratchDir {
public:
    ScratchDir() {
        std::string pattern = (std::filesystem::temp_directory_path() / "tarvex-test-XXXXXX").string();
        if (char* made = mkdtemp(pattern.data())) path_ = made;
    }
    ~ScratchDir() {
        std::error_code ec;
        std::filesystem::remove_all(path_, ec);
    }
    ScratchDir(const ScratchDir&) = delete;
    ScratchDir& operator=(const ScratchDir&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::string file(const std::string& name) const { return (path_ / name).string(); }

private:
    std::filesystem::path path_;
};

// Runs a block with the process's current directory set to `dir`, restoring it after.
class CurrentDirGuard {
public:
    explicit CurrentDirGuard(const std::filesystem::path& dir) : saved_(std::filesystem::current_path()) {
        std::filesystem::current_path(dir);
    }
    ~CurrentDirGuard() {
        std::error_code ec;
        std::filesystem::current_path(saved_, ec);
    }
    CurrentDirGuard(const CurrentDirGuard&) = delete;
    CurrentDirGuard& operator=(const CurrentDirGuard&) = delete;

private:
    std::filesystem::path saved_;
};

// Sets an environment variable for the life of the object, restoring the
// former value (or its absence) after.
class EnvironmentValue {
public:
    EnvironmentValue(const char* name, const std::string& value) : name_(name) {
        if (const char* old = std::getenv(name)) old_ = old, had_ = true;
        ::setenv(name, value.c_str(), 1);
    }
    ~EnvironmentValue() {
        if (had_) ::setenv(name_, old_.c_str(), 1);
        else ::unsetenv(name_);
    }
    EnvironmentValue(const EnvironmentValue&) = delete;
    EnvironmentValue& operator=(const EnvironmentValue&) = delete;

private:
    const char* name_;
    std::string old_;
    bool had_ = false;
};

inline std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

inline void writeFile(const std::string& path, const std::string& content) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << content;
}

}  // namespace tarvex::test
