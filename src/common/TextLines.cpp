#include "common/TextLines.h"

#include <cstring>
#include <limits>

namespace tarvex {

namespace {

void dropCarriageReturn(std::string& line) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
}

}  // namespace

bool readLineInBuffer(std::istream& in, std::string& line, std::size_t bufferSize) {
    line.clear();
    if (bufferSize < 2) {
        // No character fits: nothing could ever be read.
        in.setstate(std::ios::failbit);
        return false;
    }
    line.resize(bufferSize, '\0');
    in.getline(line.data(), static_cast<std::streamsize>(bufferSize));
    line.resize(std::strlen(line.c_str()));
    dropCarriageReturn(line);
    return !in.fail();
}

bool readLineUpTo(std::istream& in, std::string& line, std::size_t maxChars) {
    // Room for the longest line and its carriage return: a line that fills
    // it without one is a character too long.
    const bool ok = readLineInBuffer(in, line, maxChars + 2);
    if (line.size() > maxChars) {
        line.resize(maxChars);
        in.setstate(std::ios::failbit);
        return false;
    }
    return ok;
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
    dropCarriageReturn(line);
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

void skipLine(std::istream& in) { in.ignore(std::numeric_limits<std::streamsize>::max(), '\n'); }

bool passLine(std::istream& in) {
    skipLine(in);
    if (in.gcount() == 0) in.setstate(std::ios::failbit);
    return !in.fail();
}

bool countFitsInput(std::istream& in, int64_t count, int64_t bytesEach) {
    if (count < 0) return false;
    if (count == 0) return true;
    if (!in) return false;
    std::streambuf* buffer = in.rdbuf();
    if (buffer == nullptr) return false;
    const std::streampos here = buffer->pubseekoff(0, std::ios::cur, std::ios::in);
    if (here == std::streampos(-1)) return true;
    const std::streampos end = buffer->pubseekoff(0, std::ios::end, std::ios::in);
    buffer->pubseekpos(here, std::ios::in);
    if (end == std::streampos(-1)) return true;
    const int64_t left = static_cast<int64_t>(end - here);
    const int64_t each = bytesEach < 1 ? 1 : bytesEach;
    return count <= left / each;
}

}  // namespace tarvex
