// The system's two folders as the library finds them where nobody tells it others.
#pragma once

#include "system_folders.h"

#ifdef _WIN32

#include <windows.h>

inline SystemFolders OwnFolders() {
    char system[MAX_PATH] = {};
    char windows[MAX_PATH] = {};
    GetSystemDirectoryA(system, sizeof system);
    GetWindowsDirectoryA(windows, sizeof windows);
    return {system, windows};
}

#else

inline SystemFolders OwnFolders() { return {"C:\\windows\\system32", "C:\\windows"}; }

#endif
