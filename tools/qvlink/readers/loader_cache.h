// Reads the cache of the GNU loader (ld.so.cache), which knows libraries by name.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "readers/byte_source.h"

namespace qvlink {

struct CachedLibrary {
    std::string path;
    std::string capability; // folder below glibc-hwcaps, "x86-64-v3"; empty for all machines
};

// The libraries of each name, in the cache's order. Entries for machines of older kinds
// of capabilities, and those that lead out of the cache, are left out. A cache of another
// format gives nothing.
using LoaderCache = std::unordered_map<std::string, std::vector<CachedLibrary>>;
LoaderCache ReadLoaderCache(ByteSource &source);

} // namespace qvlink
