#include "app/BoundedLine.h"

namespace tarvex::environment {

bool readBoundedLine(std::istream& in, std::string& line, std::size_t maxChars) {
    if (!std::getline(in, line)) return false;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.size() > maxChars) {
        line.resize(maxChars);
        in.setstate(std::ios::failbit);
        return false;
    }
    return true;
}

}  // namespace tarvex::environment
