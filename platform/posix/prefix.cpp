#include "platform/posix/prefix.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <map>
#include <memory>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace platform {
namespace {

using Fields = std::map<std::string, std::string>;

// More of platform.ini isn't read.
constexpr std::size_t maxIniSize = 1 << 20;

std::string HomeDirectory() {
    if (const char *home = std::getenv("HOME"); home && *home)
        return home;
    std::vector<char> buffer(16384);
    passwd entry{};
    passwd *found = nullptr;
    getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found);
    return found && found->pw_dir ? found->pw_dir : "/";
}

std::string Resolved(std::string const &path) {
    std::unique_ptr<char, void (*)(void *)> const real(realpath(path.c_str(), nullptr), std::free);
    return real ? std::string(real.get()) : path;
}

bool Exists(std::string const &path) {
    struct stat entry {};
    return lstat(path.c_str(), &entry) == 0;
}

std::map<char, std::string> ReadDrives(std::string const &prefix) {
    std::map<char, std::string> drives{{'C', prefix + "/drive_c"}, {'Z', "/"}};
    for (char letter = 'A'; letter <= 'Z'; ++letter) {
        for (char const spelling : {letter, static_cast<char>(letter - 'A' + 'a')}) {
            std::string const link = prefix + "/dosdevices/" + spelling + ":";
            if (Exists(link))
                drives[letter] = Resolved(link);
        }
    }
    return drives;
}

// A regular file's text; a missing one, or what isn't a file, has none.
std::string ReadText(std::string const &path) {
    std::string text;
    int const file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    struct stat entry {};
    if (file >= 0 && fstat(file, &entry) == 0 && S_ISREG(entry.st_mode)) {
        text.resize(std::min(static_cast<std::size_t>(entry.st_size), maxIniSize));
        ssize_t const got = read(file, text.data(), text.size());
        text.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
    }
    if (file >= 0)
        close(file);
    return text;
}

std::string Trimmed(std::string const &text) {
    constexpr const char *blanks = " \t\r";
    std::size_t const first = text.find_first_not_of(blanks);
    if (first == std::string::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

Fields ReadFields(std::string const &text) {
    Fields fields;
    for (std::size_t start = 0; start < text.size();) {
        std::size_t const end = std::min(text.find('\n', start), text.size());
        std::string const line = text.substr(start, end - start);
        start = end + 1;
        std::size_t const equals = line.find('=');
        if (equals != std::string::npos)
            fields[Trimmed(line.substr(0, equals))] = Trimmed(line.substr(equals + 1));
    }
    return fields;
}

std::string Told(Fields const &fields, const char *name, std::string const &otherwise) {
    auto const field = fields.find(name);
    return field == fields.end() || field->second.empty() ? otherwise : field->second;
}

void TakeVersion(std::string const &text, Settings &settings) {
    unsigned platformId = 0;
    unsigned major = 0;
    unsigned minor = 0;
    int read = 0;
    if (std::sscanf(text.c_str(), "%5u.%5u.%5u%n", &platformId, &major, &minor, &read) != 3 ||
        static_cast<std::size_t>(read) != text.size())
        return;
    settings.platformId = platformId;
    settings.majorVersion = major;
    settings.minorVersion = minor;
}

void TakeCodePage(std::string const &text, Settings &settings) {
    unsigned codePage = 0;
    int read = 0;
    if (std::sscanf(text.c_str(), "%5u%n", &codePage, &read) == 1 &&
        static_cast<std::size_t>(read) == text.size())
        settings.codePage = codePage;
}

std::string HostName() {
    char name[256] = "";
    gethostname(name, sizeof name - 1);
    for (char &c : name)
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
    return name;
}

} // namespace

std::string PrefixDirectory() {
    if (const char *prefix = std::getenv("QVPREFIX"); prefix && *prefix)
        return prefix;
    if (const char *data = std::getenv("XDG_DATA_HOME"); data && *data == '/')
        return std::string(data) + "/qvlinkdb";
    return HomeDirectory() + "/.local/share/qvlinkdb";
}

Settings ReadPrefix(std::string const &prefixName) {
    std::string const prefix = Resolved(prefixName);
    Fields const fields = ReadFields(ReadText(prefix + "/platform.ini"));
    Settings settings{};
    settings.drives = ReadDrives(prefix);
    settings.windowsDirectory = Told(fields, "windowsDirectory", "C:\\windows");
    settings.systemDirectory =
        Told(fields, "systemDirectory", settings.windowsDirectory + "\\system32");
    settings.temporaryDirectory =
        Told(fields, "temporaryDirectory", settings.windowsDirectory + "\\temp\\");
    settings.computerName = Told(fields, "computerName", HostName());
    settings.registryDirectory = Told(fields, "registryDirectory", prefix + "/registry");
    settings.platformId = 2;
    settings.majorVersion = 5;
    settings.minorVersion = 1;
    settings.codePage = 65001;
    TakeVersion(Told(fields, "version", ""), settings);
    TakeCodePage(Told(fields, "codePage", ""), settings);
    return settings;
}

} // namespace platform
