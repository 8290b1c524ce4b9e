// TreeIndex: children by parent and name, for the descent from a root along a path.
//
// It mirrors the live LINK_PARENT entries of the incoming lists, is built at the first
// question and kept up to date from then on. It answers only for a regular forest: each
// object has at most one parent entry, made by the link that names it. As soon as
// anything else is seen it says so, and the caller walks the name index instead.
#pragma once

#include "graph_maps.h"
#include "large_memory.h"

#include <string_view>
#include <vector>

class TreeIndex {
public:
    // Makes the index ready for questions; false if it can't answer exactly.
    bool Ready(ObjectMap const &objects, LinkMap const &links);

    // Goes down from the drive or hive that is names[0] along the other names, into
    // path[0] to path[count - 1]. True if that settles who bears these names: no level has
    // two of one name. path[count - 1] is then null if there is nobody.
    bool Descend(ObjectMap const &objects, std::string_view const *names, std::size_t count,
                 ObjectNode **path) const;

    // What happened to the graph. A parent entry counts from when its link is live.
    void ObjectIndexed(ObjectNode &node);
    void ParentEntryAdded(ObjectNode &child, std::uint32_t parent);
    void ParentEntriesRemoved(ObjectNode &child, LinkMap const &links);
    void NameChanges(ObjectNode &node); // to be called before ...
    void NameChanged(ObjectNode &node); // ... and after
    void Remove(ObjectNode &node);
    void Invalidate();    // anything may have changed: build anew
    void MarkIrregular(); // ids or entries are ambiguous: never answer again

private:
    struct Slot {
        std::uint32_t hash;  // of the parent's id and the name
        std::uint32_t child; // 0 in an empty slot
    };

    bool Build(ObjectMap const &objects, LinkMap const &links);
    bool CountParents(ObjectNode &child, LinkMap const &links);
    void Enter(ObjectNode &node);
    void Leave(ObjectNode &node);
    std::size_t DescendByHash(ObjectMap const &objects, std::uint32_t root,
                              std::string_view const *names, std::size_t count,
                              std::uint32_t *ids) const;
    bool Confirm(ObjectMap const &objects, std::string_view const *names, std::size_t count,
                 std::uint32_t const *ids, ObjectNode **path) const;
    ObjectNode *Root(std::string_view name, bool &unique) const;
    ObjectNode *Child(ObjectMap const &objects, std::uint32_t parent, std::string_view name,
                      bool &unique) const;
    std::size_t Next(std::size_t slot) const { return (slot + 1) & (m_slots.size() - 1); }

    std::vector<Slot, LargeAllocator<Slot>>
        m_slots; // open addressing with linear probing; empty until built
    std::vector<ObjectNode *> m_roots;
    std::size_t m_entered = 0;
    std::size_t m_severalParents = 0; // objects with more than one live parent entry
    bool m_irregular = false;
};
