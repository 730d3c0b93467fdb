#pragma once
// Character sets of the name rules. Names are UTF-8 text, and the sets hold
// characters such as "£" and "ç" that take two bytes: a set is matched
// character by character, a valid UTF-8 sequence counting as one character and
// any other byte as one on its own.
#include <cstddef>
#include <string>
#include <string_view>

namespace tarvex {

// Length in bytes of the character that starts at text[pos].
std::size_t characterLength(std::string_view text, std::size_t pos);

// Whether the character `ch` is one of the characters of `set`.
bool isCharacterOf(std::string_view ch, std::string_view set);

// Whether the first character of `text` is in `set`; false for an empty text.
bool startsWithCharacterOf(std::string_view text, std::string_view set);

// Whether any character of `text` is in `set`.
bool containsCharacterOf(std::string_view text, std::string_view set);

// `text` with every character of `set` replaced by `by`.
std::string replaceCharactersOf(std::string_view text, std::string_view set, char by);

} // namespace tarvex
