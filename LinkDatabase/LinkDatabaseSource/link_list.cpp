#include "link_list.h"

#include "linkdb_format.h"

#include <algorithm>
#include <cstring>

namespace {

// From here on a list gets half its length to spare, where the blocks of ten alone
// would copy it at every tenth entry.
constexpr std::uint32_t LongList = 64;

std::uint32_t Id(std::uint32_t entry) { return entry & LINK_ENTRY_ID_MASK; }

} // namespace

LinkList::LinkList(DBObject &object, Direction direction)
    : LinkList(*Node(&object), direction == Direction::From) {}

LinkList::LinkList(ObjectNode &node, bool from)
    : entries(from ? node.pdwLinksFrom : node.pdwLinksTo),
      countWord(from ? node.dwLinksFrom : node.dwLinksTo),
      room(from ? node.linksFromRoom : node.linksToRoom),
      skip(from ? node.linksFromSkip : node.linksToSkip),
      unsorted(from ? node.linksFromUnsorted : node.linksToUnsorted) {}

bool LinkList::Append(RecordHeap &heap, std::uint32_t entry) {
    std::uint32_t const count = Count();
    bool const blocked = (countWord & LINK_LIST_BLOCKED) != 0;
    bool const exact = !blocked && count < 2;
    std::uint32_t const needed = exact ? count + 1 : (count + BlockSize) / BlockSize * BlockSize;
    if (room < needed && !MakeRoom(heap, needed))
        return false;
    unsorted = unsorted || (count && Id(entries[count - 1]) >= Id(entry));
    entries[count] = entry;
    countWord = (count + 1) | (exact ? 0 : LINK_LIST_BLOCKED);
    return true;
}

bool LinkList::MakeRoom(RecordHeap &heap, std::uint32_t needed) {
    std::uint32_t const count = Count();
    if (skip > count && room + skip >= needed) {
        std::memcpy(entries - skip, entries, count * sizeof *entries);
        entries -= skip;
        room += skip;
        skip = 0;
        return true;
    }
    std::uint32_t const newRoom = count < LongList ? needed : std::max(needed, count + count / 2);
    auto *const grown = heap.AllocateArray<std::uint32_t>(newRoom);
    if (!grown)
        return false;
    if (count)
        std::memcpy(grown, entries, count * sizeof *grown);
    FreeMemory(heap);
    entries = grown;
    room = newRoom;
    return true;
}

void LinkList::FreeMemory(RecordHeap &heap) {
    if (entries)
        heap.FreeArray(entries - skip, room + skip);
    entries = nullptr;
    room = skip = 0;
}

// Ids are handed out in ascending order, so a list is sorted unless a file or a link
// made persistent late says otherwise.
std::uint32_t LinkList::FirstAtOrAfter(std::uint32_t id) const {
    if (unsorted)
        return 0;
    auto const before = [](std::uint32_t entry, std::uint32_t wanted) {
        return Id(entry) < wanted;
    };
    return static_cast<std::uint32_t>(std::lower_bound(entries, entries + Count(), id, before) -
                                      entries);
}

std::uint32_t LinkList::Remove(std::uint32_t id) {
    if (!entries)
        return 0;
    std::uint32_t const count = Count();
    std::uint32_t removed;
    if (unsorted) {
        std::uint32_t *const end = entries + count;
        removed = static_cast<std::uint32_t>(
            end - std::remove_if(entries, end, [id](std::uint32_t e) { return Id(e) == id; }));
    } else {
        std::uint32_t const first = FirstAtOrAfter(id);
        std::uint32_t after = first;
        while (after < count && Id(entries[after]) == id)
            ++after;
        removed = after - first;
        if (removed)
            CloseGap(first, after);
    }
    countWord -= removed;
    return removed;
}

// In a long list the shorter side moves: taking entries off either end, one by one, is
// what deleting a folder's files or a library's users does.
void LinkList::CloseGap(std::uint32_t first, std::uint32_t after) {
    std::uint32_t const count = Count(), gap = after - first;
    if (count >= LongList && first < count - after) {
        std::memmove(entries + gap, entries, first * sizeof *entries);
        entries += gap;
        skip += gap;
        room -= gap;
    } else {
        std::memmove(entries + first, entries + after, (count - after) * sizeof *entries);
    }
}

void LinkList::MakePersistent(std::uint32_t id) {
    if (!entries)
        return;
    for (std::uint32_t i = FirstAtOrAfter(id), count = Count(); i < count; ++i) {
        if (Id(entries[i]) == id)
            entries[i] = id;
        else if (!unsorted)
            return;
    }
}

void LinkList::Free(RecordHeap &heap) {
    FreeMemory(heap);
    countWord = 0;
}
