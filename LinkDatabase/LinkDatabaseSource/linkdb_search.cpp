// Searches over all objects.
#include "linkdb.h"

#include "fold.h"
#include "graph_maps.h"
#include "linkdb_state.h"
#include "mutex_guard.h"
#include "wildcard.h"

#include <cstring>
#include <new>

DBObjectSearch *g_pObjectSearches = nullptr;

namespace {

constexpr std::uint64_t AtEnd = UINT64_MAX;

// The link in g_pObjectSearches that leads to this search, or null if it isn't open.
DBObjectSearch **LinkToSearch(SearchHandle handle) {
    for (DBObjectSearch **link = &g_pObjectSearches; *link; link = &(*link)->pNext)
        if (reinterpret_cast<SearchHandle>(*link) == handle)
            return link;
    return nullptr;
}

bool IsExtensionPattern(char const *pattern, std::size_t length) {
    return length == 5 && pattern[0] == '*' && pattern[1] == '.';
}

bool NameMatches(DBObjectSearch const &search, char const *name) {
    if (!search.bExtensionOnly)
        return NameMatchesPattern(search.szPattern, name);
    std::size_t const length = std::strlen(name);
    return length > 4 && EqualNoCase(name + length - 4, search.szPattern + 1);
}

} // namespace

SearchHandle CQVUDatabase::FindFirstObject(char *pattern, unsigned long typeMask,
                                           CQVUObject **out) {
    if (!pattern)
        return 0;
    std::size_t const length = strnlen(pattern, sizeof DBObjectSearch::szPattern);
    if (length == sizeof DBObjectSearch::szPattern)
        return 0; // longer than its field: matches nothing
    auto *const search = new (std::nothrow) DBObjectSearch{};
    if (!search)
        return 0;
    MutexGuard const guard(m_hMutex);
    search->bExtensionOnly = IsExtensionPattern(pattern, length);
    std::memcpy(search->szPattern, pattern, length + 1);
    search->dwTypeMask = static_cast<std::uint32_t>(typeMask);
    auto const handle = reinterpret_cast<SearchHandle>(search);
    DBObject *const found = FindSupport(handle);
    if (!found) {
        delete search;
        return 0;
    }
    search->pNext = g_pObjectSearches;
    g_pObjectSearches = search;
    if (out)
        *out = static_cast<CQVUObject *>(found);
    return handle;
}

// The cursor moves on before the object is tested, so the object last returned may go.
// A search that has told its end stays there, whatever is added later.
DBObject *CQVUDatabase::FindSupport(SearchHandle handle) {
    auto &search = *reinterpret_cast<DBObjectSearch *>(handle);
    while (search.cursor != AtEnd) {
        DBObject *const object = m_idmap->AtOrAfter(search.cursor);
        search.cursor = object ? std::uint64_t{object->dwID} + 1 : AtEnd;
        if (object && (object->dwType & search.dwTypeMask & ~PERSISTENT_BIT) && object->pszName &&
            NameMatches(search, object->pszName))
            return object;
    }
    return nullptr;
}

int CQVUDatabase::FindNextObject(SearchHandle handle, CQVUObject **out) {
    MutexGuard const guard(m_hMutex);
    DBObject *const found = LinkToSearch(handle) ? FindSupport(handle) : nullptr;
    if (found && out)
        *out = static_cast<CQVUObject *>(found);
    return found != nullptr;
}

void CQVUDatabase::FindCloseObject(SearchHandle handle) {
    MutexGuard const guard(m_hMutex);
    DBObjectSearch **const link = LinkToSearch(handle);
    if (!link)
        return;
    DBObjectSearch *const search = *link;
    *link = search->pNext;
    delete search;
}
