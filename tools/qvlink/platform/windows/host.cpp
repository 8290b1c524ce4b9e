#include "platform/host.h"

#include "platform/windows/text.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <io.h>
#include <windows.h>

namespace qvlink {
namespace {

std::string FullPath(std::string const &path) {
    DWORD const size = ::GetFullPathNameA(path.c_str(), 0, nullptr, nullptr);
    std::string text(size, '\0');
    text.resize(::GetFullPathNameA(path.c_str(), size, text.data(), nullptr));
    return text;
}

// What a console was set to, put back at exit: it outlives this process.
UINT consoleCodePage = 0;
DWORD consoleMode = 0;

HANDLE StandardHandle(Stream stream) {
    return ::GetStdHandle(stream == Stream::out ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
}

void RestoreConsole() {
    ::SetConsoleOutputCP(consoleCodePage);
    ::SetConsoleMode(StandardHandle(Stream::out), consoleMode);
}

} // namespace

std::string DefaultDatabaseDirectory() {
    const char *const data = std::getenv("LOCALAPPDATA");
    return data && *data ? std::string(data) + "\\QVLinkDB" : "";
}

std::string AbsoluteDirectory(std::string const &directory) { return FullPath(directory); }

std::optional<Place> PlaceOfHostPath(std::string const &path) {
    return ParseDatabasePath(FullPath(path));
}

std::string HostPath(Place const &place) {
    bool const isDrive = place.names.empty() && !IsKeyPlace(place);
    return isDrive ? place.drive + '\\' : DatabasePath(place);
}

std::optional<std::string> PathThroughLinks(std::string const &) { return std::nullopt; }

SystemDirectories FindSystemDirectories() {
    char windows[MAX_PATH];
    char system[MAX_PATH];
    UINT const windowsLength = ::GetWindowsDirectoryA(windows, sizeof windows);
    UINT const systemLength = ::GetSystemDirectoryA(system, sizeof system);
    return {windowsLength < sizeof windows ? std::string(windows, windowsLength) : "",
            systemLength < sizeof system ? std::string(system, systemLength) : ""};
}

const char *const DecompressorFile = "ziplib.dll";

bool IsTerminal(Stream stream) {
    DWORD mode = 0;
    return ::GetConsoleMode(StandardHandle(stream), &mode) != 0;
}

unsigned TerminalColumns(Stream stream) {
    CONSOLE_SCREEN_BUFFER_INFO info{};
    if (!::GetConsoleScreenBufferInfo(StandardHandle(stream), &info)) {
        return 80;
    }
    return static_cast<unsigned>(info.srWindow.Right - info.srWindow.Left + 1);
}

void PrepareStreams() {
    ::_setmode(::_fileno(stdout), _O_BINARY);
    if (!::GetConsoleMode(StandardHandle(Stream::out), &consoleMode)) {
        return;
    }
    consoleCodePage = ::GetConsoleOutputCP();
    std::atexit(RestoreConsole);
    ::SetConsoleOutputCP(CP_UTF8);
    ::SetConsoleMode(StandardHandle(Stream::out), consoleMode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

// A pipe without a reader is told as an invalid argument by the runtime's streams.
bool IsClosedPipe(int error) { return error == EPIPE || error == EINVAL; }

std::optional<std::uint64_t> FileSize(std::string const &path) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!::GetFileAttributesExA(path.c_str(), GetFileExInfoStandard, &data) ||
        (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) {
        return std::nullopt;
    }
    return (std::uint64_t{data.nFileSizeHigh} << 32) | data.nFileSizeLow;
}

std::string ToUtf8(std::string_view text) {
    int const size = static_cast<int>(text.size());
    std::wstring wide(text.size(), L'\0');
    int const units = ::MultiByteToWideChar(CP_ACP, 0, text.data(), size, wide.data(), size);
    std::string result(static_cast<std::size_t>(units) * 3, '\0');
    result.resize(static_cast<std::size_t>(
        ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), units, result.data(),
                              static_cast<int>(result.size()), nullptr, nullptr)));
    return result;
}

std::string FromUtf8(std::string_view text, bool &lossless) {
    int const size = static_cast<int>(text.size());
    std::wstring wide(text.size(), L'\0');
    int const units = ::MultiByteToWideChar(CP_UTF8, 0, text.data(), size, wide.data(), size);
    wide.resize(static_cast<std::size_t>(units));
    return FromWide(wide, lossless);
}

} // namespace qvlink
