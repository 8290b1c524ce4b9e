// Files of Windows, closed when nobody has them any more.
#pragma once

#include <memory>
#include <string>
#include <windows.h>

namespace qvlink {

struct HandleClose {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const { ::CloseHandle(handle); }
};
using FileHandle = std::unique_ptr<void, HandleClose>;

// Shared with all who have it open. Null on failure.
inline FileHandle OpenFile(std::wstring const &path, DWORD access, DWORD disposition, DWORD flags) {
    HANDLE const file =
        ::CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                      nullptr, disposition, flags, nullptr);
    return FileHandle(file == INVALID_HANDLE_VALUE ? nullptr : file);
}

} // namespace qvlink
