// Keys of a prefix that are links. A registry that is written has none, so they become
// keys with what they led to at the time.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/system_registry.h"

namespace qvlink {

struct KeyLink {
    std::size_t line = 0;
    std::string key;    // with the root's short name, as the target
    std::string target; // empty: nowhere in the registry
    // Filled in by CopyLinks: why not, which a link to a key that isn't there needs not.
    bool isCopied = false;
    std::string why;
};

// A link to a link gets what that one leads to; a circle is not copied.
void CopyLinks(Registry &registry, std::vector<KeyLink> &links);

} // namespace qvlink
