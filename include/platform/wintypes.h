// The Windows types that public headers name. On Windows these are the system's own;
// elsewhere they have the same meaning and width: a DWORD is 32 bits everywhere, and a
// handle is opaque.
#pragma once

#ifdef _WIN32

#include <windows.h>

#else

#include <cstddef>
#include <cstdint>

#include "../linkdb_export.h"

using BOOL = int;
using BYTE = unsigned char;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using LONG = std::int32_t;
using UINT = unsigned int;
using LONGLONG = std::int64_t;
using ULONGLONG = std::uint64_t;
using SIZE_T = std::size_t;
using LPVOID = void *;

using HANDLE = void *;
struct HINSTANCE_RECORD;
using HINSTANCE = HINSTANCE_RECORD *;
using HMODULE = HINSTANCE;
struct HKEY_RECORD;
using HKEY = HKEY_RECORD *;

// The roots of the registry, which are open at any time. Macros, as on Windows: a variable might
// be set too late for what is made while the program starts.
inline HKEY HkeyRoot(std::uint32_t number) {
    return reinterpret_cast<HKEY>(static_cast<std::intptr_t>(static_cast<std::int32_t>(number)));
}
#define HKEY_CLASSES_ROOT HkeyRoot(0x80000000)
#define HKEY_CURRENT_USER HkeyRoot(0x80000001)
#define HKEY_LOCAL_MACHINE HkeyRoot(0x80000002)
#define HKEY_USERS HkeyRoot(0x80000003)
#define HKEY_CURRENT_CONFIG HkeyRoot(0x80000005)

struct FILETIME {
    DWORD dwLowDateTime; // 100 ns since 1601 (UTC)
    DWORD dwHighDateTime;
};

// What a search tells of a file. The name ends in a NUL.
struct WIN32_FIND_DATAA {
    DWORD dwFileAttributes;
    FILETIME ftCreationTime;
    FILETIME ftLastAccessTime;
    FILETIME ftLastWriteTime;
    DWORD nFileSizeHigh;
    DWORD nFileSizeLow;
    DWORD dwReserved0;
    DWORD dwReserved1;
    char cFileName[260];
    char cAlternateFileName[14];
};

// A recursive lock of this process, for the four calls on critical sections; never copied
// or moved while it is in use.
struct CRITICAL_SECTION {
    alignas(8) BYTE opaque[48];
};

using PSID = void *;
struct SID_AND_ATTRIBUTES {
    PSID Sid;
    DWORD Attributes;
};
struct QVLINKDB_API _TOKEN_GROUPS { // what is instantiated for it is exported only if it is
    DWORD GroupCount;
    SID_AND_ATTRIBUTES Groups[1]; // as many as are counted
};
using TOKEN_GROUPS = _TOKEN_GROUPS;

#endif
