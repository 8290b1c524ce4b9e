// The library's entry point: what happens when it comes and goes.
#include "linkdb.h"

#include "linkdb_state.h"

#include "platform/winapi.h"

namespace {

HINSTANCE g_hModule = nullptr; // this library's own

void Detach() {
    g_hModule = nullptr;
    delete g_pDatabase; // whatever its count says; sets g_pDatabase to null
    g_pDatabase = nullptr;
}

} // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) {
        g_hModule = module;
        win::DisableThreadLibraryCalls(g_hModule);
    } else if (reason == DLL_PROCESS_DETACH) {
        Detach();
    }
    return TRUE;
}
