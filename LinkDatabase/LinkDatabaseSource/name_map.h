// NameMap: the name index. Objects are filed under the NameHash of the name that they
// have at indexing; lookups give them in the order of indexing.
//
// It is built at the first lookup and kept up to date from then on; when memory runs
// out it is dropped and built again. Within a hash it tells names apart, so that a
// lookup meets only objects that bear the name, and not all that share sixteen letters.
#pragma once

#include "graph_maps.h"
#include "linkdb_node.h"

#include <vector>

class NameMap {
public:
    // Notes that an object was indexed: it takes the next place in the order.
    void Index(ObjectNode &node);
    // Takes an object out that is about to be freed.
    void Remove(ObjectNode &node);
    // The object's name is about to change to this one, or to none: it stays filed under its
    // old hash.
    void Rename(ObjectNode &node, char const *newName);
    void Clear();

    // The object at the head of the ring of this name and type group, or null. Walk on
    // by nameNext until it comes again. `objects` and `retired` are all there are.
    ObjectNode *First(char const *name, std::uint32_t type, ObjectMap const &objects,
                      std::vector<ObjectNode *> const &retired);

private:
    struct Slot {
        ObjectNode *head;
        std::uint32_t hash;
    };

    bool Build(ObjectMap const &objects, std::vector<ObjectNode *> const &retired);
    bool File(ObjectNode &node);
    void Insert(ObjectNode &head, Slot &slot, ObjectNode &node);
    void Unlink(ObjectNode &node);
    void EraseSlot(std::size_t hole);
    bool Grow(std::size_t slots);
    std::size_t SlotOf(std::uint32_t filedHash, std::uint32_t foldHash, std::uint32_t group) const;

    std::vector<Slot> m_slots; // open addressing with linear probing; empty until built
    std::size_t m_used = 0;
    std::uint32_t m_nextOrder = 0;
    std::uint32_t m_highestID = 0;
    bool m_ascending = true; // ids were indexed in ascending order so far
};
