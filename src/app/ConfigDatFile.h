#pragma once
// config.dat in the installation directory: the four remembered directories, one a
// line in the order Prep, Vels, Model, ModelOutput, a null value as an empty line,
// and one more empty line at the end.
//
// An object of this class reads the file when it is constructed and rewrites it when
// it is destroyed. Every project holds one, so the file is read when a project is
// made and written when it goes, the temporary project of a load included.
#include <string>

#include "common/Environment.h"

namespace tarvex {

class ConfigDatFile {
public:
    // Reads environment.configDatPath() into the environment's directories.
    explicit ConfigDatFile(Environment& environment = Environment::instance());
    // A copy reads nothing; it writes the file again when it goes, like every holder.
    ConfigDatFile(const ConfigDatFile&) = default;
    ConfigDatFile& operator=(const ConfigDatFile&) = default;
    // Rewrites the file from the environment's directories.
    ~ConfigDatFile();

    // Reads `path` if it exists: each line read is passed to its directory's setter,
    // which changes the current directory, so afterwards the current directory is the
    // last listed directory that exists. A directory that no longer exists (or an
    // empty line) leaves its value as it was; a file of fewer lines sets what is there.
    // A line longer than 1023 characters can't be read: it and the lines after it are
    // not applied. Returns 0 when the file is absent or can't be opened.
    [[nodiscard]] static int read(const std::string& path, RememberedDirectories& directories);

    // Truncates and rewrites `path`. Returns 0 on a write error, which callers ignore.
    [[nodiscard]] static int write(const std::string& path, const RememberedDirectories& directories);

private:
    Environment* environment_;
};

}  // namespace tarvex
