// Lets tests make the system's services fail. Compiled in with QVLINKDB_HOOKS only, on
// both systems; a library that is shipped has none of it.
//
// Hooks belong to the process. Set them while no other thread is in the library.
#pragma once

#ifdef QVLINKDB_HOOKS

#include "platform/wintypes.h"

namespace testing_hooks {

enum class Moment {
    Before, // the service hasn't been called
    After   // it has, and succeeded or failed; its last error is set
};

struct Call {
    const char *service; // "CreateFileA" and so on, a static text
    Moment moment;
    const char *path; // the path, module or function name that the call is about, or null
    const void *data; // what is to be written by WriteFile, or null
    DWORD *size;      // bytes to be read or written; lower it before a ReadFile or WriteFile and
                      // the call handles so many. Null for the other services
};

// Before: return true to have the call fail without reaching the system, with the last
// error that the hook set by win::SetLastError; false to let it through. After: the
// result is ignored. A hook may end the process, and may not throw.
using Hook = bool (*)(Call const &call, void *context);

// Installs a hook, called before and after each of these services: CreateMutexA,
// CloseHandle, DuplicateHandle, CreateFileA, ReadFile, WriteFile, SetFilePointerEx, GetFileSizeEx,
// FlushFileBuffers, GetFileAttributesA, SetFileAttributesA, DeleteFileA, MoveFileExA,
// FindFirstFileA, FindClose, GetComputerNameA, GetCurrentDirectoryA, SetCurrentDirectoryA,
// GetSystemDirectoryA, GetWindowsDirectoryA, GetVersionExA, LoadLibraryA,
// FreeLibrary, GetModuleHandleA, GetModuleFileNameA, GetProcAddress, FindResourceA (path is
// the type), SizeofResource, LoadResource, LockResource, FreeResource, OleInitialize,
// OleUninitialize, WideCharToMultiByte, MultiByteToWideChar, FormatMessageA,
// OpenProcessToken, OpenThreadToken, GetTokenInformation, AllocateAndInitializeSid, and those
// of the registry: RegOpenKeyExA, RegCreateKeyExA, RegCloseKey, RegQueryValueExA,
// RegSetValueExA, RegDeleteValueA, RegDeleteKeyA, RegEnumKeyExA, RegEnumValueA (path is the
// key's or the value's; a failed call answers the last error that the hook set). Null takes
// it away.
void SetHook(Hook hook, void *context);

// What GetVersionExA reports instead of the system's version; 0, 0, 0 makes the system
// answer again. Not asked if a hook fails the call.
void SetVersion(DWORD platformId, DWORD major, DWORD minor);

// The groups that tokens tell instead of the system's; null makes the system answer again.
// With groups for the thread it has a token, as one that impersonates does. The record and
// its SIDs stay the caller's, and have to stay while they are set.
void SetThreadGroups(TOKEN_GROUPS const *groups);
void SetProcessGroups(TOKEN_GROUPS const *groups);

// Resources that every module has beside its own; none with null. They stay the caller's,
// and have to stay while they are set.
struct Resource {
    const char *type;
    WORD id;
    const void *bytes;
    DWORD size;
};
void SetResources(Resource const *resources, std::size_t count);

} // namespace testing_hooks

#endif
