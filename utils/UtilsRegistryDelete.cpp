// Deletion of keys, alone or with all that is below them.
#include "UtilsRegistry.h"

#include "PathComponents.h"

#include "platform/winapi.h"

namespace UTILS {

// As the index grows while values go, every second one stays; the key goes next anyway.
void UtilsRegistry::DeleteValues() {
    UtilsString name;
    UtilsString value;
    for (unsigned long index = 0; RegEnumValueA(index, name, value, 0); ++index)
        if (name.size() != 0 && currentKey)
            lastError = win::RegDeleteValueA(currentKey, name);
}

int UtilsRegistry::RegDeleteKeyA(int recursive) {
    UtilsString const start = GetRegistryPath(1);
    UtilsString const below = GetRegistryPath(0);
    if (!currentKey || !below)
        return 0;
    std::vector<std::string> const parts = Components(ViewOf(below));
    std::string parent;
    for (std::size_t i = 0; i + 1 < parts.size(); ++i)
        parent += parts[i] + '\\';
    if (!recursive) {
        if (!RegOpenKeyA(parent))
            return 0;
        lastError = win::RegDeleteKeyA(currentKey, parts.back().c_str());
        return lastError == ERROR_SUCCESS;
    }
    do {
        UtilsString name;
        while (RegEnumKeyA(0, name, 0) && RegOpenSubKey(name)) {
        }
        DeleteValues();
        if (!RegDeleteKeyA(0)) {
            RegOpenKeyA(start);
            return 0;
        }
    } while (path != parent);
    return 1;
}

int UtilsRegistry::RegDeleteKeyA(const UtilsString &keyPath, int recursive) {
    UtilsString const before = GetRegistryPath(1);
    if (!CanUse(keyPath) || !RegOpenKeyA(keyPath))
        return 0;
    int const deleted = RegDeleteKeyA(recursive);
    if (deleted)
        RegOpenKeyA(before);
    return deleted;
}

} // namespace UTILS
