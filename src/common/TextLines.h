#pragma once
// Line and count reading shared by every text reader of the engine.
//
// Two length rules meet in our files, and each has its own name so that a
// reader says which one it relies on:
//  - readLineInBuffer: a line read into a character buffer of `bufferSize`
//    bytes keeps at most bufferSize - 1 characters (the carriage return of a
//    "\r\n" line end among them); a longer line fails.
//  - readLineUpTo: a line of at most `maxChars` characters, its carriage
//    return not counted; a longer line fails.
// Both leave a failed stream failed, so that every later read fails too, and
// both fail at the end of the input when nothing at all is left.
#include <cstddef>
#include <cstdint>
#include <ios>
#include <istream>
#include <locale>
#include <string>

namespace tarvex {

// A whole line as a read into a buffer of `bufferSize` bytes would take it:
// text after a NUL byte is not kept, one carriage return before the line end
// is dropped. On a line that is too long, `line` holds the characters that
// fitted and the rest of the line stays in the (failed) stream.
[[nodiscard]] bool readLineInBuffer(std::istream& in, std::string& line, std::size_t bufferSize);

// A whole line of at most `maxChars` characters, one carriage return before
// the line end dropped. On a longer line, `line` holds its first maxChars
// characters and the stream is failed. Memory stays bounded by maxChars
// whatever the input holds.
[[nodiscard]] bool readLineUpTo(std::istream& in, std::string& line, std::size_t maxChars);

// Takes at most `limit` characters, stopping after a line end (which counts
// among them and is not kept, nor a carriage return before it). What is left
// of a longer line stays in the stream. Fails the stream only at the end of
// the input before any character.
bool takeLine(std::istream& in, std::string& line, std::size_t limit);

// Takes characters up to and including `delimiter`, at most `limit` of them.
bool takeThrough(std::istream& in, char delimiter, std::size_t limit);

// Skips the rest of the current line, its line end included. Reaching the
// end of the input here is not a failure.
void skipLine(std::istream& in);

// Reads away one whole line as a line read that keeps nothing: like skipLine,
// but it fails the stream at the end of the input when nothing is left.
[[nodiscard]] bool passLine(std::istream& in);

// Whether `count` items of at least `bytesEach` bytes of text each can still
// follow in the input. Readers check an announced count with it before they
// size anything from it, so that a file claiming two billion entries costs
// nothing. A stream that cannot tell how much is left (a pipe) passes: its
// readers must grow with what they actually read.
[[nodiscard]] bool countFitsInput(std::istream& in, int64_t count, int64_t bytesEach);

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

}  // namespace tarvex
