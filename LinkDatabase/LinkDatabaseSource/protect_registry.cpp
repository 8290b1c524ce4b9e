// The questions that join the graph, the registry and the lists.
#include "protect_registry.h"

#include "linkdb.h"

#include "CUtilsPath.h"
#include "linkdb_state.h"
#include "mutex_guard.h"
#include "path_text.h"
#include "protect_load.h"

#include <new>

namespace {

struct RootName {
    const char *full;
    const char *brief;
};

// The lists have no key below the users' root, and it has no row.
constexpr RootName rootNames[] = {
    {"HKEY_LOCAL_MACHINE", "HKLM"},
    {"HKEY_CURRENT_USER", "HKCU"},
    {"HKEY_CURRENT_CONFIG", "HKCC"},
    {"HKEY_CLASSES_ROOT", "HKCR"},
};

bool IsProtectedKey(const char *path) {
    UTILS::UtilsString root(path);
    UTILS::UtilsString whole(path);
    if (whole.size() == 0)
        return false;
    root.SplitData("\\", 0);
    for (RootName const &name : rootNames) {
        if (root[0] == name.full) {
            whole.ReplaceFirst(name.full, name.brief);
            break;
        }
    }
    return ProtectFind(ProtectedRegTree, whole, nullptr);
}

bool IsKeyPath(const char *path) {
    return UTILS::CUtilsPath(UTILS::UtilsString(path), 0, 0, 0).GetRegFlag() != 0;
}

} // namespace

int IsProtectedRegistryPath(const char *path) {
    try {
        return IsProtectedKey(path) ? 1 : 0;
    } catch (std::bad_alloc const &) {
        return 0; // a question doesn't throw
    }
}

int CQVUObject::IsProtected() {
    char path[PathBufferSize];
    if (!this || !g_pDatabase)
        return 0;
    {
        MutexGuard const guard(g_pDatabase->m_hMutex);
        if (!g_pDatabase->SafeGetFullPath(this, path, 0))
            return 0;
    }
    try {
        return IsKeyPath(path) ? IsProtectedRegistryPath(path) : IsProtectedPath(path);
    } catch (std::bad_alloc const &) {
        return 0;
    }
}
