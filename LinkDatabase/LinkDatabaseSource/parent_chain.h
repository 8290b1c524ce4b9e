// ParentChain: whether an object's parents, level by level, bear the names of a path.
#pragma once

#include "graph_maps.h"
#include "linkdb.h"

#include <cstddef>
#include <set>
#include <string>
#include <utility>

class ParentChain {
public:
    ParentChain(ObjectMap const &objects, LinkMap const &links)
        : m_objects(objects), m_links(links) {}

    // Whether `parentPath` is the object's parent chain. May take a trailing backslash off
    // `parentPath`. Throws std::bad_alloc.
    bool Leads(DBObject &object, std::string &parentPath);

private:
    // The parent that an entry of the incoming list leads to, or null.
    DBObject *Parent(std::uint32_t entry) const;
    bool IsBelowRoot(DBObject const &object, std::string &rootName) const;
    bool IsBelowParent(DBObject const &object, std::string const &parentPath);

    ObjectMap const &m_objects;
    LinkMap const &m_links;
    std::size_t m_depth = 0;
    std::size_t m_steps = 0;
    // Objects that failed, or are being tested, at a length of the parent text, which tells
    // the level. Kept once a test turns out to be long, so that a hostile graph can't make
    // it endless.
    std::set<std::pair<DBObject const *, std::size_t>> m_failures;
};
