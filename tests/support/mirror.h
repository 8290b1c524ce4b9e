// The graph over again for tests of paths, searches and expansion: maps and vectors, and the
// name lists in order of indexing, with nothing that makes anything fast.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mirror {

using Id = std::uint32_t;

struct Object {
    Id id = 0;
    std::uint32_t flags = 0;
    std::uint32_t type = 0; // with the bit of persistence
    std::optional<std::string> name;
    std::vector<std::uint32_t> from; // entries of outgoing links
    std::vector<std::uint32_t> to;   // entries of incoming links

    std::uint32_t Type() const { return type & 0x7fffffff; }
    bool IsPersistent() const { return (type & 0x80000000) != 0; }
};

struct Link {
    Id id = 0;
    Id source = 0;
    Id target = 0;
    std::uint32_t type = 0; // with the bit of persistence

    std::uint32_t Type() const { return type & 0x7fffffff; }
};

// Without regard to the case of ASCII letters.
bool SameText(std::string_view one, std::string_view other);
std::uint32_t NameHash(std::string_view name);
// Takes one backslash off the end, if there is one.
void StripBackslash(std::string &text);

// What a fresh database holds is the root object alone.
class Graph {
public:
    Graph();

    std::map<Id, Object> objects;
    std::map<Id, Link> links;
    std::map<std::uint32_t, std::vector<Id>> names; // by hash, in order of indexing
    Id lastObject = 1;
    Id lastLink = 0;

    Object *Find(Id id);
    Object const *Find(Id id) const;
    // The link that a list entry names, or null.
    Link const *LinkOf(std::uint32_t entry) const;
    // Objects of the list under the name's hash.
    std::vector<Object const *> Under(std::string_view name) const;

    Id AddObject(std::optional<std::string> const &name, std::uint32_t type, std::uint32_t flags,
                 bool persistent);
    void SetName(Id id, std::string const &name);
    Id MakeNewLink(Id source, Id target, std::uint32_t type, bool persistent);
    void LinkTo(Id source, Id target, std::uint32_t type);
    void MakePersistent(Id id);
    bool DeleteLink(Id id, bool fromSource, bool fromTarget);
    bool DeleteObject(Id id);

    // A database of a bare root is never written.
    bool IsBareRoot() const;
    // What a database file of this graph gives to the process that wrote it, or to another.
    void Reload(bool sameProcess);

private:
    void Index(Object const &object);
    void KeepForOthers();
};

} // namespace mirror
