// The lists of link entries that an object carries: growth, removal, search.
#pragma once

#include "linkdb_node.h"
#include "record_heap.h"

enum class Direction { From, To }; // the outgoing and the incoming list

// One list of one object, by reference.
struct LinkList {
    LinkList(DBObject &object, Direction direction);

    std::uint32_t Count() const { return countWord & LINK_ENTRY_ID_MASK; }
    // Adds an entry at the end; false, and no change, without memory.
    bool Append(RecordHeap &heap, std::uint32_t entry);
    // Removes every entry with this id, keeping the order of the others; how many.
    std::uint32_t Remove(std::uint32_t id);
    // Clears the top two bits of every entry with this id.
    void MakePersistent(std::uint32_t id);
    void Free(RecordHeap &heap);

    std::uint32_t *&entries;
    std::uint32_t &countWord;
    std::uint32_t &room;
    std::uint32_t &skip;
    bool &unsorted;

private:
    LinkList(ObjectNode &node, bool from);
    bool MakeRoom(RecordHeap &heap, std::uint32_t needed);
    void FreeMemory(RecordHeap &heap);
    std::uint32_t FirstAtOrAfter(std::uint32_t id) const;
    void CloseGap(std::uint32_t first, std::uint32_t after);
};
