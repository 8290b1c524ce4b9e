// The view of an object: its own fields. Paths, links, searches and expansion have
// files of their own.
#include "linkdb.h"

#include "database_steps.h"
#include "graph_index.h"
#include "linkdb_state.h"
#include "mutex_guard.h"
#include "name_map.h"

#include <algorithm>
#include <cstring>

CQVUObject::CQVUObject(int, int, int, int, int) : DBObject{} {}
CQVUObject::~CQVUObject() = default;
CQVUObject &CQVUObject::operator=(CQVUObject const &other) {
    static_cast<DBObject &>(*this) = other;
    return *this;
}

void *DatabaseSteps::Mutex() { return g_pDatabase ? g_pDatabase->m_hMutex : nullptr; }

unsigned long CQVUObject::GetUniqueID() { return this ? dwID : 0; }

int CQVUObject::GetName(char *buffer, unsigned long size) {
    if (!this)
        return 0;
    MutexGuard const guard(DatabaseSteps::Mutex());
    if (!pszName)
        return 0;
    if (!buffer || size == 0)
        return 1;
    std::size_t const length = std::min<std::size_t>(std::strlen(pszName), size - 1);
    std::memcpy(buffer, pszName, length);
    buffer[length] = '\0';
    return 1;
}

// The name index keeps the object under its old name, and nothing marks a change.
int CQVUObject::SetName(char *name) {
    if (!this || !g_pDatabase)
        return 1;
    CQVUDatabase &database = *g_pDatabase;
    MutexGuard const guard(database.m_hMutex);
    RecordHeap &heap = database.m_index->heap;
    ObjectNode &node = *Node(this);
    char const *const text = name ? name : "";
    std::size_t const length = std::strlen(text);
    std::size_t const limit = std::min(length, LongestName);
    // A name that was at least as long as the limit is overwritten whole, without a cut.
    bool const whole = pszName && std::strlen(pszName) >= limit;
    std::size_t const stored = whole ? length : limit;
    char *place = pszName;
    auto const needed = static_cast<std::uint32_t>(stored + 1);
    if (!whole || node.nameRoom < needed)
        place = heap.AllocateArray<char>(needed);
    database.m_index->tree.NameChanges(node);
    if (place) {
        std::memmove(place, text, stored);
        place[stored] = '\0';
    }
    database.m_namemap->Rename(node, place);
    if (place != pszName) {
        heap.FreeArray(pszName, node.nameRoom);
        pszName = place;
        node.nameRoom = place ? needed : 0;
    }
    database.m_index->tree.NameChanged(node);
    return 1;
}

unsigned long CQVUObject::GetType() {
    if (!this)
        return 0;
    MutexGuard const guard(DatabaseSteps::Mutex());
    return dwType & ~PERSISTENT_BIT;
}

unsigned long CQVUObject::GetFlags() {
    if (!this)
        return 0;
    MutexGuard const guard(DatabaseSteps::Mutex());
    return dwFlags;
}

int CQVUObject::SetFlags(unsigned long flags) {
    if (!this)
        return 1;
    MutexGuard const guard(DatabaseSteps::Mutex());
    dwFlags = static_cast<std::uint32_t>(flags);
    return 1;
}

unsigned long CQVUObject::GetDataSize() {
    if (!this)
        return 0;
    MutexGuard const guard(DatabaseSteps::Mutex());
    return dwDataSize;
}

int CQVUObject::GetData(unsigned long size, unsigned char *buffer) {
    if (!this)
        return 0;
    MutexGuard const guard(DatabaseSteps::Mutex());
    std::size_t const count = std::min<std::size_t>(size, dwDataSize);
    if (count == 0 || !pData || !buffer)
        return 0;
    std::memcpy(buffer, pData, count);
    return 1;
}

int CQVUObject::SetData(unsigned long size, unsigned char *data) {
    if (!this || !g_pDatabase)
        return 0;
    MutexGuard const guard(g_pDatabase->m_hMutex);
    RecordHeap &heap = g_pDatabase->m_index->heap;
    std::uint32_t &room = Node(this)->dataRoom;
    if (!pData || dwDataSize < size) {
        heap.FreeArray(pData, room);
        dwDataSize = room = 0;
        pData = size > UINT32_MAX ? nullptr : heap.AllocateArray<unsigned char>(size);
        if (!pData)
            return 0;
        room = static_cast<std::uint32_t>(size);
    }
    if (data)
        std::memmove(pData, data, size);
    else
        std::memset(pData, 0, size);
    dwDataSize = static_cast<std::uint32_t>(size);
    return 1;
}

int CQVUObject::GetFileData(FileData *data) {
    if (!this || !data)
        return 0;
    MutexGuard const guard(DatabaseSteps::Mutex());
    if (dwDataSize != sizeof *data || !pData)
        return 0;
    std::memcpy(data, pData, sizeof *data);
    return 1;
}

int CQVUObject::IsPersistent() {
    if (!this)
        return 0;
    MutexGuard const guard(DatabaseSteps::Mutex());
    return (dwType & PERSISTENT_BIT) != 0;
}

int CQVUObject::Delete() {
    if (!this)
        return 1;
    if (!g_pDatabase)
        return 0;
    MutexGuard const guard(g_pDatabase->m_hMutex);
    return g_pDatabase->DeleteObject(dwID);
}
