#include "utils/string_resources.h"

#include "platform/winapi.h"

namespace UTILS {
namespace {

using LoadFunction = int (*)(HINSTANCE instance, unsigned id, char *buffer, int capacity);

// The module's entry, or null where it isn't beside the library. It stays loaded.
LoadFunction FindLoad() {
    HMODULE const module = win::LoadLibraryA("ZKCommon.dll");
    if (!module)
        return nullptr;
    return reinterpret_cast<LoadFunction>(
        reinterpret_cast<void (*)()>(win::GetProcAddress(module, "ZKLoadStringA")));
}

} // namespace

int LoadResourceString(HINSTANCE instance, unsigned int id, char *buffer, int capacity) {
    static LoadFunction const load = FindLoad();
    return load ? load(instance, id, buffer, capacity) : 0;
}

} // namespace UTILS
