#include "link_set.h"

#include "linkdb.h"

#include <cstring>
#include <new>

LinkSet *LinkSet::Make(RecordHeap &heap, std::size_t count) {
    void *const memory = heap.Allocate(sizeof(LinkSet));
    if (!memory)
        return nullptr;
    auto *const set = new (memory) LinkSet{};
    std::size_t slots = 64;
    while (slots < 2 * count)
        slots *= 2;
    if (set->Resize(heap, slots))
        return set;
    Destroy(heap, set);
    return nullptr;
}

void LinkSet::Destroy(RecordHeap &heap, LinkSet *set) {
    if (!set)
        return;
    heap.FreeArray(set->m_slots, set->m_slotCount);
    heap.Free(set, sizeof *set);
}

// Never 0: a type has 31 bits.
std::uint64_t LinkSet::Key(std::uint32_t source, std::uint32_t type) {
    return (std::uint64_t{source} << 31 | (type & ~PERSISTENT_BIT)) + 1;
}

std::size_t LinkSet::Home(std::uint64_t key) const {
    key *= 0x9e3779b97f4a7c15u;
    return static_cast<std::size_t>(key >> 32) & (m_slotCount - 1);
}

std::size_t LinkSet::SlotOf(std::uint64_t key) const {
    std::size_t at = Home(key);
    while (m_slots[at].key && m_slots[at].key != key)
        at = (at + 1) & (m_slotCount - 1);
    return at;
}

bool LinkSet::Contains(std::uint32_t source, std::uint32_t type) const {
    return m_slots[SlotOf(Key(source, type))].key != 0;
}

bool LinkSet::Add(RecordHeap &heap, std::uint32_t source, std::uint32_t type) {
    if (2 * (m_used + 1) > m_slotCount && !Resize(heap, 2 * m_slotCount))
        return false;
    std::uint64_t const key = Key(source, type);
    Slot &slot = m_slots[SlotOf(key)];
    m_used += slot.key == 0;
    slot.key = key;
    ++slot.count;
    return true;
}

void LinkSet::Remove(std::uint32_t source, std::uint32_t type) {
    std::size_t hole = SlotOf(Key(source, type));
    if (!m_slots[hole].key || --m_slots[hole].count)
        return;
    // Close the gap: whoever was pushed past the hole moves back into it.
    std::size_t const mask = m_slotCount - 1;
    for (std::size_t at = (hole + 1) & mask; m_slots[at].key; at = (at + 1) & mask) {
        if (((at - Home(m_slots[at].key)) & mask) >= ((at - hole) & mask)) {
            m_slots[hole] = m_slots[at];
            hole = at;
        }
    }
    m_slots[hole] = Slot{};
    --m_used;
}

bool LinkSet::Resize(RecordHeap &heap, std::size_t slots) {
    auto *const grown = heap.AllocateArray<Slot>(slots);
    if (!grown)
        return false;
    std::memset(grown, 0, slots * sizeof *grown);
    Slot *const former = m_slots;
    std::size_t const formerCount = m_slotCount;
    m_slots = grown;
    m_slotCount = slots;
    for (std::size_t i = 0; i < formerCount; ++i)
        if (former[i].key)
            m_slots[SlotOf(former[i].key)] = former[i];
    heap.FreeArray(former, formerCount);
    return true;
}
