#include "factors/Factor.h"

#include <istream>
#include <ostream>

#include "factors/FactorName.h"
#include "common/TextLines.h"
#include "factors/OneLine.h"

namespace tarvex {

namespace {

// A note is read by a line read into 255 bytes.
constexpr std::size_t kNoteLineBytes = 255;
static_assert(Factor::kMaxNoteLength == kNoteLineBytes - 1);

// The first white-space delimited word of a line, as a "%s" scan takes it.
std::string firstWord(const std::string& line) {
    const char* blanks = " \t\n\v\f\r";
    const auto begin = line.find_first_not_of(blanks);
    if (begin == std::string::npos) return std::string();
    const auto end = line.find_first_of(blanks, begin);
    return line.substr(begin, end == std::string::npos ? std::string::npos : end - begin);
}

} // namespace

int Factor::setName(const std::string& newName) {
    if (const char* fault = factorNameFault(newName)) {
        errorText_ = fault;
        return 0;
    }
    name_ = newName;
    return 1;
}

int Factor::setNote(const std::string& text) {
    if (!fitsOneLine(text, kMaxNoteLength)) {
        errorText_ = kNoteTooLongText;
        return 0;
    }
    note_ = text;
    return 1;
}

void Factor::write(std::ostream& out) const {
    out << typeName_ << '\n' << name_ << '\n' << note_ << '\n' << status;
    writeData(out);
}

int Factor::read(std::istream& in) {
    std::string line;
    if (!readLineInBuffer(in, line, kFactorNameLineBytes)) return 0;
    const std::string word = firstWord(line);
    if (!isValidFactorName(word)) {
        in.setstate(std::ios::failbit);
        return 0;
    }
    std::string text;
    if (!readLineInBuffer(in, text, kNoteLineBytes)) return 0;
    int32_t st = 0;
    if (!(in >> st)) return 0;
    name_ = word;
    note_ = text;
    status = st;
    return readData(in);
}

void Factor::writeData(std::ostream& out) const {
    out << '\n';
}

int Factor::readData(std::istream& in) {
    return in.fail() ? 0 : 1;
}

} // namespace tarvex
