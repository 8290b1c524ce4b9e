// The Windows services outside Windows: records, constants and functions as the
// system's headers have them. Included by platform/winapi.h only.
#pragma once

#include "platform/wintypes.h"

#include <cstdarg>

// Windows has calling conventions; here there is one.
#define WINAPI

using FARPROC = std::intptr_t (*)();
using LPCVOID = const void *;
using HLOCAL = void *;
using HGLOBAL = void *;
struct HRSRC_RECORD;
using HRSRC = HRSRC_RECORD *;
using HRESULT = std::int32_t;
using errno_t = int;
using REGSAM = DWORD;
using LSTATUS = LONG;

union LARGE_INTEGER {
    struct {
        DWORD LowPart;
        LONG HighPart;
    } u;
    LONGLONG QuadPart;
};

struct OSVERSIONINFOA {
    DWORD dwOSVersionInfoSize; // 148, set by the caller
    DWORD dwMajorVersion;
    DWORD dwMinorVersion;
    DWORD dwBuildNumber;
    DWORD dwPlatformId;
    char szCSDVersion[128];
};

struct MEMORY_BASIC_INFORMATION {
    void *BaseAddress; // the page of the address
    void *AllocationBase;
    DWORD AllocationProtect;
    WORD PartitionId;
    SIZE_T RegionSize;
    DWORD State;
    DWORD Protect;
    DWORD Type;
};

enum TOKEN_INFORMATION_CLASS : int { TokenGroups = 2 };

struct SID_IDENTIFIER_AUTHORITY {
    BYTE Value[6]; // the highest byte first
};

struct SECURITY_ATTRIBUTES;
struct OVERLAPPED;

static_assert(sizeof(OSVERSIONINFOA) == 148 && sizeof(FILETIME) == 8);
static_assert(sizeof(WIN32_FIND_DATAA) == 320);
static_assert(sizeof(LARGE_INTEGER) == 8 && sizeof(MEMORY_BASIC_INFORMATION) == 48);

constexpr BOOL FALSE = 0;
constexpr BOOL TRUE = 1;
constexpr DWORD MAX_PATH = 260;
constexpr DWORD INFINITE = 0xffffffff;
inline void *const INVALID_HANDLE_VALUE = reinterpret_cast<HANDLE>(std::intptr_t{-1});

constexpr DWORD DUPLICATE_SAME_ACCESS = 2;

constexpr DWORD DLL_PROCESS_DETACH = 0;
constexpr DWORD DLL_PROCESS_ATTACH = 1;

constexpr DWORD WAIT_OBJECT_0 = 0;
constexpr DWORD WAIT_ABANDONED = 0x80;
constexpr DWORD WAIT_TIMEOUT = 258;
constexpr DWORD WAIT_FAILED = 0xffffffff;

constexpr DWORD GENERIC_READ = 0x80000000;
constexpr DWORD GENERIC_WRITE = 0x40000000;
constexpr DWORD FILE_SHARE_READ = 1;
constexpr DWORD FILE_SHARE_WRITE = 2;
constexpr DWORD FILE_SHARE_DELETE = 4;
constexpr DWORD CREATE_NEW = 1;
constexpr DWORD CREATE_ALWAYS = 2;
constexpr DWORD OPEN_EXISTING = 3;
constexpr DWORD OPEN_ALWAYS = 4;
constexpr DWORD TRUNCATE_EXISTING = 5;
constexpr DWORD FILE_ATTRIBUTE_READONLY = 1;
constexpr DWORD FILE_ATTRIBUTE_HIDDEN = 2;
constexpr DWORD FILE_ATTRIBUTE_SYSTEM = 4;
constexpr DWORD FILE_ATTRIBUTE_DIRECTORY = 0x10;
constexpr DWORD FILE_ATTRIBUTE_ARCHIVE = 0x20;
constexpr DWORD FILE_ATTRIBUTE_NORMAL = 0x80;
constexpr DWORD FILE_ATTRIBUTE_REPARSE_POINT = 0x400;
constexpr DWORD FILE_FLAG_SEQUENTIAL_SCAN = 0x08000000;
constexpr DWORD INVALID_FILE_ATTRIBUTES = 0xffffffff;
constexpr DWORD FILE_BEGIN = 0;
constexpr DWORD FILE_CURRENT = 1;
constexpr DWORD FILE_END = 2;
constexpr DWORD MOVEFILE_REPLACE_EXISTING = 1;
constexpr DWORD MOVEFILE_WRITE_THROUGH = 8;

constexpr DWORD VER_PLATFORM_WIN32_WINDOWS = 1;
constexpr DWORD VER_PLATFORM_WIN32_NT = 2;

constexpr DWORD PAGE_NOACCESS = 0x01;
constexpr DWORD PAGE_READONLY = 0x02;
constexpr DWORD PAGE_READWRITE = 0x04;
constexpr DWORD PAGE_EXECUTE_READ = 0x20;
constexpr DWORD PAGE_EXECUTE_READWRITE = 0x40;
constexpr DWORD PAGE_EXECUTE_WRITECOPY = 0x80;
constexpr DWORD MEM_COMMIT = 0x1000;
constexpr DWORD MEM_RESERVE = 0x2000;
constexpr DWORD MEM_RELEASE = 0x8000;
constexpr DWORD MEM_FREE = 0x10000;
constexpr DWORD MEM_IMAGE = 0x1000000;

constexpr REGSAM KEY_READ = 0x20019;
constexpr REGSAM KEY_SET_VALUE = 2;
constexpr REGSAM KEY_CREATE_SUB_KEY = 4;
constexpr DWORD REG_NONE = 0;
constexpr DWORD REG_SZ = 1;
constexpr DWORD REG_EXPAND_SZ = 2;
constexpr DWORD REG_BINARY = 3;
constexpr DWORD REG_DWORD = 4;
constexpr DWORD REG_DWORD_BIG_ENDIAN = 5;
constexpr DWORD REG_LINK = 6;
constexpr DWORD REG_MULTI_SZ = 7;
constexpr DWORD REG_QWORD = 11;
constexpr DWORD REG_CREATED_NEW_KEY = 1;
constexpr DWORD REG_OPENED_EXISTING_KEY = 2;

constexpr DWORD TOKEN_QUERY = 8;
constexpr DWORD SE_GROUP_MANDATORY = 1;
constexpr DWORD SE_GROUP_ENABLED_BY_DEFAULT = 2;
constexpr DWORD SE_GROUP_ENABLED = 4;
constexpr DWORD SECURITY_BUILTIN_DOMAIN_RID = 32;
constexpr DWORD DOMAIN_ALIAS_RID_ADMINS = 544;

constexpr UINT CP_ACP = 0;
constexpr UINT CP_UTF8 = 65001;
constexpr DWORD WC_SEPCHARS = 0x20;
constexpr DWORD WC_ERR_INVALID_CHARS = 0x80;
constexpr DWORD WC_COMPOSITECHECK = 0x200;
constexpr DWORD WC_NO_BEST_FIT_CHARS = 0x400;
constexpr DWORD MB_PRECOMPOSED = 1;
constexpr DWORD MB_ERR_INVALID_CHARS = 8;

constexpr DWORD FORMAT_MESSAGE_ALLOCATE_BUFFER = 0x100;
constexpr DWORD FORMAT_MESSAGE_FROM_STRING = 0x400;
constexpr DWORD FORMAT_MESSAGE_FROM_SYSTEM = 0x1000;

constexpr DWORD ERROR_SUCCESS = 0;
constexpr DWORD ERROR_FILE_NOT_FOUND = 2;
constexpr DWORD ERROR_PATH_NOT_FOUND = 3;
constexpr DWORD ERROR_TOO_MANY_OPEN_FILES = 4;
constexpr DWORD ERROR_ACCESS_DENIED = 5;
constexpr DWORD ERROR_INVALID_HANDLE = 6;
constexpr DWORD ERROR_NOT_ENOUGH_MEMORY = 8;
constexpr DWORD ERROR_NOT_SAME_DEVICE = 17;
constexpr DWORD ERROR_WRITE_PROTECT = 19;
constexpr DWORD ERROR_GEN_FAILURE = 31;
constexpr DWORD ERROR_SHARING_VIOLATION = 32;
constexpr DWORD ERROR_HANDLE_EOF = 38;
constexpr DWORD ERROR_NOT_SUPPORTED = 50;
constexpr DWORD ERROR_BAD_NETPATH = 53;
constexpr DWORD ERROR_BAD_LENGTH = 24;
constexpr DWORD ERROR_FILE_EXISTS = 80;
constexpr DWORD ERROR_INVALID_PARAMETER = 87;
constexpr DWORD ERROR_BUFFER_OVERFLOW = 111;
constexpr DWORD ERROR_DISK_FULL = 112;
constexpr DWORD ERROR_CALL_NOT_IMPLEMENTED = 120;
constexpr DWORD ERROR_INSUFFICIENT_BUFFER = 122;
constexpr DWORD ERROR_INVALID_NAME = 123;
constexpr DWORD ERROR_MOD_NOT_FOUND = 126;
constexpr DWORD ERROR_PROC_NOT_FOUND = 127;
constexpr DWORD ERROR_NEGATIVE_SEEK = 131;
constexpr DWORD ERROR_SEEK_ON_DEVICE = 132;
constexpr DWORD ERROR_DIR_NOT_EMPTY = 145;
constexpr DWORD ERROR_BAD_PATHNAME = 161;
constexpr DWORD ERROR_BUSY = 170;
constexpr DWORD ERROR_ALREADY_EXISTS = 183;
constexpr DWORD ERROR_BAD_EXE_FORMAT = 193;
constexpr DWORD ERROR_FILENAME_EXCED_RANGE = 206;
constexpr DWORD ERROR_FILE_TOO_LARGE = 223;
constexpr DWORD ERROR_MORE_DATA = 234;
constexpr DWORD ERROR_NO_WORK_DONE = 235;
constexpr DWORD ERROR_NO_MORE_ITEMS = 259;
constexpr DWORD ERROR_DIRECTORY = 267;
constexpr DWORD ERROR_NOT_OWNER = 288;
constexpr DWORD ERROR_MR_MID_NOT_FOUND = 317;
constexpr DWORD ERROR_MUTANT_LIMIT_EXCEEDED = 587;
constexpr DWORD ERROR_NOACCESS = 998;
constexpr DWORD ERROR_INVALID_FLAGS = 1004;
constexpr DWORD ERROR_NO_TOKEN = 1008;
constexpr DWORD ERROR_CANTOPEN = 1011;
constexpr DWORD ERROR_REGISTRY_CORRUPT = 1015;
constexpr DWORD ERROR_REGISTRY_IO_FAILED = 1016;
constexpr DWORD ERROR_KEY_DELETED = 1018;
constexpr DWORD ERROR_NO_UNICODE_TRANSLATION = 1113;
constexpr DWORD ERROR_IO_DEVICE = 1117;
constexpr DWORD ERROR_INVALID_SID = 1337;
constexpr DWORD ERROR_RESOURCE_DATA_NOT_FOUND = 1812;
constexpr DWORD ERROR_RESOURCE_TYPE_NOT_FOUND = 1813;
constexpr DWORD ERROR_RESOURCE_NAME_NOT_FOUND = 1814;
constexpr DWORD ERROR_CANT_RESOLVE_FILENAME = 1921;

constexpr HRESULT S_OK = 0;
constexpr HRESULT S_FALSE = 1;
constexpr HRESULT E_NOTIMPL = static_cast<HRESULT>(0x80004001);
constexpr bool SUCCEEDED(HRESULT result) { return result >= 0; }

// A resource's number in the place of its name.
inline const char *MAKEINTRESOURCEA(WORD id) {
    return reinterpret_cast<const char *>(static_cast<std::uintptr_t>(id));
}

namespace win::host {

// Locks: recursive mutexes of this process. Named mutexes and security attributes are
// refused with ERROR_NOT_SUPPORTED.
HANDLE CreateMutexA(SECURITY_ATTRIBUTES *attributes, BOOL initiallyOwned, const char *name);
DWORD WaitForSingleObject(HANDLE handle, DWORD milliseconds);
BOOL ReleaseMutex(HANDLE handle);
// Sections: the thread that holds one may enter it again, and leaves it as often. Leaving
// one that the thread doesn't hold changes nothing.
void InitializeCriticalSection(CRITICAL_SECTION *section);
void EnterCriticalSection(CRITICAL_SECTION *section);
void LeaveCriticalSection(CRITICAL_SECTION *section);
void DeleteCriticalSection(CRITICAL_SECTION *section);

// Handles: closed once; afterwards ERROR_INVALID_HANDLE, also for the calls on them.
BOOL CloseHandle(HANDLE handle);
// Of a registry key within this process, with DUPLICATE_SAME_ACCESS: nothing else is supported.
BOOL DuplicateHandle(HANDLE fromProcess, HANDLE handle, HANDLE toProcess, HANDLE *duplicate,
                     DWORD access, BOOL inheritable, DWORD options);

// Process: creation time is fixed for the life of the process and differs between two
// processes that bear the same id one after the other. Only for GetCurrentProcess().
DWORD GetCurrentProcessId();
HANDLE GetCurrentProcess();
BOOL GetProcessTimes(HANDLE process, FILETIME *creation, FILETIME *exit, FILETIME *kernel,
                     FILETIME *user);

// Files
HANDLE CreateFileA(const char *path, DWORD access, DWORD share, SECURITY_ATTRIBUTES *security,
                   DWORD disposition, DWORD flagsAndAttributes, HANDLE patternFile);
BOOL ReadFile(HANDLE file, void *buffer, DWORD size, DWORD *read, OVERLAPPED *overlapped);
BOOL WriteFile(HANDLE file, const void *buffer, DWORD size, DWORD *written, OVERLAPPED *overlapped);
BOOL SetFilePointerEx(HANDLE file, LARGE_INTEGER distance, LARGE_INTEGER *position, DWORD origin);
BOOL GetFileSizeEx(HANDLE file, LARGE_INTEGER *size);
BOOL FlushFileBuffers(HANDLE file);
DWORD GetFileAttributesA(const char *path);
BOOL SetFileAttributesA(const char *path, DWORD attributes);
BOOL DeleteFileA(const char *path);
BOOL MoveFileExA(const char *from, const char *to, DWORD flags);
// The first entry that a mask names: `*` and `?` stand in its last component, which is
// compared without regard to case, and "*.*" is every name. `.` and `..` are entries of every
// folder but a drive's. The record's size is that of a file; a short name isn't told.
HANDLE FindFirstFileA(const char *mask, WIN32_FIND_DATAA *data);
BOOL FindClose(HANDLE search);

// The registry: see docs/platform.md. These answer the code and leave the last error alone.
LSTATUS RegOpenKeyExA(HKEY key, const char *path, DWORD options, REGSAM access, HKEY *opened);
LSTATUS RegCreateKeyExA(HKEY key, const char *path, DWORD reserved, char *classText, DWORD options,
                        REGSAM access, SECURITY_ATTRIBUTES *security, HKEY *created,
                        DWORD *disposition);
LSTATUS RegCloseKey(HKEY key);
LSTATUS RegQueryValueExA(HKEY key, const char *name, DWORD *reserved, DWORD *type, BYTE *data,
                         DWORD *size);
LSTATUS RegSetValueExA(HKEY key, const char *name, DWORD reserved, DWORD type, const BYTE *data,
                       DWORD size);
LSTATUS RegDeleteValueA(HKEY key, const char *name);
LSTATUS RegDeleteKeyA(HKEY key, const char *path);
LSTATUS RegEnumKeyExA(HKEY key, DWORD index, char *name, DWORD *nameSize, DWORD *reserved,
                      char *classText, DWORD *classSize, FILETIME *lastWrite);
LSTATUS RegEnumValueA(HKEY key, DWORD index, char *name, DWORD *nameSize, DWORD *reserved,
                      DWORD *type, BYTE *data, DWORD *size);

// The current directory, as a path on the drive that holds it.
DWORD GetCurrentDirectoryA(DWORD size, char *buffer);
BOOL SetCurrentDirectoryA(const char *path);
BOOL GetComputerNameA(char *buffer, DWORD *size); // from platform::CurrentSettings()

// Folders and version, from platform::CurrentSettings().
UINT GetSystemDirectoryA(char *buffer, UINT size);
UINT GetWindowsDirectoryA(char *buffer, UINT size);
BOOL GetVersionExA(OSVERSIONINFOA *record);

// Modules: "NAME.dll" is the file NAME.dll.so beside this library, found without regard
// to case; a name with a path is that file with .so behind it, and no other.
HMODULE LoadLibraryA(const char *name);
BOOL FreeLibrary(HMODULE module);
HMODULE GetModuleHandleA(const char *name);
FARPROC GetProcAddress(HMODULE module, const char *name);
DWORD GetModuleFileNameA(HMODULE module, char *buffer, DWORD size);
BOOL DisableThreadLibraryCalls(HMODULE module);
// Resources of a module, null for the program: those that the build's qvlinkdb_resources
// gave it. Names are numbers; types are texts, and their case doesn't matter. Nothing has
// to be given back.
HRSRC FindResourceA(HMODULE module, const char *name, const char *type);
DWORD SizeofResource(HMODULE module, HRSRC resource);
HGLOBAL LoadResource(HMODULE module, HRSRC resource);
LPVOID LockResource(HGLOBAL resource);
BOOL FreeResource(HGLOBAL resource); // FALSE: there is nothing that could fail

// Objects of other programs: there are none here, and it says so with E_NOTIMPL.
HRESULT OleInitialize(LPVOID reserved);
void OleUninitialize();

// Reserves and commits, for reading and writing; nothing else is supported. Blocks of 2 MiB
// and more get large pages where the kernel has them.
LPVOID VirtualAlloc(LPVOID address, SIZE_T size, DWORD type, DWORD protection);
BOOL VirtualFree(LPVOID address, SIZE_T size, DWORD type); // MEM_RELEASE only
SIZE_T VirtualQuery(LPCVOID address, MEMORY_BASIC_INFORMATION *information, SIZE_T size);

// The calling thread's last error: set by calls that fail.
DWORD GetLastError();
void SetLastError(DWORD code);

// Text: case is that of ASCII letters, but for iswctype. A function that begins with _mbs
// takes double-byte characters whole where the settings' code page has such.
unsigned char *_mbschr(const unsigned char *text, unsigned character);
int _mbsicmp(const unsigned char *left, const unsigned char *right);
unsigned char *_mbstok(unsigned char *text, const unsigned char *delimiters); // as strtok
int _memicmp(const void *left, const void *right, std::size_t size);
errno_t strcpy_s(char *to, std::size_t size, const char *from); // ends the process, not cut
void _splitpath(const char *path, char *drive, char *directory, char *name, char *extension);
errno_t _splitpath_s(const char *path, char *drive, std::size_t driveSize, char *directory,
                     std::size_t directorySize, char *name, std::size_t nameSize, char *extension,
                     std::size_t extensionSize);
int _stricmp(const char *left, const char *right);
char *_strlwr(char *text);
// Whether a character is an upper-case (mask 1) or lower-case (2) letter, by Unicode and
// whatever the process's locale; the answer has the bits of the mask that hold.
int iswctype(std::uint16_t character, std::uint16_t mask);

// Code pages: 65001, and those that the C library knows by their numbers and ASCII is a part
// of; CP_ACP is the settings' page. Without WC_COMPOSITECHECK's 0x200 a mark stays a
// character of its own.
UINT GetACP();
int WideCharToMultiByte(UINT codePage, DWORD flags, const unsigned short *wide, int length,
                        char *buffer, int capacity, const char *substitute, BOOL *substituted);
int MultiByteToWideChar(UINT codePage, DWORD flags, const char *bytes, int length,
                        unsigned short *buffer, int capacity);

// Messages: into a block that LocalFree takes, from a text (flags 1280) or for an error
// number (4352), in language 1024. Failing leaves the caller's pointer alone; a message
// without a character makes it null.
DWORD FormatMessageA(DWORD flags, LPCVOID source, DWORD messageId, DWORD language, char *buffer,
                     DWORD size, va_list *arguments);
// Null, or what isn't FormatMessageA's, with ERROR_INVALID_HANDLE.
HLOCAL LocalFree(HLOCAL memory);

// Tokens: for TOKEN_QUERY only, and told of groups only. No thread here has one of its own.
// Everybody's process is in S-1-1-0, an administrator's in S-1-5-32-544 as well.
HANDLE GetCurrentThread();
BOOL OpenThreadToken(HANDLE thread, DWORD access, BOOL asSelf, HANDLE *token);
BOOL OpenProcessToken(HANDLE process, DWORD access, HANDLE *token);
BOOL GetTokenInformation(HANDLE token, TOKEN_INFORMATION_CLASS kind, LPVOID buffer, DWORD size,
                         DWORD *needed);
// SIDs
BOOL AllocateAndInitializeSid(SID_IDENTIFIER_AUTHORITY *authority, BYTE count, DWORD first,
                              DWORD second, DWORD third, DWORD fourth, DWORD fifth, DWORD sixth,
                              DWORD seventh, DWORD eighth, PSID *sid);
PSID FreeSid(PSID sid); // null
BOOL EqualSid(PSID left, PSID right);

} // namespace win::host
