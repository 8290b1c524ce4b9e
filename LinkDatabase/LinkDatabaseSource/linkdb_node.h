// ObjectNode: what stands in memory behind every DBObject. The record comes first, so
// the two have one address; the rest belongs to the indexes and is never stored.
#pragma once

#include "linkdb.h"

#include <cstddef>

class LinkSet;

constexpr std::size_t LongestName = 250; // of a name when an object gets it, in characters

// The first 64 bytes are what a walk of the graph and a descent along a path look at.
struct ObjectNode : DBObject {
    std::uint32_t treeParent; // id of the parent it stands in the tree index with
    bool current;             // is the record that the id map has for this id
    bool inTree;              // stands in the tree index
    bool filed;               // IndexObject found it worth a place in the name index
    bool strayed;             // bears a name now that isn't filed where it would be looked for

    ObjectNode *nameNext; // ring of the objects filed under one name (NameMap), null outside
    ObjectNode *namePrevious;
    LinkSet *linksToSet;     // the incoming list as a set, once it is long (LinkSet)
    std::uint32_t order;     // place in the order of indexing
    std::uint32_t filedHash; // NameHash of the name at indexing, which a rename doesn't change
    std::uint32_t foldHash;  // FoldHash of the name it stands in the name ring with
    std::uint32_t nameRoom;  // bytes and entries that the parts really have room for
    std::uint32_t dataRoom;
    std::uint32_t linksFromRoom;
    std::uint32_t linksToRoom;
    std::uint32_t linksFromSkip; // entries of the array's memory that lie before its start
    std::uint32_t linksToSkip;
    std::uint8_t parents;   // live parent entries as the tree index counted them: 0, 1 or Several
    bool linksFromUnsorted; // the entries' ids don't ascend
    bool linksToUnsorted;
    bool linksToIrregular; // the incoming list can't be a set: walk it

    static constexpr std::uint8_t Several = 2;
};

static_assert(sizeof(void *) != 8 || sizeof(ObjectNode) == 128);

inline ObjectNode *Node(DBObject *object) { return static_cast<ObjectNode *>(object); }
inline ObjectNode const *Node(DBObject const *object) {
    return static_cast<ObjectNode const *>(object);
}
