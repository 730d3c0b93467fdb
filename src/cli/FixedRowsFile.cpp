#include "cli/FixedRowsFile.h"

#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace tarvex::cli {

namespace {

// The whole word one finite number, as strtod reads it.
bool parseValue(const std::string& word, double& value) {
    errno = 0;
    char* end = nullptr;
    value = std::strtod(word.c_str(), &end);
    return end != word.c_str() && *end == '\0' && errno != ERANGE && std::isfinite(value);
}

}  // namespace

int readFixedRows(const std::string& path, int32_t width, std::vector<std::vector<double>>& rows,
                  std::string& errorText) {
    rows.clear();
    std::ifstream in(path);
    if (!in) {
        errorText = "Error opening rows file " + path;
        return 0;
    }
    std::string line;
    long number = 0;
    while (std::getline(in, line)) {
        ++number;
        const std::size_t first = line.find_first_not_of(" \t\r");
        if (first == std::string::npos || line[first] == '#') continue;
        std::istringstream words(line);
        std::vector<double> row;
        std::string word;
        while (words >> word) {
            double value = 0.0;
            if (!parseValue(word, value)) {
                errorText = "Error reading rows file " + path + ": line " + std::to_string(number) + ": \"" + word +
                            "\" is not a number";
                rows.clear();
                return 0;
            }
            row.push_back(value);
        }
        if (static_cast<int64_t>(row.size()) != width) {
            errorText = "Error reading rows file " + path + ": line " + std::to_string(number) + " holds " +
                        std::to_string(row.size()) + " values for " + std::to_string(width) + " factors";
            rows.clear();
            return 0;
        }
        rows.push_back(std::move(row));
    }
    if (in.bad()) {
        errorText = "Error reading rows file " + path;
        rows.clear();
        return 0;
    }
    return 1;
}

}  // namespace tarvex::cli
