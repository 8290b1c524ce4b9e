// Calls the library's entry when the library comes and goes, as the system does on
// Windows.

#include "platform/posix/handles.h"
#include "platform/posix/keys.h"
#include "platform/posix/localmemory.h"
#include "platform/posix/modules.h"
#include "platform/posix/settings.h"
#include "platform/posix/threads.h"
#include "platform/posix/wide.h"

#include <climits>
#include <cstring>

namespace platform {
namespace {

// Plain memory: other static objects may ask for it after this file's are gone.
char ownPath[PATH_MAX];
bool unloading = false;

// Runs before the static objects are destroyed if the library is unloaded, and after
// that if the process ends.
__attribute__((destructor)) void NoteUnloading() { unloading = true; }

void KeepOwnPath() {
    std::string const path = ModulePath(ModuleAt(&unloading));
    if (path.size() < sizeof ownPath)
        std::memcpy(ownPath, path.c_str(), path.size() + 1);
}

// The order is Windows' own: static objects are made, the entry is told; the entry is
// told, static objects go. So it has to be made last: it is in the last of the library's
// sources, and what the entry needs has an init_priority.
class Entry {
public:
    Entry() {
        KeepOwnPath();
        DllMain(OwnModule(), DLL_PROCESS_ATTACH, nullptr);
        // The program may still choose another prefix, before it calls anything.
        ForgetPrefix();
    }

    // The third argument tells, as on Windows, that the process ends. Nothing is given
    // back then: other threads may still run.
    ~Entry() {
        DllMain(OwnModule(), DLL_PROCESS_DETACH, unloading ? nullptr : ownPath);
        if (!unloading)
            return;
        ReleaseThreads();
        ReleaseHandles();
        ReleaseRegistry();
        ReleaseLocalMemory();
        ReleaseSettings();
        ReleaseWide();
    }
};

Entry entry;

} // namespace

HMODULE OwnModule() { return ModuleAt(&unloading).handle; }

std::string OwnPath() { return ownPath[0] ? ownPath : ModulePath(ModuleAt(&unloading)); }

} // namespace platform
