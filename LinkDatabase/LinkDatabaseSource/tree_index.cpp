#include "tree_index.h"

#include "fold.h"
#include "path_text.h"

#include <algorithm>
#include <new>

namespace {

// Beyond this many drives and hives a linear look at them is no longer quick.
constexpr std::size_t MostRoots = 256;

// In place of an object's id; a slot never holds 0, and no id is handed out twice, so
// that an object of the highest id takes the slower way.
constexpr std::uint32_t NoSlot = 0;
constexpr std::uint32_t SeveralSlots = UINT32_MAX;

bool IsRoot(DBObject const &object) {
    std::uint32_t const type = object.dwType & ~PERSISTENT_BIT;
    return type == OBJ_DRIVE || type == OBJ_HIVE;
}

std::uint32_t Hash(std::uint32_t parent, std::string_view name) {
    return (FoldHash(name) ^ parent * 0x9e3779b1u) * 0xc2b2ae35u;
}

bool Bears(ObjectNode const &node, std::string_view name) {
    return node.pszName && EqualNoCase(node.pszName, name);
}

bool IsParentLink(DBLink const *link) {
    return link && (link->dwType & ~PERSISTENT_BIT) == LINK_PARENT;
}

} // namespace

bool TreeIndex::Ready(ObjectMap const &objects, LinkMap const &links) {
    if (m_irregular || (m_slots.empty() && !Build(objects, links)))
        return false;
    return m_severalParents == 0 && m_roots.size() <= MostRoots;
}

bool TreeIndex::Build(ObjectMap const &objects, LinkMap const &links) {
    std::size_t slots = 64;
    while (slots < 2 * objects.Size())
        slots *= 2;
    bool sound = true;
    try {
        m_slots.resize(slots);
        objects.ForEach([&](ObjectNode &node) {
            node.inTree = false;
            if (IsRoot(node))
                m_roots.push_back(&node);
            sound = sound && CountParents(node, links);
        });
    } catch (std::bad_alloc const &) {
        Invalidate();
        return false;
    }
    if (!sound)
        MarkIrregular();
    return sound;
}

// Counts the live parent entries of `child` and enters it under the first of them.
// False if an entry names a link that isn't this object's: such an entry can die or
// come to life without this object being told.
bool TreeIndex::CountParents(ObjectNode &child, LinkMap const &links) {
    child.parents = 0;
    if (child.dwID == 0)
        return false; // a slot couldn't tell it from none
    for (std::uint32_t i = 0, count = child.dwLinksTo & LINK_ENTRY_ID_MASK; i < count; ++i) {
        DBLink const *link = links.Find(child.pdwLinksTo[i] & LINK_ENTRY_ID_MASK);
        if (!IsParentLink(link))
            continue;
        if (link->dwTarget != child.dwID)
            return false;
        if (child.parents == 0)
            child.treeParent = link->dwSource;
        child.parents = child.parents ? ObjectNode::Several : std::uint8_t{1};
    }
    if (child.parents)
        Enter(child);
    m_severalParents += child.parents == ObjectNode::Several;
    return true;
}

bool TreeIndex::Descend(ObjectMap const &objects, std::string_view const *names, std::size_t count,
                        ObjectNode **path) const {
    bool unique = true;
    path[0] = Root(names[0], unique);
    if (!unique || !path[0])
        return unique;
    std::uint32_t ids[MostPathNames];
    std::size_t const reached = DescendByHash(objects, path[0]->dwID, names, count, ids);
    if (reached < count && ids[reached] == NoSlot) // nobody bears these names
        return true;
    if (reached == count && Confirm(objects, names, count, ids, path))
        return true;
    for (std::size_t i = 1; i < count && unique && path[i - 1]; ++i)
        path[i] = Child(objects, path[i - 1]->dwID, names[i], unique);
    return unique;
}

// Goes down along the hashes alone and has the objects on the way fetched meanwhile. Stops
// before a level that has no such hash (NoSlot) or several (SeveralSlots).
std::size_t TreeIndex::DescendByHash(ObjectMap const &objects, std::uint32_t root,
                                     std::string_view const *names, std::size_t count,
                                     std::uint32_t *ids) const {
    ids[0] = root;
    for (std::size_t i = 1; i < count; ++i) {
        std::uint32_t const hash = Hash(ids[i - 1], names[i]);
        ids[i] = NoSlot;
        for (std::size_t at = hash & (m_slots.size() - 1); m_slots[at].child; at = Next(at))
            if (m_slots[at].hash == hash)
                ids[i] = ids[i] == NoSlot ? m_slots[at].child : SeveralSlots;
        if (ids[i] == NoSlot || ids[i] == SeveralSlots)
            return i;
        objects.Prefetch(ids[i]);
    }
    return count;
}

// Whether the hashes led to the objects that really bear the names.
bool TreeIndex::Confirm(ObjectMap const &objects, std::string_view const *names, std::size_t count,
                        std::uint32_t const *ids, ObjectNode **path) const {
    for (std::size_t i = 1; i < count; ++i) {
        path[i] = objects.Find(ids[i]);
        __builtin_prefetch(path[i]->pszName);
    }
    for (std::size_t i = 1; i < count; ++i)
        if (path[i]->treeParent != ids[i - 1] || !Bears(*path[i], names[i]))
            return false;
    return true;
}

// The only child of `parent` with this name; null if there is none, and `unique` is false
// if there are several.
ObjectNode *TreeIndex::Child(ObjectMap const &objects, std::uint32_t parent, std::string_view name,
                             bool &unique) const {
    std::uint32_t const hash = Hash(parent, name);
    ObjectNode *found = nullptr;
    for (std::size_t at = hash & (m_slots.size() - 1); m_slots[at].child; at = Next(at)) {
        if (m_slots[at].hash != hash)
            continue;
        ObjectNode *const node = objects.Find(m_slots[at].child);
        if (node->treeParent != parent || !Bears(*node, name))
            continue;
        unique = found == nullptr;
        if (!unique)
            return nullptr;
        found = node;
    }
    return found;
}

ObjectNode *TreeIndex::Root(std::string_view name, bool &unique) const {
    ObjectNode *found = nullptr;
    for (ObjectNode *node : m_roots) {
        if (!Bears(*node, name))
            continue;
        unique = found == nullptr;
        if (!unique)
            return nullptr;
        found = node;
    }
    return found;
}

void TreeIndex::ObjectIndexed(ObjectNode &node) {
    if (m_slots.empty() || !IsRoot(node))
        return;
    try {
        m_roots.push_back(&node);
    } catch (std::bad_alloc const &) {
        Invalidate();
    }
}

void TreeIndex::ParentEntryAdded(ObjectNode &child, std::uint32_t parent) {
    if (m_slots.empty())
        return;
    if (child.parents) {
        m_severalParents += child.parents == 1;
        child.parents = ObjectNode::Several;
    } else if (2 * m_entered >= m_slots.size()) {
        Invalidate(); // and build anew, larger, at the next question
    } else {
        child.parents = 1;
        child.treeParent = parent;
        Enter(child);
    }
}

void TreeIndex::ParentEntriesRemoved(ObjectNode &child, LinkMap const &links) {
    if (m_slots.empty())
        return;
    m_severalParents -= child.parents == ObjectNode::Several;
    Leave(child);
    if (!CountParents(child, links))
        MarkIrregular();
}

void TreeIndex::NameChanges(ObjectNode &node) {
    if (!m_slots.empty())
        Leave(node);
}

void TreeIndex::NameChanged(ObjectNode &node) {
    if (!m_slots.empty() && node.parents)
        Enter(node);
}

void TreeIndex::Remove(ObjectNode &node) {
    if (m_slots.empty())
        return;
    m_severalParents -= node.parents == ObjectNode::Several;
    Leave(node);
    if (IsRoot(node))
        m_roots.erase(std::remove(m_roots.begin(), m_roots.end(), &node), m_roots.end());
}

void TreeIndex::MarkIrregular() {
    m_irregular = true;
    Invalidate();
}

void TreeIndex::Invalidate() {
    decltype(m_slots)().swap(m_slots);
    m_roots.clear();
    m_entered = 0;
    m_severalParents = 0;
}

void TreeIndex::Enter(ObjectNode &node) {
    std::uint32_t const hash = Hash(node.treeParent, node.pszName ? node.pszName : "");
    std::size_t at = hash & (m_slots.size() - 1);
    while (m_slots[at].child)
        at = Next(at);
    m_slots[at] = {hash, node.dwID};
    node.inTree = true;
    ++m_entered;
}

void TreeIndex::Leave(ObjectNode &node) {
    if (!node.inTree)
        return;
    std::size_t const mask = m_slots.size() - 1;
    std::size_t hole = Hash(node.treeParent, node.pszName ? node.pszName : "") & mask;
    while (m_slots[hole].child != node.dwID)
        hole = Next(hole);
    // Close the gap: whoever was pushed past the hole moves back into it.
    for (std::size_t at = Next(hole); m_slots[at].child; at = Next(at)) {
        if (((at - m_slots[at].hash) & mask) >= ((at - hole) & mask)) {
            m_slots[hole] = m_slots[at];
            hole = at;
        }
    }
    m_slots[hole] = {};
    node.inTree = false;
    --m_entered;
}
