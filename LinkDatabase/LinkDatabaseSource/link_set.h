// LinkSet: the links of one long incoming list as a multiset of (source, type), so that
// "is there such a link already" costs the same for ten links and for a million.
#pragma once

#include "record_heap.h"

#include <cstddef>
#include <cstdint>

class LinkSet {
public:
    // An empty set with room for `count` links, or null without memory.
    static LinkSet *Make(RecordHeap &heap, std::size_t count);
    static void Destroy(RecordHeap &heap, LinkSet *set);

    bool Contains(std::uint32_t source, std::uint32_t type) const;
    bool Add(RecordHeap &heap, std::uint32_t source, std::uint32_t type); // false without memory
    void Remove(std::uint32_t source, std::uint32_t type); // one of them, if there is any

    std::uint32_t epoch; // GraphIndex::epoch at the time of making

private:
    struct Slot {
        std::uint64_t key;   // 0 in an empty slot
        std::uint64_t count; // links with this key
    };

    static std::uint64_t Key(std::uint32_t source, std::uint32_t type);
    std::size_t Home(std::uint64_t key) const;
    std::size_t SlotOf(std::uint64_t key) const; // of the key, or the empty one it would take
    bool Resize(RecordHeap &heap, std::size_t slots);

    Slot *m_slots;           // open addressing with linear probing
    std::size_t m_slotCount; // a power of two
    std::size_t m_used;
};
