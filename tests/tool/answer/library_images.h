// Small libraries of both systems that hold lists, put together from the formats' definitions.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace libraries {

struct Resource {
    std::string type; // WIN_FILES
    std::uint32_t id;
    std::string bytes;
};

// `languages`: how often a list stands there; all but the first one's bytes are others.
std::string Dll(std::vector<Resource> const &resources, bool wide = true, int languages = 1);
std::string SharedLibrary(std::vector<Resource> const &resources, bool wide = true);

// Where in a Dll the section of the resources begins; the root directory is its begin.
constexpr std::size_t dllResourcesAt = 0x400;
// Where in a SharedLibrary the notes begin, one behind the other.
constexpr std::size_t notesAt = 0x200;

void Put(std::string &bytes, std::size_t at, std::uint64_t value, int width);

} // namespace libraries
