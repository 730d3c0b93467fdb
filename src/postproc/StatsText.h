#pragma once
// Number and line conventions shared by the post-processor file's writers and
// readers.
#include <cmath>
#include <cstddef>
#include <ios>
#include <istream>
#include <ostream>
#include <string>
#include <string_view>

#include "model/NameCharacters.h"

namespace tarvex {

// Texts of the post-processor file: selections, output names, the path line,
// record names, group names.
inline constexpr std::size_t kVelsTextMax = 4095;
// Names of the uncertainty block.
inline constexpr std::size_t kUaNameMax = 999;

// A double at the stream's six digits, a non-finite one as "nan", "inf" or
// "-inf": a NaN's sign is dropped, since the readers take "nan" only.
inline void writeValue(std::ostream& out, double value) {
    if (std::isnan(value)) {
        out << "nan";
        return;
    }
    out << value;
}

// A text as its line of the file can hold it: up to its first line break,
// and no longer than `maxChars` bytes, not cutting a character in two. The
// readers take back exactly this.
inline std::string fileLine(std::string_view text, std::size_t maxChars) {
    const std::size_t lineEnd = text.find_first_of("\r\n");
    if (lineEnd != std::string_view::npos) text = text.substr(0, lineEnd);
    std::size_t end = 0;
    while (end < text.size()) {
        const std::size_t next = end + characterLength(text, end);
        if (next > maxChars) break;
        end = next;
    }
    return std::string(text.substr(0, end));
}

// Takes an empty line ("\n" or "\r\n") if one comes next.
inline bool takeEmptyLine(std::istream& in) {
    if (in.peek() == '\r') {
        in.get();
        if (in.peek() == '\n') {
            in.get();
            return true;
        }
        in.unget();
        return false;
    }
    if (in.peek() != '\n') return false;
    in.get();
    return true;
}

// Puts the stream into the default number format (decimal, general, six
// digits) for the life of this object, then back as the caller had it.
class SixDigits {
public:
    explicit SixDigits(std::ostream& out) : out_(out), flags_(out.flags()), precision_(out.precision()) {
        out.flags(std::ios::dec | std::ios::skipws);
        out.precision(6);
    }
    ~SixDigits() {
        out_.flags(flags_);
        out_.precision(precision_);
    }
    SixDigits(const SixDigits&) = delete;
    SixDigits& operator=(const SixDigits&) = delete;

private:
    std::ostream& out_;
    std::ios::fmtflags flags_;
    std::streamsize precision_;
};

}  // namespace tarvex
