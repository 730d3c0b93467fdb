#pragma once
// The program-wide environment: the installation directory (MainDir) and the four
// remembered directories. The desktop program and the batch tool share one instance,
// set up at start; every other part reads it.
#include <cstddef>
#include <string>
#include <vector>

#include "common/RememberedDirectories.h"

namespace tarvex {

// The longest line the environment files (start-up file, config.dat, launch
// request) may hold.
inline constexpr std::size_t kEnvironmentLineMax = 1023;

class Environment {
public:
    // The process-wide instance.
    static Environment& instance();

    // The installation directory, absolute and without a trailing '/'. Empty until
    // the start has read it.
    const std::string& mainDir() const { return mainDir_; }

    // Sets MainDir from the start-up file's first line. A relative directory is made
    // absolute against the current directory now, since the directory setters move
    // the current directory later and every path is formed from MainDir.
    void setMainDir(const std::string& installLine);

    // MainDir + "/" + relative, e.g. path("Demo") or path("config.dat").
    std::string path(const std::string& relative) const { return mainDir_ + "/" + relative; }
    std::string configDatPath() const { return path("config.dat"); }
    std::string launchRequestPath() const { return path("Tarvex.ini"); }
    std::string demoDirectory() const { return path("Demo"); }

    // The panel search path, in the order the directories are searched: pre-processor,
    // main program, post-processor, toolkit data. Pictures are named from these with the
    // prefixes "../bitmaps/" and "../help/".
    std::vector<std::string> panelSearchPath() const;

    RememberedDirectories& directories() { return directories_; }
    const RememberedDirectories& directories() const { return directories_; }

private:
    std::string mainDir_;
    RememberedDirectories directories_;
};

}  // namespace tarvex
