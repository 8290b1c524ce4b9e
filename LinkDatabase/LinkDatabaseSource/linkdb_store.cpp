// The store: making, indexing, finding and deleting the records of objects and links.
#include "linkdb.h"

#include "build_stamp.h"
#include "database_steps.h"
#include "graph_index.h"
#include "link_list.h"
#include "mutex_guard.h"
#include "name_map.h"

#include "Diag.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace {

std::uint32_t TypeWord(unsigned long type, bool persistent) {
    return (static_cast<std::uint32_t>(type) & ~PERSISTENT_BIT) | (persistent ? PERSISTENT_BIT : 0);
}

} // namespace

CQVUObject *CQVUDatabase::AddObject(const char *name, unsigned long type, unsigned long flags,
                                    unsigned long dataSize, void *data, int persistent) {
    MutexGuard const guard(m_hMutex);
    return static_cast<CQVUObject *>(
        MakeNewObject(name, type, flags, dataSize, static_cast<unsigned char *>(data), persistent));
}

DBObject *CQVUDatabase::MakeNewObject(const char *name, unsigned long type, unsigned long flags,
                                      unsigned long dataSize, unsigned char *data, int persistent) {
    std::size_t const length = name ? strnlen(name, LongestName) : 0;
    if (type == OBJ_PINNED)
        persistent = 1;
    if (persistent)
        m_bDirty = 1;
    if (dataSize > UINT32_MAX || m_dwLastObjectID == UINT32_MAX)
        return nullptr;
    ObjectNode *const node = m_idmap->Make(m_dwLastObjectID + 1);
    if (!node)
        return nullptr;
    m_dwLastObjectID = node->dwID; // spent even if the object comes to nothing
    if (length && (node->pszName = m_index->heap.AllocateArray<char>(length + 1))) {
        std::memcpy(node->pszName, name, length);
        node->pszName[length] = '\0';
        node->nameRoom = static_cast<std::uint32_t>(length + 1);
    }
    node->dwType = TypeWord(type, persistent != 0);
    node->dwFlags = static_cast<std::uint32_t>(flags);
    if (dataSize) {
        node->pData = m_index->heap.AllocateArray<unsigned char>(dataSize);
        if (!node->pData) {
            DatabaseSteps::FreeObject(*this, node);
            return nullptr;
        }
        if (data)
            std::memcpy(node->pData, data, dataSize);
        else
            std::memset(node->pData, 0, dataSize);
        node->dwDataSize = node->dataRoom = static_cast<std::uint32_t>(dataSize);
    }
    return DatabaseSteps::IndexOrFree(*this, node) ? node : nullptr;
}

// The record was made by MakeNewObject or by the reader.
void CQVUDatabase::IndexObject(DBObject *pObj) {
    if (m_idmap->Find(pObj->dwID))
        Diag(1, "linkdb", "CQVUDatabase::IndexObject", 78, BuildStamp, "%s - %lu",
             "m_idmap.find(pObj->dwID) == m_idmap.end()",
             static_cast<unsigned long>(win::GetLastError()));
    ObjectNode *const node = Node(pObj);
    if (node->current)
        return; // it stands there itself
    std::vector<ObjectNode *> &retired = m_index->retired;
    if (retired.size() == retired.capacity())
        retired.reserve(2 * retired.size() + 1); // entering can't be undone
    if (ObjectNode *former = m_idmap->Enter(node)) {
        retired.push_back(former);
        m_index->tree.MarkIrregular();
    }
    m_namemap->Index(*node);
    m_index->tree.ObjectIndexed(*node);
}

bool DatabaseSteps::IndexOrFree(CQVUDatabase &database, DBObject *object) {
    try {
        database.IndexObject(object);
        return true;
    } catch (std::bad_alloc const &) {
        FreeObject(database, object);
        return false;
    }
}

void DatabaseSteps::FreeObject(CQVUDatabase &database, DBObject *object) {
    database.m_index->FreeParts(*Node(object));
    database.m_idmap->Free(Node(object));
}

DBLink *CQVUDatabase::MakeNewLink(unsigned long source, unsigned long target, unsigned long type,
                                  int persistent) {
    // A list entry has 30 bits for the id.
    if (source > UINT32_MAX || target > UINT32_MAX || m_dwLastLinkID >= LINK_ENTRY_ID_MASK)
        return nullptr;
    DBLink *const link = DatabaseSteps::EnterLink(
        *this, {m_dwLastLinkID + 1, static_cast<std::uint32_t>(source),
                static_cast<std::uint32_t>(target), TypeWord(type, persistent != 0)});
    if (!link)
        return nullptr;
    if (persistent)
        m_bDirty = 1;
    m_dwLastLinkID = link->dwID;
    m_index->LinkIDHandedOut(link->dwID);
    return link;
}

DBLink *DatabaseSteps::EnterLink(CQVUDatabase &database, DBLink const &record) {
    LinkMap &links = *database.m_linkmap;
    DBLink *link = links.Find(record.dwID);
    bool const known = link != nullptr;
    if (!known && !(link = links.Make(record.dwID)))
        return nullptr;
    *link = record;
    try {
        if (!known)
            links.Enter(link);
    } catch (std::bad_alloc const &) {
        links.Free(link);
        return nullptr;
    }
    return link;
}

DBObject *CQVUDatabase::LookupObject(unsigned long id) {
    MutexGuard const guard(m_hMutex);
    return m_idmap->Find(id);
}

DBLink *CQVUDatabase::LookupLink(unsigned long id) const { return m_linkmap->Find(id); }

CQVUObject *CQVUDatabase::GetRootObject() {
    MutexGuard const guard(m_hMutex);
    return static_cast<CQVUObject *>(LookupObject(1));
}

int CQVUDatabase::DeleteLink(unsigned long id, int fromSource, int fromTarget) {
    MutexGuard const guard(m_hMutex);
    DBLink *const link = m_linkmap->Find(id);
    if (!link)
        return 0;
    m_linkmap->Leave(*link);
    DBObject *const source = m_idmap->Find(link->dwSource);
    DBObject *const target = m_idmap->Find(link->dwTarget);
    if (fromSource && source)
        LinkList(*source, Direction::From).Remove(link->dwID);
    std::uint32_t removed = 0;
    if (fromTarget && target)
        removed = LinkList(*target, Direction::To).Remove(link->dwID);
    if (link->dwType & PERSISTENT_BIT)
        m_bDirty = 1;
    DBLink const gone = *link;
    m_linkmap->Free(link);
    if (target)
        m_index->LinkLeft(*Node(target), gone, removed, *m_linkmap);
    return 1;
}

int CQVUDatabase::DeleteObject(unsigned long id) {
    ObjectNode *const object = m_idmap->Find(id);
    if (!object)
        return 0;
    m_idmap->Leave(*object);
    m_namemap->Remove(*object);
    m_index->tree.Remove(*object);
    DatabaseSteps::DropLinks(*this, *object);
    if (object->dwType & PERSISTENT_BIT)
        m_bDirty = 1;
    DatabaseSteps::FreeObject(*this, object);
    return 1;
}

// The object is out of m_idmap, so that only its partners' lists change.
void DatabaseSteps::DropLinks(CQVUDatabase &database, DBObject &object) {
    LinkList outgoing(object, Direction::From);
    for (std::uint32_t i = 0; i < outgoing.Count(); ++i)
        database.DeleteLink(outgoing.entries[i] & LINK_ENTRY_ID_MASK, 0, 1);
    outgoing.Free(database.m_index->heap);
    LinkList incoming(object, Direction::To);
    for (std::uint32_t i = 0; i < incoming.Count(); ++i)
        database.DeleteLink(incoming.entries[i] & LINK_ENTRY_ID_MASK, 1, 0);
    incoming.Free(database.m_index->heap);
}
