// Loaded modules. A module's handle is the address that it is loaded at, as on Windows.
#pragma once

#include <string>

#include "platform/winapi.h"

namespace platform {

struct Module {
    HMODULE handle;     // null if there is none
    const char *name;   // the loader's name of it; empty for the program
    DWORD protection;   // of the part that holds the address asked for
    SIZE_T bytesBehind; // from the address to the end of that part

    explicit operator bool() const { return handle != nullptr; }
};

// The module that an address lies in, of the program and what it has loaded.
Module ModuleAt(const void *address);

// Path of the file of a module, on the host; empty if the module has none.
std::string ModulePath(Module const &module);

// This library, or the program where it is linked in.
HMODULE OwnModule();
// The host's path of it, as found when it was loaded.
std::string OwnPath();

} // namespace platform
