#pragma once
// The rules for factor names.
#include <cstddef>
#include <string>

namespace tarvex {

// Text the panels show for a name that breaks the rules.
inline constexpr const char* kWrongFactorNameText =
    "Wrong factor name, The name must begin with a letter and can contain only numbers and letters.";
inline constexpr const char* kFactorNameTooLongText = "Wrong factor name, The name can hold at most 19 characters.";

// A name is read from a factor file by a line read into this many bytes, so a
// name there holds at most 19 characters.
inline constexpr std::size_t kFactorNameLineBytes = 20;
inline constexpr std::size_t kMaxFactorNameLength = kFactorNameLineBytes - 1;

// The characters no name may hold, as Latin-1 bytes ("£" is the single byte
// 0xA3), in their stored order; the last one is a blank. Names are compared
// byte by byte, so the two bytes of a UTF-8 "é" are not the Latin-1 "é".
extern const char kForbiddenNameCharacters[];

bool isForbiddenNameCharacter(unsigned char c);
// A name must not begin with a digit or a forbidden character and must not
// hold a forbidden character anywhere; an empty name is no name.
bool isValidFactorName(const std::string& name);
// Why a factor can't take `name`, or null when it can: a valid name that its
// factor file gives back unchanged, so also at most kMaxFactorNameLength bytes
// and no white space or other control character (the reader keeps the first
// word of the line).
const char* factorNameFault(const std::string& name);
// The panels strip leading and trailing blanks before testing a name.
std::string stripBlanks(const std::string& text);

} // namespace tarvex
