// Registry keys by their names, as a capture gathers them.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lists/line_filter.h"

namespace qvlink {

// Below 0, 0, above 0; the case of ASCII letters makes no difference.
struct NameBefore {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const;
};

struct Key {
    std::map<std::string, std::unique_ptr<Key>, NameBefore> below;
    // For a key that is a link: where it leads, as a list writes it, or as the system does
    // if that is nowhere in the tree.
    std::string link;

    // The key of this name, made if need be.
    Key &At(std::string_view name);
};

constexpr std::size_t deepestKey = 512; // as deep as the system's own

class KeyTree {
public:
    Key machine; // HKLM
    Key user;    // HKCU

    // The key below a root that is to hold a path; null if that is too deep.
    static Key *Make(Key &root, std::string_view path);
    // By a list's line, through links; null if there is none.
    Key const *Find(std::string_view line) const { return Find(line, longestChain); }

private:
    static constexpr int longestChain = 8; // of links that lead to links
    Key const *Find(std::string_view line, int chain) const;
};

// The list's form of a path that begins with \Registry\Machine or \Registry and the root
// of the user; nothing if it is neither's.
std::optional<std::string> LineOfSystemPath(std::string_view path, std::string_view userRoot);

// The lines of both blocks, with the empty one in between; none if there are no keys. A link is
// followed by its name unless it leads to a key that it lies below.
std::vector<std::string> LinesOf(KeyTree const &tree, LineFilter const &filter,
                                 std::vector<std::string> &skipped);

} // namespace qvlink
