// Everything that the library asks of the system, by the names that Windows gives it.
//
// Functions are in namespace win; types and constants have their own global names. On
// Windows each function is the system's own. Elsewhere it is ours, with the same types,
// results and last-error codes, in platform/posix/; what isn't supported there fails
// with the code that Windows has for it (docs/platform.md lists the limits).
//
// With QVLINKDB_HOOKS tests can make calls fail; see platform/testing.h.
#pragma once

#include "platform/wintypes.h"

#ifdef _WIN32
#include <cstdlib>
#include <cstring>
#include <cwctype>
#include <mbstring.h>
#include <ole2.h>
#else
#include "platform/posix/declarations.h"
#endif

// The functions as the system has them.
namespace win::host {

#ifdef _WIN32
// Locks
using ::CreateMutexA;
using ::DeleteCriticalSection;
using ::EnterCriticalSection;
using ::InitializeCriticalSection;
using ::LeaveCriticalSection;
using ::ReleaseMutex;
using ::WaitForSingleObject;
// Handles
using ::CloseHandle;
using ::DuplicateHandle;
// Process
using ::GetCurrentProcess;
using ::GetCurrentProcessId;
using ::GetProcessTimes;
// Files
using ::CreateFileA;
using ::DeleteFileA;
using ::FindClose;
using ::FindFirstFileA;
using ::FlushFileBuffers;
using ::GetFileAttributesA;
using ::GetFileSizeEx;
using ::MoveFileExA;
using ::ReadFile;
using ::SetFileAttributesA;
using ::SetFilePointerEx;
using ::WriteFile;
// Registry
using ::RegCloseKey;
using ::RegCreateKeyExA;
using ::RegDeleteKeyA;
using ::RegDeleteValueA;
using ::RegEnumKeyExA;
using ::RegEnumValueA;
using ::RegOpenKeyExA;
using ::RegQueryValueExA;
using ::RegSetValueExA;
// Folders, names and version
using ::GetComputerNameA;
using ::GetCurrentDirectoryA;
using ::GetSystemDirectoryA;
using ::GetVersionExA;
using ::GetWindowsDirectoryA;
using ::SetCurrentDirectoryA;
// Modules
using ::DisableThreadLibraryCalls;
using ::FreeLibrary;
using ::GetModuleFileNameA;
using ::GetModuleHandleA;
using ::GetProcAddress;
using ::LoadLibraryA;
using ::VirtualQuery;
// Resources
using ::FindResourceA;
using ::FreeResource;
using ::LoadResource;
using ::LockResource;
using ::SizeofResource;
// Objects of other programs
using ::OleInitialize;
using ::OleUninitialize;
// Memory by the page
using ::VirtualAlloc;
using ::VirtualFree;
// The calling thread's last error
using ::GetLastError;
using ::SetLastError;
// Tokens and SIDs
using ::AllocateAndInitializeSid;
using ::EqualSid;
using ::FreeSid;
using ::GetCurrentThread;
using ::GetTokenInformation;
using ::OpenProcessToken;
using ::OpenThreadToken;
// Text
using ::_mbschr;
using ::_mbsicmp;
using ::_mbstok;
using ::_memicmp;
using ::_splitpath;
using ::_splitpath_s;
using ::_stricmp;
using ::_strlwr;
using ::iswctype;
using ::strcpy_s;
// Code pages: wide text is in 16-bit units, `unsigned short`, on both systems.
using ::GetACP;
inline int WideCharToMultiByte(UINT codePage, DWORD flags, const unsigned short *wide, int length,
                               char *buffer, int capacity, const char *substitute,
                               BOOL *substituted) {
    return ::WideCharToMultiByte(codePage, flags, reinterpret_cast<const wchar_t *>(wide), length,
                                 buffer, capacity, substitute, substituted);
}
inline int MultiByteToWideChar(UINT codePage, DWORD flags, const char *bytes, int length,
                               unsigned short *buffer, int capacity) {
    return ::MultiByteToWideChar(codePage, flags, bytes, length,
                                 reinterpret_cast<wchar_t *>(buffer), capacity);
}
// Messages
using ::FormatMessageA;
using ::LocalFree;
#endif

} // namespace win::host

namespace win {
using namespace host;
}

#ifdef QVLINKDB_HOOKS
#include "platform/hooked.h"
#endif

// The library's entry: the system calls it when the library comes and goes, with
// DLL_PROCESS_ATTACH and DLL_PROCESS_DETACH.
extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved);
