// The library's entry point: what happens when it comes and goes.
#include "linkdb.h"

#include "linkdb_state.h"
#include "protect_load.h"

#include "platform/winapi.h"

HINSTANCE g_hModule = nullptr;

namespace {

void Attach(HINSTANCE module) {
    g_hModule = module;
    LoadProtectedFiles();
    LoadProtectedRegs();
    win::DisableThreadLibraryCalls(g_hModule);
}

void Detach() {
    g_hModule = nullptr;
    delete g_pDatabase; // whatever its count says; sets g_pDatabase to null
    g_pDatabase = nullptr;
}

} // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) {
        Attach(module);
    } else if (reason == DLL_PROCESS_DETACH) {
        Detach();
    }
    return TRUE;
}
