// The text of database paths, taken apart.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

constexpr std::size_t PathBufferSize = 1000; // of every path, its terminator included
constexpr std::size_t MostPathNames = PathBufferSize / 2;

// "C:\a\b.txt" falls into "C:", "\a\" and the leaf "b.txt". Slashes separate too.
struct PathParts {
    explicit PathParts(std::string_view path) {
        std::size_t const driveSize = path.size() > 1 && path[1] == ':' ? 2 : 0;
        std::size_t const separator = path.find_last_of("\\/");
        std::size_t const leafAt =
            separator == path.npos || separator < driveSize ? driveSize : separator + 1;
        parent = path.substr(0, leafAt);
        leaf = path.substr(leafAt);
    }

    std::string_view parent; // drive and directory, up to and with the last separator
    std::string_view leaf;   // name and extension
};

inline void StripOneBackslash(std::string &text) {
    if (!text.empty() && text.back() == '\\')
        text.pop_back();
}
