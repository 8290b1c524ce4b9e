// Paths in the object tree, told step by step over the plain graph.
#pragma once

#include "mirror.h"

#include <optional>
#include <stdexcept>
#include <string>

namespace mirror {

// The folders and the family of the system that names are resolved for.
struct System {
    std::string systemDirectory;
    std::string windowsDirectory;
    bool isNT = true;
};

// Thrown where the steps would go on without end: nothing is told of the result.
struct Endless : std::runtime_error {
    Endless() : std::runtime_error("the chain test has no end") {}
};

// What a path is cut into.
struct PathParts {
    std::string drive;
    std::string directory;
    std::string leaf; // name and extension

    explicit PathParts(std::string const &path);
};

class Paths {
public:
    explicit Paths(Graph const &whole) : graph(whole) {}

    // Nothing for an object without a path, or with one that a path buffer can't take.
    std::optional<std::string> FullPath(Id id) const;
    // 0 for none, as in all of these.
    Id ByPath(std::string path) const;
    // May shorten the text.
    bool HasCorrectPath(Id id, std::string &parentPath) const;
    Id VFile(std::string const &name) const;
    Id Resolve(Id id, std::optional<std::string> const &basePath, System const &system) const;

private:
    using Known = std::map<std::pair<Id, int>, std::optional<std::string>>;

    std::optional<std::string> Climb(Object const &object, int depth, Known &known) const;
    std::optional<std::string> ClimbParents(Object const &object, int depth, Known &known) const;
    Id RootByName(std::string const &name, std::uint32_t type) const;
    Id FileByPath(std::string const &path) const;
    Id KeyByPath(std::string path) const;
    bool Chain(Object const &object, std::string &parentPath, int depth) const;
    bool IsBelowRoot(Object const &object, std::string const &rootName) const;
    Object const *ParentOf(std::uint32_t entry) const;

    Graph const &graph;
};

} // namespace mirror
