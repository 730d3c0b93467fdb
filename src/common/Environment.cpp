#include "common/Environment.h"

#include <filesystem>
#include <system_error>

namespace tarvex {

Environment& Environment::instance() {
    static Environment environment;
    return environment;
}

void Environment::setMainDir(const std::string& installLine) {
    namespace fs = std::filesystem;
    std::string dir = installLine;
    if (!dir.empty() && dir.front() != '/') {
        std::error_code ec;
        const fs::path base = fs::current_path(ec);
        if (!ec) dir = (base / dir).lexically_normal().string();
    }
    while (dir.size() > 1 && dir.back() == '/') dir.pop_back();
    mainDir_ = dir;
}

std::vector<std::string> Environment::panelSearchPath() const {
    return {path("Preprocessor/PrepPanels"), path("Tarvex/TarvexPanels"), path("Postprocessor/VelsPanels"),
            path("ILOG")};
}

}  // namespace tarvex
