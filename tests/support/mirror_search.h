// Searches, told step by step over the plain graph.
#pragma once

#include "mirror.h"

#include <cstdint>
#include <string>

namespace mirror {

// By the matcher's three ways, or by the form for extensions.
bool NameFits(std::string const &pattern, std::string const &name);

// A search over all objects.
class ObjectSearch {
public:
    ObjectSearch(std::string const &wanted, std::uint32_t types) : pattern(wanted), mask(types) {}
    // The next match, or 0 at the end, which stays the end.
    Id Step(Graph const &graph);

private:
    std::string pattern;
    std::uint32_t mask;
    std::uint64_t cursor = 0;
    bool ended = false;
};

// A walk over one object's links.
class LinkSearch {
public:
    LinkSearch(Id walked, bool incoming, std::uint32_t types)
        : object(walked), isIncoming(incoming), mask(types) {}
    // The next match, or 0 at the end of the list as it is now. The object exists.
    Id Step(Graph const &graph);
    Id Object() const { return object; }
    bool IsIncoming() const { return isIncoming; }

private:
    Id object;
    bool isIncoming;
    std::uint32_t mask;
    std::size_t next = 0; // index behind the entry last returned
};

} // namespace mirror
