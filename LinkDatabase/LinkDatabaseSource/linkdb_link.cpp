// Links: the view, making them, and making them persistent with their ends.
#include "linkdb.h"

#include "graph_index.h"
#include "link_list.h"
#include "linkdb_state.h"
#include "mutex_guard.h"

CQVULink::CQVULink(int, int, int, int, int) : DBLink{} {}
CQVULink::~CQVULink() = default;
CQVULink &CQVULink::operator=(CQVULink const &other) {
    static_cast<DBLink &>(*this) = other;
    return *this;
}

unsigned long CQVULink::GetType() const { return this ? dwType & ~PERSISTENT_BIT : 0; }

CQVUObject *CQVULink::GetSource() {
    if (!this || !g_pDatabase)
        return nullptr;
    MutexGuard const guard(g_pDatabase->m_hMutex);
    return static_cast<CQVUObject *>(g_pDatabase->LookupObject(dwSource));
}

CQVUObject *CQVULink::GetTarget() {
    if (!this || !g_pDatabase)
        return nullptr;
    MutexGuard const guard(g_pDatabase->m_hMutex);
    return static_cast<CQVUObject *>(g_pDatabase->LookupObject(dwTarget));
}

int CQVULink::Delete() {
    if (!this)
        return 1;
    if (!g_pDatabase)
        return 0;
    MutexGuard const guard(g_pDatabase->m_hMutex);
    return g_pDatabase->DeleteLink(dwID, 1, 1);
}

int CQVUObject::LinkTo(CQVUObject *target, unsigned long type) {
    if (!this || !target || !g_pDatabase)
        return 0;
    CQVUDatabase &database = *g_pDatabase;
    MutexGuard const guard(database.m_hMutex);
    __builtin_prefetch(&Node(target)->linksToRoom); // lies in the record's other cache line
    GraphIndex &index = *database.m_index;
    bool const persistent = (dwType & target->dwType & PERSISTENT_BIT) != 0;
    auto const linkType = static_cast<std::uint32_t>(type) & ~PERSISTENT_BIT;
    if (persistent &&
        index.HasLink(*Node(this), *Node(target), linkType, *database.m_idmap, *database.m_linkmap))
        return 1;
    DBLink *const link = database.MakeNewLink(dwID, target->dwID, linkType, persistent);
    if (!link)
        return 0;
    std::uint32_t const entry = link->dwID | (persistent ? 0 : LINK_ENTRY_TRANSIENT);
    // A list that can't grow lacks the entry; the link stands all the same.
    bool const leaves = LinkList(*this, Direction::From).Append(index.heap, entry);
    bool const arrives = LinkList(*target, Direction::To).Append(index.heap, entry);
    if (arrives)
        index.LinkEntered(*Node(target), *link);
    if (leaves != arrives)
        index.ListsDisagree();
    return 1;
}

int CQVUObject::MakePersistent() {
    if (!this)
        return 0;
    if (!g_pDatabase)
        return 0;
    CQVUDatabase &database = *g_pDatabase;
    MutexGuard const guard(database.m_hMutex);
    if (dwType & PERSISTENT_BIT)
        return 1;
    dwType |= PERSISTENT_BIT;
    database.m_bDirty = 1;
    for (Direction const direction : {Direction::From, Direction::To}) {
        bool const outgoing = direction == Direction::From;
        LinkList list(*this, direction);
        for (std::uint32_t i = 0; i < list.Count(); ++i) {
            std::uint32_t const id = list.entries[i] & LINK_ENTRY_ID_MASK;
            DBLink *const link = database.m_linkmap->Find(id);
            if (!link)
                continue;
            DBObject *const other =
                database.m_idmap->Find(outgoing ? link->dwTarget : link->dwSource);
            if (!other || !(other->dwType & PERSISTENT_BIT))
                continue;
            LinkList(*other, outgoing ? Direction::To : Direction::From).MakePersistent(id);
            list.entries[i] = id;
            link->dwType |= PERSISTENT_BIT;
        }
    }
    return 1;
}
