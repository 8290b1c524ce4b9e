#include "platform/posix/errors.h"
#include "platform/posix/paths.h"
#include "platform/posix/settings.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace win::host {
namespace {

// As Windows tells a text: its length, or the size that it needs and no text.
UINT TellText(std::string const &text, char *buffer, UINT size) {
    auto const length = static_cast<UINT>(text.size());
    if (!buffer || size <= length)
        return length + 1;
    std::memcpy(buffer, text.c_str(), text.size() + 1);
    return length;
}

BOOL ChangeDirectory(std::string const &hostPath) {
    struct stat entry {};
    if (stat(hostPath.c_str(), &entry) != 0)
        return platform::Fail(platform::FailedOn(hostPath, errno, platform::Operation::Attributes));
    if (!S_ISDIR(entry.st_mode))
        return platform::Fail(ERROR_DIRECTORY);
    if (chdir(hostPath.c_str()) != 0)
        return platform::Fail(platform::CodeOf(errno, platform::Operation::Attributes));
    return TRUE;
}

} // namespace

UINT GetSystemDirectoryA(char *buffer, UINT size) {
    return platform::OutOfMemoryAs(
        UINT{0}, [=] { return TellText(platform::SettingsNow()->systemDirectory, buffer, size); });
}

UINT GetWindowsDirectoryA(char *buffer, UINT size) {
    return platform::OutOfMemoryAs(
        UINT{0}, [=] { return TellText(platform::SettingsNow()->windowsDirectory, buffer, size); });
}

DWORD GetCurrentDirectoryA(DWORD size, char *buffer) {
    return platform::OutOfMemoryAs(DWORD{0}, [=] {
        std::unique_ptr<char, void (*)(void *)> const directory(getcwd(nullptr, 0), std::free);
        if (directory)
            return DWORD{TellText(platform::DrivePath(directory.get()), buffer, size)};
        platform::Fail(platform::CodeOf(errno, platform::Operation::Attributes));
        return DWORD{0};
    });
}

BOOL SetCurrentDirectoryA(const char *path) {
    return platform::OutOfMemoryAs(FALSE, [=] {
        std::string hostPath;
        if (!path || !*path)
            return platform::Fail(ERROR_INVALID_NAME);
        return platform::HostPath(path, hostPath) ? ChangeDirectory(hostPath) : FALSE;
    });
}

// Short as the network's names for computers are, however long the host's is.
BOOL GetComputerNameA(char *buffer, DWORD *size) {
    return platform::OutOfMemoryAs(FALSE, [=] {
        constexpr std::size_t longest = 15;
        std::string const name = platform::SettingsNow()->computerName.substr(0, longest);
        DWORD const room = *size;
        DWORD const length = TellText(name, buffer, room);
        *size = length;
        return length == name.size() ? TRUE : platform::Fail(ERROR_BUFFER_OVERFLOW);
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
