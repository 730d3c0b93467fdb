#include "panels/layer/SearchPath.h"

#include <filesystem>
#include <system_error>

namespace tarvex {

namespace fs = std::filesystem;

namespace {

std::vector<std::string>& pathList() {
    static std::vector<std::string> dirs;
    return dirs;
}

bool isFile(const fs::path& p) {
    std::error_code ec;
    return fs::is_regular_file(p, ec);
}

std::string findExact(const std::string& name) {
    if (name.empty()) return {};
    fs::path rel(name);
    if (rel.is_absolute()) return isFile(rel) ? rel.lexically_normal().string() : std::string();
    for (const std::string& dir : pathList()) {
        // "../bitmaps/x" must climb out of the directory itself, so the path is
        // normalised lexically rather than through symbolic links.
        fs::path candidate = (fs::path(dir) / rel).lexically_normal();
        if (isFile(candidate)) return candidate.string();
    }
    return {};
}

}  // namespace

void SearchPath::append(const std::string& directory) {
    if (!directory.empty()) pathList().push_back(directory);
}

void SearchPath::clear() { pathList().clear(); }

const std::vector<std::string>& SearchPath::directories() { return pathList(); }

std::string SearchPath::find(const std::string& name) { return findExact(name); }

std::string SearchPath::findPicture(const std::string& name) {
    std::string found = findExact(name);
    if (!found.empty()) return found;
    fs::path p(name);
    if (p.filename().empty()) return {};
    for (const char* ext : {".png", ".svg"}) {
        fs::path alt = p;
        alt.replace_extension(ext);
        if (alt == p) continue;
        found = findExact(alt.string());
        if (!found.empty()) return found;
    }
    return {};
}

}  // namespace tarvex
