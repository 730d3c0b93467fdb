#include "model/NameCharacters.h"

namespace tarvex {

std::size_t characterLength(std::string_view text, std::size_t pos) {
    const auto lead = static_cast<unsigned char>(text[pos]);
    std::size_t length = 1;
    if (lead >= 0xC2 && lead <= 0xDF) length = 2;
    else if (lead >= 0xE0 && lead <= 0xEF) length = 3;
    else if (lead >= 0xF0 && lead <= 0xF4) length = 4;
    if (pos + length > text.size()) return 1;
    for (std::size_t i = 1; i < length; ++i)
        if ((static_cast<unsigned char>(text[pos + i]) & 0xC0) != 0x80) return 1;
    return length;
}

bool isCharacterOf(std::string_view ch, std::string_view set) {
    for (std::size_t pos = 0; pos < set.size();) {
        const std::size_t length = characterLength(set, pos);
        if (set.substr(pos, length) == ch) return true;
        pos += length;
    }
    return false;
}

bool startsWithCharacterOf(std::string_view text, std::string_view set) {
    if (text.empty()) return false;
    return isCharacterOf(text.substr(0, characterLength(text, 0)), set);
}

bool containsCharacterOf(std::string_view text, std::string_view set) {
    for (std::size_t pos = 0; pos < text.size();) {
        const std::size_t length = characterLength(text, pos);
        if (isCharacterOf(text.substr(pos, length), set)) return true;
        pos += length;
    }
    return false;
}

std::string replaceCharactersOf(std::string_view text, std::string_view set, char by) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t pos = 0; pos < text.size();) {
        const std::size_t length = characterLength(text, pos);
        const std::string_view ch = text.substr(pos, length);
        if (isCharacterOf(ch, set)) out += by;
        else out += ch;
        pos += length;
    }
    return out;
}

} // namespace tarvex
