// Reading the graph: what every question is made of.
#pragma once

#include "answer/place.h"

#include "linkdb.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qvlink {

constexpr std::uint32_t AnyLink = 0x7fffffff;
constexpr std::uint32_t AnyObject = 0x7fffffff;

// A link and the object at its other end, which exists.
struct Edge {
    CQVULink *link;
    CQVUObject *other;
};

// The links of types in `mask` in the order of the object's list. Entries that name no
// link, another object's link or no object are left out.
std::vector<Edge> LinksFrom(CQVUDatabase &database, CQVUObject const &object, std::uint32_t mask);
std::vector<Edge> LinksTo(CQVUDatabase &database, CQVUObject const &object, std::uint32_t mask);

// All objects with a name, in order of id. `pattern` as in CQVUDatabase::FindFirstObject.
std::vector<CQVUObject *> FindObjects(CQVUDatabase &database, std::string pattern,
                                      std::uint32_t typeMask);

// Empty for an object without a name.
std::string_view NameOf(CQVUObject const &object);
// Types without the persistent bit.
std::uint32_t TypeOf(CQVUObject const &object);
std::uint32_t TypeOf(CQVULink const &link);
std::optional<FileData> FileDataOf(CQVUObject &object);
bool IsFolder(CQVUObject &object); // a folder or a drive
// In the registry's tree: a hive, key or value.
bool IsInRegistry(CQVUObject const &object);

// The object's place in its tree; nothing for names, the root object and objects that have
// lost their way to a drive or hive.
std::optional<Place> PlaceOf(CQVUDatabase &database, CQVUObject &object);
// The place of the folder that the object lies in, as a text that CQVUObject::Resolve takes; the
// drive for an object straight below it. Empty without a place.
std::string FolderOf(CQVUDatabase &database, CQVUObject &object);

// The object at a place. Case matters only between names that differ in nothing else, and a
// key comes before a value of its name.
// Symbolic links among the folders are followed, the last name isn't. Null if there is
// none.
CQVUObject *FindAt(CQVUDatabase &database, Place const &place);

// The end of a chain of symbolic links that begins at `object`: the object itself if it
// isn't one. Null if the chain runs in a circle or leaves the graph.
CQVUObject *FollowLinks(CQVUDatabase &database, CQVUObject *object);

} // namespace qvlink
