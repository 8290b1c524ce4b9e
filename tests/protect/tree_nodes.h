// Looks into a tree by the spelling of its components, past the tree's own search.
#pragma once

#include "protect_tree.h"

#include <string>
#include <vector>

using Names = std::vector<std::string>;

// Null if there is no such node.
inline ProtectNode const *NodeAt(ProtectNode const &root, Names const &names) {
    ProtectNode const *at = &root;
    for (std::string const &name : names) {
        ProtectNode const *next = nullptr;
        for (auto const &[key, child] : at->children)
            if (key.Text() == name)
                next = &child;
        if (!next)
            return nullptr;
        at = next;
    }
    return at;
}

// How many nodes there are below a node.
inline std::size_t CountBelow(ProtectNode const &node) {
    std::size_t count = 0;
    for (auto const &[key, child] : node.children)
        count += 1 + CountBelow(child);
    return count;
}

// Asks without marking.
inline bool Has(ProtectNode &root, std::string const &path) {
    std::uint32_t data = 0;
    return ProtectFind(root, path.c_str(), &data);
}

inline bool Ask(ProtectNode &root, std::string const &path) {
    return ProtectFind(root, path.c_str(), nullptr);
}
