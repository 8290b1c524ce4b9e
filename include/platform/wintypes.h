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
