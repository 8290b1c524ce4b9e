#include "graph_index.h"

#include "link_list.h"

#include <new>

namespace {

// Up to this many entries walking the list is as quick as asking a set.
constexpr std::uint32_t ShortList = 16;

std::uint32_t TypeOf(DBLink const &link) { return link.dwType & ~PERSISTENT_BIT; }

} // namespace

void GraphIndex::FreeParts(ObjectNode &node) {
    DropSet(node);
    heap.FreeArray(node.pszName, node.nameRoom);
    LinkList(node, Direction::From).Free(heap);
    LinkList(node, Direction::To).Free(heap);
    heap.FreeArray(node.pData, node.dataRoom);
}

bool GraphIndex::HasLink(ObjectNode &source, ObjectNode &target, std::uint32_t type,
                         ObjectMap const &objects, LinkMap const &links) {
    std::uint32_t const incoming = target.dwLinksTo & LINK_ENTRY_ID_MASK;
    std::uint32_t const outgoing = source.dwLinksFrom & LINK_ENTRY_ID_MASK;
    if (incoming == 0)
        return false;
    // Where the lists agree the source's tells the same, and its links were made in a row
    // and a moment ago, while those into the target lie all over the memory.
    if (outgoing <= ShortList && ListsAgree(objects, links)) {
        for (std::uint32_t i = 0; i < outgoing; ++i) {
            DBLink const *link = links.Find(source.pdwLinksFrom[i] & LINK_ENTRY_ID_MASK);
            if (link && link->dwTarget == target.dwID && TypeOf(*link) == type)
                return true;
        }
        return false;
    }
    if (LinkSet const *set = SetOf(target, links))
        return set->Contains(source.dwID, type);
    for (std::uint32_t i = 0; i < incoming; ++i) {
        DBLink const *link = links.Find(target.pdwLinksTo[i] & LINK_ENTRY_ID_MASK);
        if (link && link->dwSource == source.dwID && TypeOf(*link) == type)
            return true;
    }
    return false;
}

// Looked at once: every entry of a live link stands in the list of that link's own end,
// no list has one twice, and there are as many in either direction as there are links.
bool GraphIndex::ListsAgree(ObjectMap const &objects, LinkMap const &links) {
    if (m_agreement != Agreement::Unknown)
        return m_agreement == Agreement::Yes;
    std::size_t outgoing = 0, incoming = 0;
    bool sound = retired.empty();
    objects.ForEach([&](ObjectNode &node) {
        sound = sound && !node.linksFromUnsorted && !node.linksToUnsorted;
        for (std::uint32_t i = 0, n = node.dwLinksFrom & LINK_ENTRY_ID_MASK; sound && i < n; ++i)
            if (DBLink const *link = links.Find(node.pdwLinksFrom[i] & LINK_ENTRY_ID_MASK)) {
                sound = link->dwSource == node.dwID;
                ++outgoing;
            }
        for (std::uint32_t i = 0, n = node.dwLinksTo & LINK_ENTRY_ID_MASK; sound && i < n; ++i)
            if (DBLink const *link = links.Find(node.pdwLinksTo[i] & LINK_ENTRY_ID_MASK)) {
                sound = link->dwTarget == node.dwID;
                ++incoming;
            }
    });
    sound = sound && outgoing == links.Size() && incoming == links.Size();
    m_agreement = sound ? Agreement::Yes : Agreement::No;
    return sound;
}

void GraphIndex::ListsDisagree() { m_agreement = Agreement::No; }

// The set of a long list, made if need be; null if the list has to be walked.
LinkSet *GraphIndex::SetOf(ObjectNode &target, LinkMap const &links) {
    std::uint32_t const count = target.dwLinksTo & LINK_ENTRY_ID_MASK;
    if (count <= ShortList || target.linksToIrregular)
        return nullptr;
    if (target.linksToSet && target.linksToSet->epoch == m_epoch)
        return target.linksToSet;
    DropSet(target);
    LinkSet *const set = LinkSet::Make(heap, count);
    for (std::uint32_t i = 0; set && i < count; ++i) {
        DBLink const *link = links.Find(target.pdwLinksTo[i] & LINK_ENTRY_ID_MASK);
        if (!link)
            continue;
        // An entry for another object's link can die without this object being told.
        target.linksToIrregular = link->dwTarget != target.dwID;
        if (target.linksToIrregular || !set->Add(heap, link->dwSource, link->dwType)) {
            LinkSet::Destroy(heap, set);
            return nullptr;
        }
    }
    if (set)
        set->epoch = m_epoch;
    target.linksToSet = set;
    return set;
}

void GraphIndex::DropSet(ObjectNode &target) {
    LinkSet::Destroy(heap, target.linksToSet);
    target.linksToSet = nullptr;
}

void GraphIndex::LinkEntered(ObjectNode &target, DBLink const &link) {
    if (target.linksToSet && !target.linksToSet->Add(heap, link.dwSource, link.dwType))
        DropSet(target);
    if (TypeOf(link) == LINK_PARENT)
        tree.ParentEntryAdded(target, link.dwSource);
}

void GraphIndex::LinkLeft(ObjectNode &target, DBLink const &link, std::uint32_t removed,
                          LinkMap const &links) {
    if (target.linksToSet) {
        if (removed == 0)
            DropSet(target); // the entry may have stayed behind
        for (; removed && target.linksToSet; --removed)
            target.linksToSet->Remove(link.dwSource, link.dwType);
    }
    if (TypeOf(link) == LINK_PARENT)
        tree.ParentEntriesRemoved(target, links);
}

// Without memory for them the new ids can't be told from the stale ones: each may be one.
void GraphIndex::CollectStaleEntries(ObjectMap const &objects, std::uint32_t lastLinkID) {
    m_staleEntries.clear();
    m_allMayBeStale = false;
    auto const collect = [&](std::uint32_t const *entries, std::uint32_t countWord) {
        for (std::uint32_t i = 0, count = countWord & LINK_ENTRY_ID_MASK; i < count; ++i)
            if ((entries[i] & LINK_ENTRY_ID_MASK) > lastLinkID)
                m_staleEntries.insert(entries[i] & LINK_ENTRY_ID_MASK);
    };
    try {
        objects.ForEach([&](ObjectNode const &node) {
            collect(node.pdwLinksFrom, node.dwLinksFrom);
            collect(node.pdwLinksTo, node.dwLinksTo);
        });
    } catch (std::bad_alloc const &) {
        m_allMayBeStale = true;
    }
}

void GraphIndex::LinkIDHandedOut(std::uint32_t id) {
    if (!m_allMayBeStale && (m_staleEntries.empty() || !m_staleEntries.erase(id)))
        return;
    ++m_epoch;
    tree.Invalidate();
    m_agreement = Agreement::No;
}

void GraphIndex::Reloaded() {
    ++m_epoch;
    tree.Invalidate();
    m_agreement = Agreement::Unknown;
}
