#include "fold.h"

std::uint32_t NameHash(std::string_view name) {
    std::uint32_t hash = 0;
    for (char const c : name) {
        int value = static_cast<signed char>(c);
        if (value >= 'a' && value <= 'z')
            value -= 32;
        hash = (hash << 2) ^ static_cast<std::uint32_t>(value);
    }
    return hash;
}

std::uint32_t FoldHash(std::string_view name) {
    std::uint64_t hash = name.size();
    for (char const c : name)
        hash = (hash ^ static_cast<unsigned char>(FoldCase(c))) * 0x9e3779b97f4a7c15u;
    return static_cast<std::uint32_t>(hash >> 32);
}

bool EqualNoCase(char const *left, std::string_view right) {
    for (char const c : right) {
        if (FoldCase(*left) != FoldCase(c) || !*left)
            return false;
        ++left;
    }
    return *left == '\0';
}
