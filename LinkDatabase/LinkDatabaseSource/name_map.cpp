#include "name_map.h"

#include "fold.h"

#include <algorithm>
#include <new>
#include <utility>

namespace {

// Each kind of lookup asks for the types of one group, and for exactly these types.
std::uint32_t Group(std::uint32_t type) {
    switch (type & ~PERSISTENT_BIT) {
    case OBJ_FILE:
    case OBJ_PINNED:
        return OBJ_FILE;
    case OBJ_KEY:
    case OBJ_VALUE:
        return OBJ_KEY;
    default:
        return type & ~PERSISTENT_BIT;
    }
}

std::uint32_t Mix(std::uint32_t filedHash, std::uint32_t foldHash, std::uint32_t group) {
    return (foldHash ^ filedHash * 0x9e3779b1u ^ group * 0x85ebca6bu) * 0xc2b2ae35u;
}

} // namespace

void NameMap::Index(ObjectNode &node) {
    node.order = m_nextOrder++;
    m_ascending = m_ascending && (m_nextOrder == 1 || node.dwID > m_highestID);
    m_highestID = std::max(m_highestID, node.dwID);
    node.filed = (node.dwType & OBJ_NAMED_MASK) && node.pszName && *node.pszName;
    if (!node.filed)
        return;
    node.filedHash = NameHash(node.pszName);
    node.foldHash = FoldHash(node.pszName);
    if (!m_slots.empty() && !File(node))
        Clear();
}

void NameMap::Remove(ObjectNode &node) {
    if (node.nameNext)
        Unlink(node);
}

// A lookup of the new name finds the object only if both names share their NameHash.
void NameMap::Rename(ObjectNode &node, char const *newName) {
    if (!node.filed)
        return;
    if (node.nameNext)
        Unlink(node);
    node.foldHash = newName ? FoldHash(newName) : 0;
    node.strayed = !newName || NameHash(newName) != node.filedHash;
    if (!m_slots.empty() && !node.strayed && !File(node))
        Clear();
}

void NameMap::Clear() {
    for (Slot const &slot : m_slots) {
        if (ObjectNode *node = slot.head) {
            do
                node = std::exchange(node->nameNext, nullptr);
            while (node != slot.head);
        }
    }
    std::vector<Slot>().swap(m_slots);
    m_used = 0;
}

ObjectNode *NameMap::First(char const *name, std::uint32_t type, ObjectMap const &objects,
                           std::vector<ObjectNode *> const &retired) {
    if (m_slots.empty() && !Build(objects, retired))
        return nullptr;
    return m_slots[SlotOf(NameHash(name), FoldHash(name), Group(type))].head;
}

bool NameMap::Build(ObjectMap const &objects, std::vector<ObjectNode *> const &retired) {
    try {
        std::vector<ObjectNode *> nodes;
        nodes.reserve(objects.Size() + retired.size());
        auto const add = [&nodes](ObjectNode *node) {
            if (node->filed && !node->strayed)
                nodes.push_back(node);
        };
        objects.ForEach([&add](DBObject &object) { add(Node(&object)); });
        for (ObjectNode *node : retired)
            add(node);
        if (!m_ascending)
            std::sort(nodes.begin(), nodes.end(),
                      [](ObjectNode const *a, ObjectNode const *b) { return a->order < b->order; });
        std::size_t slots = 64;
        while (slots < 2 * nodes.size())
            slots *= 2;
        m_slots.resize(slots);
        for (ObjectNode *node : nodes)
            File(*node);
    } catch (std::bad_alloc const &) {
        Clear();
        return false;
    }
    return true;
}

bool NameMap::File(ObjectNode &node) {
    std::size_t at = SlotOf(node.filedHash, node.foldHash, Group(node.dwType));
    if (ObjectNode *head = m_slots[at].head) {
        Insert(*head, m_slots[at], node);
    } else {
        if (2 * (m_used + 1) > m_slots.size()) {
            if (!Grow(2 * m_slots.size()))
                return false;
            at = SlotOf(node.filedHash, node.foldHash, Group(node.dwType));
        }
        node.nameNext = node.namePrevious = &node;
        m_slots[at] = {&node, Mix(node.filedHash, node.foldHash, Group(node.dwType))};
        ++m_used;
    }
    return true;
}

// Nearly always at the end: only an object that got back its old name comes in between.
void NameMap::Insert(ObjectNode &head, Slot &slot, ObjectNode &node) {
    ObjectNode *after = head.namePrevious;
    while (after->order > node.order && after != &head)
        after = after->namePrevious;
    if (after->order > node.order) {
        after = head.namePrevious;
        slot.head = &node;
    }
    node.namePrevious = after;
    node.nameNext = after->nameNext;
    after->nameNext->namePrevious = &node;
    after->nameNext = &node;
}

void NameMap::Unlink(ObjectNode &node) {
    std::size_t const at = SlotOf(node.filedHash, node.foldHash, Group(node.dwType));
    ObjectNode *const next = std::exchange(node.nameNext, nullptr);
    if (next == &node) {
        EraseSlot(at);
        return;
    }
    node.namePrevious->nameNext = next;
    next->namePrevious = node.namePrevious;
    if (m_slots[at].head == &node)
        m_slots[at].head = next;
}

void NameMap::EraseSlot(std::size_t hole) {
    std::size_t const mask = m_slots.size() - 1;
    for (std::size_t at = (hole + 1) & mask; m_slots[at].head; at = (at + 1) & mask) {
        if (((at - m_slots[at].hash) & mask) >= ((at - hole) & mask)) {
            m_slots[hole] = m_slots[at];
            hole = at;
        }
    }
    m_slots[hole] = {};
    --m_used;
}

bool NameMap::Grow(std::size_t slots) {
    try {
        std::vector<Slot> grown(slots);
        for (Slot const &slot : m_slots) {
            if (!slot.head)
                continue;
            std::size_t at = slot.hash & (slots - 1);
            while (grown[at].head)
                at = (at + 1) & (slots - 1);
            grown[at] = slot;
        }
        m_slots.swap(grown);
    } catch (std::bad_alloc const &) {
        return false;
    }
    return true;
}

std::size_t NameMap::SlotOf(std::uint32_t filedHash, std::uint32_t foldHash,
                            std::uint32_t group) const {
    std::uint32_t const hash = Mix(filedHash, foldHash, group);
    std::size_t at = hash & (m_slots.size() - 1);
    for (; m_slots[at].head; at = (at + 1) & (m_slots.size() - 1)) {
        ObjectNode const &head = *m_slots[at].head;
        if (m_slots[at].hash == hash && head.filedHash == filedHash && head.foldHash == foldHash &&
            Group(head.dwType) == group)
            break;
    }
    return at;
}
