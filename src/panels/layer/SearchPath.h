#pragma once
// The panel search path: the directories in which panel files, pictures and help pages
// are looked up by relative name ("PMainPanel.ui", "../bitmaps/oleagg.gif"), in the
// order they were appended. One path for the whole program, like the display it
// belongs to.
#include <string>
#include <vector>

namespace tarvex {

class SearchPath {
public:
    static void append(const std::string& directory);
    static void clear();
    static const std::vector<std::string>& directories();

    // The first existing regular file `name` resolves to, tried against each directory
    // in order; an absolute name is taken as it is. Empty when none exists.
    static std::string find(const std::string& name);

    // As find(), and when nothing exists under the name itself, the same stem with
    // ".png" and then ".svg": the pictures we ship are drawn for this program and
    // need not be in the format their historical names carry.
    static std::string findPicture(const std::string& name);
};

}  // namespace tarvex
