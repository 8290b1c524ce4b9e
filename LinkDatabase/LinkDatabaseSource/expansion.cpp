#include "expansion.h"

#include "graph_maps.h"
#include "mutex_guard.h"

#include <new>

namespace {

constexpr int StepsPerLock = 64;
constexpr int Ahead = 8; // how many results ahead the objects are fetched from memory

// The result `count` places behind this one, or null.
FFDepObjResult *Behind(FFDepObjResult *result, int count) {
    while (result && count--)
        result = result->pNext;
    return result;
}

std::uint32_t TypeOf(DBObject const &object) { return object.dwType & ~PERSISTENT_BIT; }

} // namespace

void Expansion::Forward(CQVUObject &object) {
    m_start = &object;
    Enter(object);
    Walk();
}

void Expansion::Walk() {
    while (!m_levels.empty()) {
        MutexGuard const guard(m_database.m_hMutex);
        for (int i = 0; i < StepsPerLock && !m_levels.empty(); ++i)
            Step();
    }
}

void Expansion::Step() {
    Level &level = m_levels.back();
    DBLink const *link = nullptr;
    if (level.object &&
        (level.object == m_start || m_database.m_idmap->Find(level.id) == level.object))
        link = NextLink(level);
    if (link)
        Follow(*link);
    else
        m_levels.pop_back();
}

// Links of every type are followed; only type 0 matches no mask.
DBLink *Expansion::NextLink(Level &level) const {
    while (level.next < (level.object->dwLinksFrom & LINK_ENTRY_ID_MASK)) {
        std::uint32_t const entry = level.object->pdwLinksFrom[level.next++];
        DBLink *const link = m_database.m_linkmap->Find(entry & LINK_ENTRY_ID_MASK);
        if (link && (link->dwType & ~PERSISTENT_BIT))
            return link;
    }
    return nullptr;
}

void Expansion::Follow(DBLink const &link) {
    DBObject *target = m_database.m_idmap->Find(link.dwTarget);
    if (!target || (target->dwFlags & OBJ_FLAG_VISITED))
        return;
    bool const resolved = TypeOf(*target) == OBJ_VFILE;
    if (resolved) {
        target = static_cast<CQVUObject *>(target)->Resolve(m_basePath);
        if (!target || (target->dwFlags & OBJ_FLAG_VISITED))
            return;
    }
    // The walk stops at a pinned object, but only when its bare name led to it.
    if (Gather(*target) && !(resolved && TypeOf(*target) == OBJ_PINNED))
        Enter(*target);
}

bool Expansion::Gather(DBObject &object) {
    auto *const result = new (std::nothrow) FFDepObjResult{m_results, object.dwID};
    if (!result)
        return false;
    m_results = result;
    object.dwFlags |= OBJ_FLAG_VISITED;
    return true;
}

// Without memory the part of the graph behind the object is missing from the results.
void Expansion::Enter(DBObject &object) {
    if (!(object.dwLinksFrom & LINK_ENTRY_ID_MASK))
        return;
    try {
        m_levels.push_back({&object, object.dwID, 0});
    } catch (std::bad_alloc const &) {
        return;
    }
    std::uint32_t const count = object.dwLinksFrom & LINK_ENTRY_ID_MASK;
    for (std::uint32_t i = 0; i < count && i < Ahead; ++i)
        m_database.m_linkmap->Prefetch(object.pdwLinksFrom[i] & LINK_ENTRY_ID_MASK);
}

void Expansion::Backward(CQVUObject &object) {
    auto type = static_cast<std::uint32_t>(object.GetType());
    for (std::uint32_t i = 0;; ++i) {
        {
            MutexGuard const guard(m_database.m_hMutex);
            if (i >= (object.dwLinksTo & LINK_ENTRY_ID_MASK))
                return;
            DBLink const *link =
                m_database.m_linkmap->Find(object.pdwLinksTo[i] & LINK_ENTRY_ID_MASK);
            CQVUObject *const referrer = link ? Referrer(object, *link, type) : nullptr;
            if (!referrer || !Gather(*referrer))
                continue;
            Enter(*referrer);
        }
        Walk();
    }
}

// What a link into `object` adds to the results, or null. `type` is the start object's
// up to the first source looked at, and then stays that of the last source: whether a
// parent link is followed depends on it.
CQVUObject *Expansion::Referrer(CQVUObject &object, DBLink const &link, std::uint32_t &type) {
    std::uint32_t const linkType = link.dwType & ~PERSISTENT_BIT;
    if (!linkType || (linkType == LINK_PARENT && (type == OBJ_FILE || type == OBJ_PINNED)))
        return nullptr;
    DBObject *const source = m_database.m_idmap->Find(link.dwSource);
    if (!source || (source->dwFlags & OBJ_FLAG_VISITED))
        return nullptr;
    type = TypeOf(*source);
    auto *referrer = static_cast<CQVUObject *>(source);
    // A bare name among the referrers asks where the start object lies, not itself.
    if (type == OBJ_VFILE)
        referrer = object.Resolve(m_basePath);
    return referrer && !(referrer->dwFlags & OBJ_FLAG_VISITED) ? referrer : nullptr;
}

void Expansion::ClearMarks(CQVUDatabase &database, FFDepObjResult *results) {
    FFDepObjResult *ahead = Behind(results, Ahead);
    while (results) {
        MutexGuard const guard(database.m_hMutex);
        for (int i = 0; i < StepsPerLock && results; ++i, results = results->pNext) {
            if (ahead) {
                database.m_idmap->Prefetch(ahead->dwObjectID);
                ahead = ahead->pNext;
            }
            if (DBObject *object = database.m_idmap->Find(results->dwObjectID))
                object->dwFlags &= ~OBJ_FLAG_VISITED;
        }
    }
}

CQVUObject *Expansion::Next(CQVUDatabase &database, FFDepObjSearch &search) {
    if (!search.cursor)
        return nullptr;
    MutexGuard const guard(database.m_hMutex);
    if (FFDepObjResult const *ahead = Behind(search.cursor, Ahead))
        database.m_idmap->Prefetch(ahead->dwObjectID);
    for (FFDepObjResult *result = search.cursor; result; result = result->pNext) {
        if (DBObject *object = database.m_idmap->Find(result->dwObjectID)) {
            search.cursor = result->pNext;
            return static_cast<CQVUObject *>(object);
        }
    }
    return nullptr;
}
