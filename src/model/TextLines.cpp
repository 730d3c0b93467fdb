#include "model/TextLines.h"

#include <limits>
#include <vector>

namespace tarvex {

bool readBoundedLine(std::istream& in, std::string& line, std::size_t bufferSize) {
    std::vector<char> buffer(bufferSize + 1, '\0');
    in.getline(buffer.data(), static_cast<std::streamsize>(bufferSize));
    line.assign(buffer.data());
    // Files that went through Windows end their lines with "\r\n".
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return !in.fail();
}

bool takeLine(std::istream& in, std::string& line, std::size_t limit) {
    line.clear();
    std::size_t taken = 0;
    while (taken < limit) {
        const int c = in.get();
        if (c == std::char_traits<char>::eof()) {
            // Like a C line read: the end of input is an error only when
            // nothing at all could be taken.
            if (taken > 0) in.clear(in.rdstate() & ~std::ios::failbit);
            break;
        }
        ++taken;
        if (c == '\n') break;
        line += static_cast<char>(c);
    }
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return !in.fail();
}

bool takeThrough(std::istream& in, char delimiter, std::size_t limit) {
    std::size_t taken = 0;
    while (taken < limit) {
        const int c = in.get();
        if (c == std::char_traits<char>::eof()) break;
        ++taken;
        if (c == delimiter) break;
    }
    return !in.fail();
}

void finishLine(std::istream& in) { in.ignore(std::numeric_limits<std::streamsize>::max(), '\n'); }

} // namespace tarvex
