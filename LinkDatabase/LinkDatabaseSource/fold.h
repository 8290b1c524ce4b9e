// Names without regard to case: the hashes and comparisons of the database.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/winapi.h"

// The hash that the name index is told in: two bits a character, so that only the last
// sixteen characters reach it. ASCII letters count as upper case, and characters above
// 127 come in negative.
std::uint32_t NameHash(std::string_view name);

// A hash of the whole text, blind to ASCII case, for the indexes in memory.
std::uint32_t FoldHash(std::string_view name);

inline bool EqualNoCase(char const *left, char const *right) {
    return win::_stricmp(left, right) == 0;
}

// The same for a text that isn't terminated where it ends.
bool EqualNoCase(char const *left, std::string_view right);

inline char FoldCase(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }
