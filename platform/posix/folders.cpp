#include "platform/posix/errors.h"
#include "platform/posix/settings.h"

#include <cstring>
#include <string>

namespace win::host {
namespace {

// As Windows tells a folder: its length, or the size that it needs and no text.
UINT TellFolder(std::string const &folder, char *buffer, UINT size) {
    auto const length = static_cast<UINT>(folder.size());
    if (!buffer || size <= length)
        return length + 1;
    std::memcpy(buffer, folder.c_str(), folder.size() + 1);
    return length;
}

} // namespace

UINT GetSystemDirectoryA(char *buffer, UINT size) {
    return platform::OutOfMemoryAs(UINT{0}, [=] {
        return TellFolder(platform::SettingsNow()->systemDirectory, buffer, size);
    });
}

UINT GetWindowsDirectoryA(char *buffer, UINT size) {
    return platform::OutOfMemoryAs(UINT{0}, [=] {
        return TellFolder(platform::SettingsNow()->windowsDirectory, buffer, size);
    });
}

BOOL GetVersionExA(OSVERSIONINFOA *record) {
    return platform::OutOfMemoryAs(FALSE, [=] {
        if (record->dwOSVersionInfoSize != sizeof *record)
            return platform::Fail(ERROR_INSUFFICIENT_BUFFER);
        auto const settings = platform::SettingsNow();
        *record = {};
        record->dwOSVersionInfoSize = sizeof *record;
        record->dwPlatformId = static_cast<DWORD>(settings->platformId);
        record->dwMajorVersion = static_cast<DWORD>(settings->majorVersion);
        record->dwMinorVersion = static_cast<DWORD>(settings->minorVersion);
        return TRUE;
    });
}

} // namespace win::host
