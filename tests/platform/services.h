// What the tests of the system's services share.
#pragma once

#include "platform/winapi.h"

#include <string>

#include <gtest/gtest.h>

// Fails unless the last call failed with this code.
#define EXPECT_FAILS_WITH(code, call)                                                              \
    do {                                                                                           \
        win::SetLastError(0);                                                                      \
        EXPECT_FALSE(call);                                                                        \
        EXPECT_EQ(DWORD{code}, win::GetLastError()) << #call;                                      \
    } while (false)

// Wine's own library tells of it. Some of what Windows documents Wine does otherwise; the
// tests of that are skipped there.
inline bool UnderWine() {
    HMODULE const ntdll = win::GetModuleHandleA("ntdll.dll");
    return ntdll && win::GetProcAddress(ntdll, "wine_get_version");
}

// A handle that is closed at the end of the scope.
class ScopedHandle {
public:
    explicit ScopedHandle(HANDLE handle) : m_handle(handle) {}
    ~ScopedHandle() { Close(); }
    ScopedHandle(ScopedHandle const &) = delete;
    ScopedHandle &operator=(ScopedHandle const &) = delete;

    // NOLINTNEXTLINE(google-explicit-constructor): it stands for the handle
    operator HANDLE() const { return m_handle; }
    bool Valid() const { return m_handle && m_handle != INVALID_HANDLE_VALUE; }
    void Close() {
        if (Valid())
            win::CloseHandle(m_handle);
        m_handle = nullptr;
    }

private:
    HANDLE m_handle;
};

constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

inline HANDLE OpenToRead(std::string const &path, DWORD share = shareAll) {
    return win::CreateFileA(path.c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
}

inline HANDLE OpenToWrite(std::string const &path, DWORD disposition, DWORD share = shareAll) {
    return win::CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE, share, nullptr, disposition,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
}

inline LARGE_INTEGER Offset(LONGLONG value) {
    LARGE_INTEGER offset;
    offset.QuadPart = value;
    return offset;
}
