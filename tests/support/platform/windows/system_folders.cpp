#include "system_folders.h"

#include <windows.h>

SystemFolders CurrentSystemFolders() {
    char system[MAX_PATH] = {};
    char windows[MAX_PATH] = {};
    GetSystemDirectoryA(system, sizeof system);
    GetWindowsDirectoryA(windows, sizeof windows);
    return {system, windows};
}

bool TellSystemFolders(SystemFolders const &) { return false; }
