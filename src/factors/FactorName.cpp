#include "factors/FactorName.h"

#include <cstring>

namespace tarvex {

const char kForbiddenNameCharacters[] =
    "|\\!\"\xA3$%&/()=?'^\xEC\xE8\xE9[]+*\xE7\xF2@\xE0\xB0#\xF9\xA7;,:._- ";

bool isForbiddenNameCharacter(unsigned char c) {
    if (c == '\0') return false;
    return std::memchr(kForbiddenNameCharacters, c, sizeof kForbiddenNameCharacters - 1) != nullptr;
}

bool isValidFactorName(const std::string& name) {
    if (name.empty()) return false;
    const unsigned char first = static_cast<unsigned char>(name[0]);
    if (first >= '0' && first <= '9') return false;
    for (char c : name) {
        if (isForbiddenNameCharacter(static_cast<unsigned char>(c))) return false;
    }
    return true;
}

const char* factorNameFault(const std::string& name) {
    if (name.size() > kMaxFactorNameLength) return kFactorNameTooLongText;
    for (char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte == 0x7F) return kWrongFactorNameText;
    }
    return isValidFactorName(name) ? nullptr : kWrongFactorNameText;
}

std::string stripBlanks(const std::string& text) {
    const auto begin = text.find_first_not_of(' ');
    if (begin == std::string::npos) return std::string();
    const auto end = text.find_last_not_of(' ');
    return text.substr(begin, end - begin + 1);
}

} // namespace tarvex
