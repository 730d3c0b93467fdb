#include "app/CaseInsensitivePath.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <system_error>

namespace tarvex {

namespace {

bool equalIgnoringCase(const std::string& a, const std::string& b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
           });
}

}  // namespace

std::string resolveIgnoringCase(const std::string& dir, const std::string& name) {
    namespace fs = std::filesystem;
    const std::string exact = dir + "/" + name;
    std::error_code ec;
    if (fs::exists(exact, ec)) return exact;

    std::string best;
    for (fs::directory_iterator it(dir, ec), end; !ec && it != end; it.increment(ec)) {
        const std::string candidate = it->path().filename().string();
        if (equalIgnoringCase(candidate, name) && (best.empty() || candidate < best)) best = candidate;
    }
    return best.empty() ? exact : dir + "/" + best;
}

}  // namespace tarvex
