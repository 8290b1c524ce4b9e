// The database instance: coming, going, and the frame of loading it.
#include "linkdb.h"

#include "database_file.h"
#include "database_steps.h"
#include "graph_index.h"
#include "linkdb_state.h"
#include "mutex_guard.h"
#include "name_map.h"

#include <algorithm>
#include <cstring>
#include <new>

CQVUDatabase *g_pDatabase = nullptr;

CQVUDatabase *AttachDatabase(const char *directory) {
    if (g_pDatabase) {
        g_pDatabase->AddRef();
        return g_pDatabase;
    }
    try {
        g_pDatabase = new CQVUDatabase;
    } catch (std::bad_alloc const &) {
        return nullptr;
    }
    if (!g_pDatabase->Initialize(directory)) {
        delete g_pDatabase;
        g_pDatabase = nullptr;
    }
    return g_pDatabase;
}

CQVUDatabase::CQVUDatabase()
    : m_hMutex(nullptr), m_bDirty(0), m_dwRefCount(1), m_dwLastObjectID(1), m_dwLastLinkID(0),
      m_idmap(std::make_unique<IdMap<ObjectNode>>()), m_namemap(std::make_unique<NameMap>()),
      m_linkmap(std::make_unique<IdMap<DBLink>>()), m_pszFileName(nullptr), m_bSaveFlag(1),
      m_index(std::make_unique<GraphIndex>()) {
    m_hMutex = win::CreateMutexA(nullptr, FALSE, nullptr);
}

// The records go with the memory of the maps, their parts with that of m_index.
CQVUDatabase::~CQVUDatabase() {
    if (m_bDirty && m_bSaveFlag)
        Flush();
    m_namemap.reset();
    m_idmap.reset();
    m_linkmap.reset();
    if (g_pDatabase == this)
        g_pDatabase = nullptr;
    if (m_hMutex)
        win::CloseHandle(m_hMutex);
    delete[] m_pszFileName;
}

unsigned long CQVUDatabase::AddRef() { return ++m_dwRefCount; }

unsigned long CQVUDatabase::Release() {
    std::uint32_t const count = --m_dwRefCount;
    if (count == 0)
        delete this;
    return count;
}

void CQVUDatabase::SetSaveFlag(int save) { m_bSaveFlag = save; }

int CQVUDatabase::Initialize(const char *directory) {
    MutexGuard const guard(m_hMutex);
    delete[] m_pszFileName;
    m_pszFileName = DatabaseFileName(directory);
    bool const again = !m_idmap->Empty();
    DatabaseReader reader(*this);
    bool const accepted = m_pszFileName && reader.Open(m_pszFileName) && reader.ReadObjects();
    DatabaseSteps::MakeRootObject(*this);
    if (accepted)
        reader.ReadLinks();
    if (again)
        m_index->Reloaded();
    if (again || reader.HighestEntryID() > m_dwLastLinkID)
        m_index->CollectStaleEntries(*m_idmap, m_dwLastLinkID);
    return 1;
}

void DatabaseSteps::MakeRootObject(CQVUDatabase &database) {
    if (database.m_idmap->Find(1))
        return;
    ObjectNode *const root = database.m_idmap->Make(1);
    if (!root)
        return;
    root->dwType = PERSISTENT_BIT;
    // The ids of loaded objects stay taken.
    database.m_dwLastObjectID = std::max(database.m_dwLastObjectID, root->dwID);
    IndexOrFree(database, root);
}

void CQVUDatabase::Flush() {
    MutexGuard const guard(m_hMutex);
    if (!m_pszFileName || m_idmap->Empty())
        return;
    if (DBObject const *root = m_idmap->Find(1); root && m_idmap->Size() == 1)
        if (!((root->dwLinksFrom | root->dwLinksTo) & LINK_ENTRY_ID_MASK))
            return; // a bare root is never written
    DatabaseWriter(*this).Write();
}
