#pragma once
// Line reads of the engine's text readers, with the two behaviours their
// formats rely on.
#include <cstddef>
#include <ios>
#include <istream>
#include <locale>
#include <string>

namespace tarvex {

// A whole line into a buffer of `bufferSize` characters: at most
// bufferSize - 1 characters fit, and a longer line fails the stream (as
// istream::getline with a fixed buffer does). The line end is consumed, and a
// carriage return before it dropped.
[[nodiscard]] bool readBoundedLine(std::istream& in, std::string& line, std::size_t bufferSize);

// Takes at most `limit` characters, stopping after a line end (which counts
// among them and is not kept, nor a carriage return before it). What is left of a longer line stays in the
// stream. Fails the stream only at the end of the input before any character.
[[nodiscard]] bool takeLine(std::istream& in, std::string& line, std::size_t limit);

// Takes characters up to and including `delimiter`, at most `limit` of them.
[[nodiscard]] bool takeThrough(std::istream& in, char delimiter, std::size_t limit);

// Skips the rest of the current line, its line end included.
void finishLine(std::istream& in);

// Numbers in the engine's files are written and read the same way whatever
// locale the program runs in: the stream is given the classic locale for the
// life of this object, then its own back.
class ClassicNumbers {
public:
    explicit ClassicNumbers(std::ios_base& stream) : stream_(stream), saved_(stream.imbue(std::locale::classic())) {}
    ~ClassicNumbers() { stream_.imbue(saved_); }
    ClassicNumbers(const ClassicNumbers&) = delete;
    ClassicNumbers& operator=(const ClassicNumbers&) = delete;

private:
    std::ios_base& stream_;
    std::locale saved_;
};

} // namespace tarvex
