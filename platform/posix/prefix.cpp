#include "platform/posix/prefix.h"

#include "platform/posix/inifile.h"

#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {
namespace {

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

Settings ReadPrefix(std::string const &prefixName) {
    std::string const prefix = Resolved(prefixName);
    Fields const fields = ReadFields(prefix);
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
