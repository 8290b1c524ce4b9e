#include "platform/posix/inifile.h"

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace platform {
namespace {

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

Fields FieldsOf(std::string const &text) {
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

} // namespace

std::string Resolved(std::string const &path) {
    std::unique_ptr<char, void (*)(void *)> const real(realpath(path.c_str(), nullptr), std::free);
    return real ? std::string(real.get()) : path;
}

std::string PrefixDirectory() {
    if (const char *prefix = std::getenv("QVPREFIX"); prefix && *prefix)
        return prefix;
    if (const char *data = std::getenv("XDG_DATA_HOME"); data && *data == '/')
        return std::string(data) + "/qvlinkdb";
    return HomeDirectory() + "/.local/share/qvlinkdb";
}

Fields ReadFields(std::string const &prefix) {
    return FieldsOf(ReadText(prefix + "/platform.ini"));
}

} // namespace platform
