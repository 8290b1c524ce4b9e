// The graph that everything is measured on: a tree of folders and files with realistic
// names, and programs and libraries that need each other. The same size gives the same
// graph on every machine.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "linkdb.h"

namespace bench {

constexpr std::uint32_t ROOT_ID = 1;  // the root object, which every database has
constexpr std::uint32_t DRIVE_ID = 2; // the first object of every graph
constexpr std::uint32_t LINK_NEEDS = 2;

struct Object {
    std::uint32_t parent; // id; the drive's is the root object
    std::uint32_t type;
    std::string name; // unlike its siblings' names, also without regard to case
    FileData data;
};

struct Link {
    std::uint32_t source;
    std::uint32_t target;
    std::uint32_t type;
};

struct Graph {
    std::vector<Object> objects;         // the object with id `i` stands at `i - DRIVE_ID`
    std::vector<Link> needs;             // two per object, grouped by source
    std::vector<std::uint32_t> programs; // objects that nothing needs and that need others

    std::uint32_t HighestId() const { return static_cast<std::uint32_t>(objects.size()) + 1; }
    Object const &ById(std::uint32_t id) const { return objects[id - DRIVE_ID]; }
    std::string PathOf(std::uint32_t id) const;
};

// A graph of `objects` objects, as many parent links and twice as many needs.
Graph MakeGraph(std::uint32_t objects);

} // namespace bench
