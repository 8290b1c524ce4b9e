// The services that tests can make fail: these declarations in namespace win hide the
// system's of the same names. Included by platform/winapi.h with QVLINKDB_HOOKS only.
#pragma once

#include "platform/testing.h"

namespace testing_hooks {

// Calls the hook, if there is one; the last error stays as the hook leaves it.
bool Ask(Call const &call);
// What SetVersion was told; false for nothing.
bool ToldVersion(OSVERSIONINFOA *record);
// Whether SetThreadGroups told of groups.
bool ToldThread();
// Notes whose groups a token that was opened tells.
void NoteToken(HANDLE token, bool ofThread);
// The groups that were told for a token; null for none.
TOKEN_GROUPS const *ToldGroups(HANDLE token);
// The resource that SetResources told of; null for none.
HRSRC ToldResource(const char *name, const char *type);
// Its size and bytes; false if it isn't one of those.
bool ToldBytes(HRSRC resource, const void *&bytes, DWORD &size);
// As GetTokenInformation does it.
BOOL TellGroups(TOKEN_GROUPS const &groups, LPVOID buffer, DWORD size, DWORD *needed);

template <class System, class Result> Result Guarded(Call call, Result failure, System system) {
    call.moment = Moment::Before;
    if (Ask(call))
        return failure;
    Result const result = system();
    DWORD const code = win::host::GetLastError();
    call.moment = Moment::After;
    Ask(call);
    win::host::SetLastError(code);
    return result;
}

// As Guarded, for a service whose result is its code.
template <class System> LSTATUS GuardedStatus(Call call, System system) {
    call.moment = Moment::Before;
    if (Ask(call))
        return static_cast<LSTATUS>(win::host::GetLastError());
    LSTATUS const status = system();
    DWORD const code = win::host::GetLastError();
    call.moment = Moment::After;
    Ask(call);
    win::host::SetLastError(code);
    return status;
}

inline Call About(const char *service, const char *path = nullptr) {
    return {service, Moment::Before, path, nullptr, nullptr};
}

} // namespace testing_hooks

namespace win {

inline HANDLE CreateMutexA(SECURITY_ATTRIBUTES *attributes, BOOL owned, const char *name) {
    return testing_hooks::Guarded(testing_hooks::About("CreateMutexA", name), HANDLE{},
                                  [=] { return host::CreateMutexA(attributes, owned, name); });
}

inline BOOL CloseHandle(HANDLE handle) {
    return testing_hooks::Guarded(testing_hooks::About("CloseHandle"), BOOL{FALSE},
                                  [=] { return host::CloseHandle(handle); });
}

inline HANDLE CreateFileA(const char *path, DWORD access, DWORD share,
                          SECURITY_ATTRIBUTES *security, DWORD disposition, DWORD flags,
                          HANDLE pattern) {
    return testing_hooks::Guarded(
        testing_hooks::About("CreateFileA", path), HANDLE{INVALID_HANDLE_VALUE}, [=] {
            return host::CreateFileA(path, access, share, security, disposition, flags, pattern);
        });
}

inline BOOL ReadFile(HANDLE file, void *buffer, DWORD size, DWORD *read, OVERLAPPED *overlapped) {
    return testing_hooks::Guarded(
        {"ReadFile", testing_hooks::Moment::Before, nullptr, nullptr, &size}, BOOL{FALSE},
        [&] { return host::ReadFile(file, buffer, size, read, overlapped); });
}

inline BOOL WriteFile(HANDLE file, const void *buffer, DWORD size, DWORD *written,
                      OVERLAPPED *overlapped) {
    return testing_hooks::Guarded(
        {"WriteFile", testing_hooks::Moment::Before, nullptr, buffer, &size}, BOOL{FALSE},
        [&] { return host::WriteFile(file, buffer, size, written, overlapped); });
}

inline BOOL SetFilePointerEx(HANDLE file, LARGE_INTEGER distance, LARGE_INTEGER *position,
                             DWORD origin) {
    return testing_hooks::Guarded(testing_hooks::About("SetFilePointerEx"), BOOL{FALSE}, [=] {
        return host::SetFilePointerEx(file, distance, position, origin);
    });
}

inline BOOL GetFileSizeEx(HANDLE file, LARGE_INTEGER *size) {
    return testing_hooks::Guarded(testing_hooks::About("GetFileSizeEx"), BOOL{FALSE},
                                  [=] { return host::GetFileSizeEx(file, size); });
}

inline BOOL FlushFileBuffers(HANDLE file) {
    return testing_hooks::Guarded(testing_hooks::About("FlushFileBuffers"), BOOL{FALSE},
                                  [=] { return host::FlushFileBuffers(file); });
}

inline DWORD GetFileAttributesA(const char *path) {
    return testing_hooks::Guarded(testing_hooks::About("GetFileAttributesA", path),
                                  DWORD{INVALID_FILE_ATTRIBUTES},
                                  [=] { return host::GetFileAttributesA(path); });
}

inline BOOL SetFileAttributesA(const char *path, DWORD attributes) {
    return testing_hooks::Guarded(testing_hooks::About("SetFileAttributesA", path), BOOL{FALSE},
                                  [=] { return host::SetFileAttributesA(path, attributes); });
}

inline BOOL DeleteFileA(const char *path) {
    return testing_hooks::Guarded(testing_hooks::About("DeleteFileA", path), BOOL{FALSE},
                                  [=] { return host::DeleteFileA(path); });
}

inline BOOL MoveFileExA(const char *from, const char *to, DWORD flags) {
    return testing_hooks::Guarded(testing_hooks::About("MoveFileExA", from), BOOL{FALSE},
                                  [=] { return host::MoveFileExA(from, to, flags); });
}

inline UINT GetSystemDirectoryA(char *buffer, UINT size) {
    return testing_hooks::Guarded(testing_hooks::About("GetSystemDirectoryA"), UINT{0},
                                  [=] { return host::GetSystemDirectoryA(buffer, size); });
}

inline UINT GetWindowsDirectoryA(char *buffer, UINT size) {
    return testing_hooks::Guarded(testing_hooks::About("GetWindowsDirectoryA"), UINT{0},
                                  [=] { return host::GetWindowsDirectoryA(buffer, size); });
}

inline BOOL GetVersionExA(OSVERSIONINFOA *record) {
    return testing_hooks::Guarded(testing_hooks::About("GetVersionExA"), BOOL{FALSE}, [=] {
        BOOL const answered = host::GetVersionExA(record);
        return answered && testing_hooks::ToldVersion(record) ? TRUE : answered;
    });
}

inline HMODULE LoadLibraryA(const char *name) {
    return testing_hooks::Guarded(testing_hooks::About("LoadLibraryA", name), HMODULE{},
                                  [=] { return host::LoadLibraryA(name); });
}

inline BOOL FreeLibrary(HMODULE module) {
    return testing_hooks::Guarded(testing_hooks::About("FreeLibrary"), BOOL{FALSE},
                                  [=] { return host::FreeLibrary(module); });
}

inline DWORD GetModuleFileNameA(HMODULE module, char *buffer, DWORD size) {
    return testing_hooks::Guarded(testing_hooks::About("GetModuleFileNameA"), DWORD{0},
                                  [=] { return host::GetModuleFileNameA(module, buffer, size); });
}

inline HRSRC FindResourceA(HMODULE module, const char *name, const char *type) {
    return testing_hooks::Guarded(testing_hooks::About("FindResourceA", type), HRSRC{}, [=] {
        HRSRC const told = testing_hooks::ToldResource(name, type);
        return told ? told : host::FindResourceA(module, name, type);
    });
}

inline DWORD SizeofResource(HMODULE module, HRSRC resource) {
    return testing_hooks::Guarded(testing_hooks::About("SizeofResource"), DWORD{0}, [=] {
        const void *bytes = nullptr;
        DWORD size = 0;
        return testing_hooks::ToldBytes(resource, bytes, size)
                   ? size
                   : host::SizeofResource(module, resource);
    });
}

inline HGLOBAL LoadResource(HMODULE module, HRSRC resource) {
    return testing_hooks::Guarded(testing_hooks::About("LoadResource"), HGLOBAL{}, [=] {
        const void *bytes = nullptr;
        DWORD size = 0;
        return testing_hooks::ToldBytes(resource, bytes, size)
                   ? const_cast<void *>(bytes)
                   : host::LoadResource(module, resource);
    });
}

inline LPVOID LockResource(HGLOBAL resource) {
    return testing_hooks::Guarded(testing_hooks::About("LockResource"), LPVOID{},
                                  [=] { return host::LockResource(resource); });
}

inline BOOL FreeResource(HGLOBAL resource) {
    return testing_hooks::Guarded(testing_hooks::About("FreeResource"), BOOL{TRUE},
                                  [=] { return host::FreeResource(resource); });
}

inline HRESULT OleInitialize(LPVOID reserved) {
    constexpr auto failure = static_cast<HRESULT>(0x8000ffff); // "unexpected"
    return testing_hooks::Guarded(testing_hooks::About("OleInitialize"), failure,
                                  [=] { return host::OleInitialize(reserved); });
}

inline void OleUninitialize() {
    testing_hooks::Guarded(testing_hooks::About("OleUninitialize"), 0, [] {
        host::OleUninitialize();
        return 0;
    });
}

inline HMODULE GetModuleHandleA(const char *name) {
    return testing_hooks::Guarded(testing_hooks::About("GetModuleHandleA", name), HMODULE{},
                                  [=] { return host::GetModuleHandleA(name); });
}

inline FARPROC GetProcAddress(HMODULE module, const char *name) {
    return testing_hooks::Guarded(testing_hooks::About("GetProcAddress", name), FARPROC{},
                                  [=] { return host::GetProcAddress(module, name); });
}

inline int WideCharToMultiByte(UINT codePage, DWORD flags, const unsigned short *wide, int length,
                               char *buffer, int capacity, const char *substitute,
                               BOOL *substituted) {
    return testing_hooks::Guarded(testing_hooks::About("WideCharToMultiByte"), 0, [=] {
        return host::WideCharToMultiByte(codePage, flags, wide, length, buffer, capacity,
                                         substitute, substituted);
    });
}

inline int MultiByteToWideChar(UINT codePage, DWORD flags, const char *bytes, int length,
                               unsigned short *buffer, int capacity) {
    return testing_hooks::Guarded(testing_hooks::About("MultiByteToWideChar"), 0, [=] {
        return host::MultiByteToWideChar(codePage, flags, bytes, length, buffer, capacity);
    });
}

inline DWORD FormatMessageA(DWORD flags, LPCVOID source, DWORD messageId, DWORD language,
                            char *buffer, DWORD size, va_list *arguments) {
    return testing_hooks::Guarded(testing_hooks::About("FormatMessageA"), DWORD{0}, [=] {
        return host::FormatMessageA(flags, source, messageId, language, buffer, size, arguments);
    });
}

inline BOOL OpenProcessToken(HANDLE process, DWORD access, HANDLE *token) {
    return testing_hooks::Guarded(testing_hooks::About("OpenProcessToken"), BOOL{FALSE}, [=] {
        BOOL const opened = host::OpenProcessToken(process, access, token);
        if (opened)
            testing_hooks::NoteToken(*token, false);
        return opened;
    });
}

inline BOOL OpenThreadToken(HANDLE thread, DWORD access, BOOL asSelf, HANDLE *token) {
    return testing_hooks::Guarded(testing_hooks::About("OpenThreadToken"), BOOL{FALSE}, [=] {
        if (!testing_hooks::ToldThread())
            return host::OpenThreadToken(thread, access, asSelf, token);
        BOOL const opened = host::OpenProcessToken(host::GetCurrentProcess(), access, token);
        if (opened)
            testing_hooks::NoteToken(*token, true);
        return opened;
    });
}

inline BOOL GetTokenInformation(HANDLE token, TOKEN_INFORMATION_CLASS kind, LPVOID buffer,
                                DWORD size, DWORD *needed) {
    return testing_hooks::Guarded(testing_hooks::About("GetTokenInformation"), BOOL{FALSE}, [=] {
        TOKEN_GROUPS const *const told =
            kind == TokenGroups ? testing_hooks::ToldGroups(token) : nullptr;
        return told ? testing_hooks::TellGroups(*told, buffer, size, needed)
                    : host::GetTokenInformation(token, kind, buffer, size, needed);
    });
}

inline BOOL AllocateAndInitializeSid(SID_IDENTIFIER_AUTHORITY *authority, BYTE count, DWORD first,
                                     DWORD second, DWORD third, DWORD fourth, DWORD fifth,
                                     DWORD sixth, DWORD seventh, DWORD eighth, PSID *sid) {
    return testing_hooks::Guarded(
        testing_hooks::About("AllocateAndInitializeSid"), BOOL{FALSE}, [=] {
            return host::AllocateAndInitializeSid(authority, count, first, second, third, fourth,
                                                  fifth, sixth, seventh, eighth, sid);
        });
}

inline BOOL DuplicateHandle(HANDLE fromProcess, HANDLE handle, HANDLE toProcess, HANDLE *duplicate,
                            DWORD access, BOOL inheritable, DWORD options) {
    return testing_hooks::Guarded(testing_hooks::About("DuplicateHandle"), BOOL{FALSE}, [=] {
        return host::DuplicateHandle(fromProcess, handle, toProcess, duplicate, access, inheritable,
                                     options);
    });
}

inline HANDLE FindFirstFileA(const char *mask, WIN32_FIND_DATAA *data) {
    return testing_hooks::Guarded(testing_hooks::About("FindFirstFileA", mask),
                                  HANDLE{INVALID_HANDLE_VALUE},
                                  [=] { return host::FindFirstFileA(mask, data); });
}

inline BOOL FindClose(HANDLE search) {
    return testing_hooks::Guarded(testing_hooks::About("FindClose"), BOOL{FALSE},
                                  [=] { return host::FindClose(search); });
}

inline DWORD GetCurrentDirectoryA(DWORD size, char *buffer) {
    return testing_hooks::Guarded(testing_hooks::About("GetCurrentDirectoryA"), DWORD{0},
                                  [=] { return host::GetCurrentDirectoryA(size, buffer); });
}

inline BOOL SetCurrentDirectoryA(const char *path) {
    return testing_hooks::Guarded(testing_hooks::About("SetCurrentDirectoryA", path), BOOL{FALSE},
                                  [=] { return host::SetCurrentDirectoryA(path); });
}

inline BOOL GetComputerNameA(char *buffer, DWORD *size) {
    return testing_hooks::Guarded(testing_hooks::About("GetComputerNameA"), BOOL{FALSE},
                                  [=] { return host::GetComputerNameA(buffer, size); });
}

inline LSTATUS RegOpenKeyExA(HKEY key, const char *path, DWORD options, REGSAM access,
                             HKEY *opened) {
    return testing_hooks::GuardedStatus(testing_hooks::About("RegOpenKeyExA", path), [=] {
        return host::RegOpenKeyExA(key, path, options, access, opened);
    });
}

inline LSTATUS RegCreateKeyExA(HKEY key, const char *path, DWORD reserved, char *classText,
                               DWORD options, REGSAM access, SECURITY_ATTRIBUTES *security,
                               HKEY *created, DWORD *disposition) {
    return testing_hooks::GuardedStatus(testing_hooks::About("RegCreateKeyExA", path), [=] {
        return host::RegCreateKeyExA(key, path, reserved, classText, options, access, security,
                                     created, disposition);
    });
}

inline LSTATUS RegCloseKey(HKEY key) {
    return testing_hooks::GuardedStatus(testing_hooks::About("RegCloseKey"),
                                        [=] { return host::RegCloseKey(key); });
}

inline LSTATUS RegQueryValueExA(HKEY key, const char *name, DWORD *reserved, DWORD *type,
                                BYTE *data, DWORD *size) {
    return testing_hooks::GuardedStatus(testing_hooks::About("RegQueryValueExA", name), [=] {
        return host::RegQueryValueExA(key, name, reserved, type, data, size);
    });
}

inline LSTATUS RegSetValueExA(HKEY key, const char *name, DWORD reserved, DWORD type,
                              const BYTE *data, DWORD size) {
    return testing_hooks::GuardedStatus(testing_hooks::About("RegSetValueExA", name), [=] {
        return host::RegSetValueExA(key, name, reserved, type, data, size);
    });
}

inline LSTATUS RegDeleteValueA(HKEY key, const char *name) {
    return testing_hooks::GuardedStatus(testing_hooks::About("RegDeleteValueA", name),
                                        [=] { return host::RegDeleteValueA(key, name); });
}

inline LSTATUS RegDeleteKeyA(HKEY key, const char *path) {
    return testing_hooks::GuardedStatus(testing_hooks::About("RegDeleteKeyA", path),
                                        [=] { return host::RegDeleteKeyA(key, path); });
}

inline LSTATUS RegEnumKeyExA(HKEY key, DWORD index, char *name, DWORD *nameSize, DWORD *reserved,
                             char *classText, DWORD *classSize, FILETIME *lastWrite) {
    return testing_hooks::GuardedStatus(testing_hooks::About("RegEnumKeyExA"), [=] {
        return host::RegEnumKeyExA(key, index, name, nameSize, reserved, classText, classSize,
                                   lastWrite);
    });
}

inline LSTATUS RegEnumValueA(HKEY key, DWORD index, char *name, DWORD *nameSize, DWORD *reserved,
                             DWORD *type, BYTE *data, DWORD *size) {
    return testing_hooks::GuardedStatus(testing_hooks::About("RegEnumValueA"), [=] {
        return host::RegEnumValueA(key, index, name, nameSize, reserved, type, data, size);
    });
}

} // namespace win
