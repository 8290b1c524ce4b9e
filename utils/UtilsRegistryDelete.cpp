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
    UtilsString const parts = Components(below);
    unsigned long const last = parts.GetNumberOfStrings() - 1;
    UtilsString parent;
    for (unsigned long i = 0; i < last; ++i)
        parent.Append(parts.GetStringNumber(i)).Append('\\');
    if (!recursive) {
        if (!RegOpenKeyA(parent))
            return 0;
        lastError = win::RegDeleteKeyA(currentKey, parts.GetStringNumber(last));
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
    } while (parent != GetRegistryPath(0));
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
