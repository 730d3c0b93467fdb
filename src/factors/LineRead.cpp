#include "factors/LineRead.h"

#include <limits>
#include <vector>

namespace tarvex {

bool readLine(std::istream& in, std::string& line, std::size_t bufferBytes) {
    line.clear();
    if (bufferBytes < 2) {
        in.setstate(std::ios::failbit);
        return false;
    }
    std::vector<char> buffer(bufferBytes, '\0');
    in.getline(buffer.data(), static_cast<std::streamsize>(bufferBytes));
    // The text ends at the first NUL, as it would in a character buffer.
    line = buffer.data();
    if (in.fail()) return false;
    dropCarriageReturns(line);
    return true;
}

void dropCarriageReturns(std::string& line) {
    while (!line.empty() && line.back() == '\r') line.pop_back();
}

void skipLine(std::istream& in) {
    in.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
}

} // namespace tarvex
