#include "platform/host.h"

#include "platform/settings.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <memory>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace qvlink {
namespace {

std::string CurrentDirectory() {
    std::unique_ptr<char, void (*)(void *)> const path(::getcwd(nullptr, 0), std::free);
    return path ? path.get() : "/";
}

std::string Variable(const char *name) {
    const char *const value = std::getenv(name);
    return value ? value : "";
}

Drives const &CurrentDrives() {
    static Drives const drives = platform::CurrentSettings().drives;
    return drives;
}

} // namespace

std::string DefaultDatabaseDirectory() {
    std::string const data = Variable("XDG_DATA_HOME");
    // A relative value is to be ignored.
    if (!data.empty() && data.front() == '/') {
        return data + "/qvlinkdb";
    }
    std::string const home = Variable("HOME");
    return home.empty() ? "" : home + "/.local/share/qvlinkdb";
}

std::string AbsoluteDirectory(std::string const &directory) {
    return NormaliseRootedPath(directory, CurrentDirectory());
}

std::optional<Place> PlaceOfHostPath(std::string const &path) {
    return ParseRootedPath(path, CurrentDirectory(), CurrentDrives());
}

std::string HostPath(Place const &place) {
    return RootedPath(place, CurrentDrives()).value_or(DatabasePath(place));
}

std::optional<std::string> PathThroughLinks(std::string const &path) {
    std::string const whole = NormaliseRootedPath(path, CurrentDirectory());
    std::size_t const slash = whole.rfind('/');
    std::unique_ptr<char, void (*)(void *)> const folder(
        ::realpath(whole.substr(0, slash + 1).c_str(), nullptr), std::free);
    struct stat status {};
    if (!folder || ::lstat(whole.c_str(), &status) != 0) {
        return std::nullopt;
    }
    return std::string(folder.get()) + whole.substr(slash);
}

SystemDirectories FindSystemDirectories() {
    platform::Settings const settings = platform::CurrentSettings();
    return {settings.windowsDirectory, settings.systemDirectory};
}

const char *const DecompressorFile = "ziplib.dll.so";

bool IsTerminal(Stream stream) {
    return ::isatty(stream == Stream::out ? STDOUT_FILENO : STDERR_FILENO) == 1;
}

unsigned TerminalColumns(Stream stream) {
    winsize size{};
    int const file = stream == Stream::out ? STDOUT_FILENO : STDERR_FILENO;
    return ::ioctl(file, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

void PrepareStreams() {}

bool IsClosedPipe(int error) { return error == EPIPE; }

std::optional<std::uint64_t> FileSize(std::string const &path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    return static_cast<std::uint64_t>(status.st_size);
}

std::string ToUtf8(std::string_view text) { return std::string(text); }

std::string FromUtf8(std::string_view text, bool &lossless) {
    lossless = true;
    return std::string(text);
}

} // namespace qvlink
