// Searches over the links of one object.
#include "linkdb.h"

#include "database_steps.h"
#include "fold.h"
#include "graph_maps.h"
#include "link_list.h"
#include "linkdb_state.h"
#include "mutex_guard.h"
#include "search_pool.h"

namespace {

SearchPool<DBLinkSearch> g_linkSearches;

// The first link at or after `index` that matches the mask; `index` becomes its place.
DBLink *NextMatch(LinkList const &list, LinkMap const &links, std::uint32_t typeMask,
                  std::uint32_t &index) {
    for (std::uint32_t const count = list.Count(); index < count; ++index) {
        DBLink *const link = links.Find(list.entries[index] & LINK_ENTRY_ID_MASK);
        if (link && (link->dwType & typeMask & ~PERSISTENT_BIT))
            return link;
    }
    return nullptr;
}

SearchHandle FindFirst(LinkList const &list, LinkMap const &links, unsigned long typeMask,
                       CQVULink **out) {
    auto const mask = static_cast<std::uint32_t>(typeMask);
    std::uint32_t index = 0;
    for (; DBLink *const link = NextMatch(list, links, mask, index); ++index) {
        DBLinkSearch *const search = g_linkSearches.Open();
        if (!search)
            continue; // as if this link had failed to match
        *search = {index, mask};
        if (out)
            *out = static_cast<CQVULink *>(link);
        return SearchPool<DBLinkSearch>::Handle(search);
    }
    return 0;
}

int FindNext(LinkList const &list, LinkMap const &links, SearchHandle handle, CQVULink **out) {
    DBLinkSearch *const search = g_linkSearches.Get(handle);
    if (!search)
        return 0;
    std::uint32_t index = search->dwIndex + 1;
    DBLink *const link = NextMatch(list, links, search->dwTypeMask, index);
    if (!link)
        return 0;
    search->dwIndex = index;
    if (out)
        *out = static_cast<CQVULink *>(link);
    return 1;
}

} // namespace

SearchHandle CQVUObject::FindFirstLinkTo(unsigned long typeMask, CQVULink **out) {
    if (!this || !g_pDatabase)
        return 0;
    MutexGuard const guard(g_pDatabase->m_hMutex);
    return FindFirst(LinkList(*this, Direction::To), *g_pDatabase->m_linkmap, typeMask, out);
}

int CQVUObject::FindNextLinkTo(SearchHandle handle, CQVULink **out) {
    if (!handle || !this || !g_pDatabase)
        return 0;
    MutexGuard const guard(g_pDatabase->m_hMutex);
    return FindNext(LinkList(*this, Direction::To), *g_pDatabase->m_linkmap, handle, out);
}

SearchHandle CQVUObject::FindFirstLinkFrom(unsigned long typeMask, CQVULink **out) {
    if (!this || !g_pDatabase)
        return 0;
    MutexGuard const guard(g_pDatabase->m_hMutex);
    return FindFirst(LinkList(*this, Direction::From), *g_pDatabase->m_linkmap, typeMask, out);
}

int CQVUObject::FindNextLinkFrom(SearchHandle handle, CQVULink **out) {
    if (!handle || !this || !g_pDatabase)
        return 0;
    MutexGuard const guard(g_pDatabase->m_hMutex);
    return FindNext(LinkList(*this, Direction::From), *g_pDatabase->m_linkmap, handle, out);
}

void CQVUObject::FindCloseLinkTo(SearchHandle handle) {
    MutexGuard const guard(DatabaseSteps::Mutex());
    g_linkSearches.Close(handle);
}

void CQVUObject::FindCloseLinkFrom(SearchHandle handle) { FindCloseLinkTo(handle); }

int CQVUObject::DoesObjectLinkTo(char *name, unsigned long typeMask) {
    if (!this || !name || !g_pDatabase)
        return 0;
    MutexGuard const guard(g_pDatabase->m_hMutex);
    auto const mask = static_cast<std::uint32_t>(typeMask) & ~PERSISTENT_BIT;
    for (std::uint32_t i = 0; i < (dwLinksTo & LINK_ENTRY_ID_MASK); ++i) {
        DBLink const *link = g_pDatabase->LookupLink(pdwLinksTo[i] & LINK_ENTRY_ID_MASK);
        DBObject const *source = link ? g_pDatabase->m_idmap->Find(link->dwSource) : nullptr;
        if (source && (source->dwType & mask) && source->pszName &&
            EqualNoCase(source->pszName, name))
            return 1;
    }
    return 0;
}
