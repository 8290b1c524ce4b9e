// Dependency expansion: what an object depends on, and what refers to it.
#include "linkdb.h"

#include "expansion.h"
#include "linkdb_state.h"
#include "mutex_guard.h"
#include "path_text.h"
#include "search_pool.h"

#include <cstring>
#include <mutex>

namespace {

// Closing takes no lock of the database's, so the pool has one.
std::mutex g_poolMutex;
SearchPool<FFDepObjSearch> g_expansionSearches;

// The folder of the object at this path, for Resolve. The backslash of a drive root is
// spared: straight under a drive the text stays whole.
void CutToFolder(char *path) {
    std::size_t const length = std::strlen(path);
    for (std::size_t i = length; i-- > 3;) {
        if (path[i] == '\\') {
            path[i] = '\0';
            return;
        }
    }
}

void FreeResults(FFDepObjResult *result) {
    while (result) {
        FFDepObjResult *const next = result->pNext;
        delete result;
        result = next;
    }
}

FFDepObjSearch *OpenSearch() {
    std::lock_guard<std::mutex> const lock(g_poolMutex);
    return g_expansionSearches.Open();
}

void CloseSearch(FFDepObjSearch *search) {
    FFDepObjResult *const results = search->pHead;
    std::lock_guard<std::mutex> const lock(g_poolMutex);
    if (g_expansionSearches.Close(SearchPool<FFDepObjSearch>::Handle(search)))
        FreeResults(results);
}

using Expander = void (CQVUDatabase::*)(CQVUObject *, char *, FFDepObjResult **);

SearchHandle FindFirst(CQVUObject *object, Expander expand, CQVUObject **out, double *pdValue) {
    if (!object || !g_pDatabase)
        return 0;
    char path[PathBufferSize];
    path[3] = '\0'; // a path shorter than this has no folder to cut to
    if (!g_pDatabase->GetFullPath(object, path))
        return 0;
    CutToFolder(path);
    FFDepObjSearch *const search = OpenSearch();
    if (!search)
        return 0;
    (g_pDatabase->*expand)(object, path, &search->pHead);
    Expansion::ClearMarks(*g_pDatabase, search->pHead);
    search->cursor = search->pHead;
    CQVUObject *const first = Expansion::Next(*g_pDatabase, *search);
    if (!first) {
        CloseSearch(search);
        return 0;
    }
    if (pdValue)
        *pdValue = 1.0;
    if (out)
        *out = first;
    return SearchPool<FFDepObjSearch>::Handle(search);
}

} // namespace

SearchHandle CQVUObject::FindFirstDependentObject(CQVUObject **out, double *pdValue) {
    return FindFirst(this, &CQVUDatabase::ExpandObjectRef, out, pdValue);
}

SearchHandle CQVUObject::FindFirstReferencingApp(CQVUObject **out, double *pdValue) {
    return FindFirst(this, &CQVUDatabase::ExpandObjectRefBackwards, out, pdValue);
}

int CQVUObject::FindNextDependentObject(SearchHandle handle, CQVUObject **out, double *pdValue) {
    FFDepObjSearch *const search = g_expansionSearches.Get(handle);
    CQVUObject *const found =
        search && g_pDatabase ? Expansion::Next(*g_pDatabase, *search) : nullptr;
    if (!found)
        return 0;
    if (out)
        *out = found;
    if (pdValue)
        *pdValue = 1.0;
    return 1;
}

int CQVUObject::FindNextReferencingApp(SearchHandle handle, CQVUObject **out, double *pdValue) {
    return FindNextDependentObject(handle, out, pdValue);
}

void CQVUObject::FindCloseDependentObject(SearchHandle handle) {
    if (FFDepObjSearch *search = g_expansionSearches.Get(handle))
        CloseSearch(search);
}

void CQVUObject::FindCloseReferencingApp(SearchHandle handle) { FindCloseDependentObject(handle); }

void CQVUDatabase::ExpandObjectRef(CQVUObject *object, char *basePath, FFDepObjResult **results) {
    if (object && results)
        Expansion(*this, basePath, *results).Forward(*object);
}

void CQVUDatabase::ExpandObjectRefBackwards(CQVUObject *object, char *basePath,
                                            FFDepObjResult **results) {
    if (object && results)
        Expansion(*this, basePath, *results).Backward(*object);
}
