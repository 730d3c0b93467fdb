#pragma once
// The four directories the file choosers start in, remembered between runs in
// config.dat. Setting one also makes it the process's current directory, so that
// the current directory follows the user from chooser to chooser and paths typed
// relative are resolved against it.
#include <array>
#include <string>

namespace tarvex {

class RememberedDirectories {
public:
    // Also the line order of config.dat.
    enum Which { Prep = 0, Vels = 1, Model = 2, ModelOutput = 3 };
    static constexpr int kCount = 4;

    // The value, empty while it is null. A value that was set is never empty.
    const std::string& get(Which which) const { return values_[which]; }
    bool isSet(Which which) const { return !values_[which].empty(); }

    // Makes `dir` the process's current directory first. If that fails (an empty
    // text, a file, a directory that no longer exists) nothing more happens and the
    // old value stays; returns 0. Otherwise the value becomes `dir`; returns 1.
    [[nodiscard]] int set(Which which, const std::string& dir);

    // Clears a value without touching the current directory.
    void clear(Which which) { values_[which].clear(); }

    const std::string& prepDirectory() const { return get(Prep); }
    const std::string& velsDirectory() const { return get(Vels); }
    const std::string& modelDirectory() const { return get(Model); }
    const std::string& modelOutputDirectory() const { return get(ModelOutput); }
    [[nodiscard]] int setPrepDirectory(const std::string& dir) { return set(Prep, dir); }
    [[nodiscard]] int setVelsDirectory(const std::string& dir) { return set(Vels, dir); }
    [[nodiscard]] int setModelDirectory(const std::string& dir) { return set(Model, dir); }
    [[nodiscard]] int setModelOutputDirectory(const std::string& dir) { return set(ModelOutput, dir); }

private:
    std::array<std::string, kCount> values_;
};

}  // namespace tarvex
