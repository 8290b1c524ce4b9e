#include "platform/posix/paths.h"

#include "platform/posix/errors.h"
#include "platform/posix/settings.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <memory>
#include <numeric>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace platform {
namespace {

char Upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c; }

bool Exists(std::string const &hostPath) {
    struct stat entry {};
    return lstat(hostPath.c_str(), &entry) == 0;
}

// No name on a drive has these; the colon is good behind a drive's letter only.
bool HasForbiddenCharacter(const char *text) {
    for (; *text; ++text)
        if (static_cast<unsigned char>(*text) < ' ' || std::strchr("<>:\"|?*", *text))
            return true;
    return false;
}

std::string CurrentDirectory() {
    std::unique_ptr<char, void (*)(void *)> const directory(getcwd(nullptr, 0), std::free);
    return directory ? std::string(directory.get()) : std::string("/");
}

// What is left of `hostPath` below `folder`, with its leading slash; false if it isn't there.
bool Below(std::string const &folder, std::string const &hostPath, std::string &rest) {
    std::size_t const length = folder == "/" ? 0 : folder.size();
    if (folder.empty() || hostPath.compare(0, length, folder, 0, length) != 0 ||
        (hostPath.size() > length && hostPath[length] != '/'))
        return false;
    rest = hostPath.substr(length);
    return true;
}

// The drive whose directory holds a path of the host, 0 if none does.
char DriveOf(std::string const &hostPath, std::string &rest) {
    char found = 0;
    std::size_t longest = 0;
    auto const settings = SettingsNow();
    for (auto const &[letter, directory] : settings->drives) {
        for (std::string const &folder : {directory, RealPath(directory)}) {
            std::string below;
            if (folder.size() <= longest || !Below(folder, hostPath, below))
                continue;
            found = letter;
            longest = folder.size();
            rest = below;
        }
    }
    return found;
}

// FindEntry, with whether there is such an entry.
std::string Find(std::string const &folder, std::string const &name, bool &exists) {
    std::string exact = Joined(folder, name);
    exists = true;
    if (Exists(exact))
        return exact;
    exists = false;
    if (name == "." || name == "..")
        return exact;
    std::unique_ptr<DIR, int (*)(DIR *)> const directory(opendir(folder.c_str()), closedir);
    if (!directory && errno == ENOMEM)
        throw std::bad_alloc();
    std::string found;
    while (dirent const *entry = directory ? readdir(directory.get()) : nullptr) {
        std::string const candidate = entry->d_name;
        if (SameName(candidate, name) && (found.empty() || candidate < found))
            found = candidate;
    }
    exists = !found.empty();
    return found.empty() ? exact : Joined(folder, found);
}

std::vector<std::string> NamesOf(const char *text) {
    std::vector<std::string> names;
    while (*text) {
        while (IsSeparator(*text))
            ++text;
        const char *const begin = text;
        while (*text && !IsSeparator(*text))
            ++text;
        if (text != begin)
            names.emplace_back(begin, text);
    }
    return names;
}

// Walks `text` down from `folder`. As long as names exist their own spelling is taken; what is
// there as it is spelled has all its names spelled so.
std::string Walk(std::string const &folder, const char *text) {
    std::vector<std::string> const names = NamesOf(text);
    std::string const exact = std::accumulate(names.begin(), names.end(), folder, Joined);
    if (Exists(exact))
        return exact;
    std::string found = folder;
    bool exists = true;
    for (std::string const &name : names)
        found = exists ? Find(found, name, exists) : Joined(found, name);
    return found;
}

BOOL DrivePathToHost(char letter, const char *text, std::string &hostPath) {
    auto const settings = SettingsNow();
    auto const drive = settings->drives.find(Upper(letter));
    if (drive == settings->drives.end())
        return Fail(ERROR_PATH_NOT_FOUND);
    std::string start = drive->second;
    if (!IsSeparator(*text)) {
        std::string const current = CurrentDirectory();
        std::string rest;
        if (DriveOf(current, rest) == drive->first)
            start = current;
    }
    hostPath = Walk(start, text);
    return TRUE;
}

BOOL CurrentDrivePathToHost(const char *text, std::string &hostPath) {
    std::string rest;
    char const letter = DriveOf(CurrentDirectory(), rest);
    return DrivePathToHost(letter ? letter : 'Z', text, hostPath);
}

} // namespace

bool IsSeparator(char c) { return c == '\\' || c == '/'; }

bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

std::string Joined(std::string const &folder, std::string const &name) {
    return !folder.empty() && folder.back() == '/' ? folder + name : folder + '/' + name;
}

std::string RealPath(std::string const &hostPath) {
    std::unique_ptr<char, void (*)(void *)> const real(realpath(hostPath.c_str(), nullptr),
                                                       std::free);
    return real ? std::string(real.get()) : std::string();
}

bool SameName(std::string const &left, std::string const &right) {
    return left.size() == right.size() &&
           std::equal(left.begin(), left.end(), right.begin(),
                      [](char a, char b) { return Upper(a) == Upper(b); });
}

std::string ParentOf(std::string const &hostPath) {
    std::size_t const last = hostPath.find_last_not_of('/');
    std::size_t const slash = last == std::string::npos ? last : hostPath.rfind('/', last);
    if (slash == std::string::npos)
        return hostPath.empty() || hostPath[0] != '/' ? "." : "/";
    std::size_t const end = hostPath.find_last_not_of('/', slash);
    return end == std::string::npos ? "/" : hostPath.substr(0, end + 1);
}

std::string FindEntry(std::string const &folder, std::string const &name) {
    bool exists = false;
    return Find(folder, name, exists);
}

BOOL HostPath(const char *path, std::string &hostPath) {
    if (!path || !*path)
        return Fail(ERROR_PATH_NOT_FOUND);
    if (path[0] == '/') {
        hostPath = path;
        std::replace(hostPath.begin(), hostPath.end(), '\\', '/');
        return TRUE;
    }
    if (path[0] == '\\' && IsSeparator(path[1]))
        return Fail(ERROR_BAD_NETPATH);
    bool const hasDrive = IsLetter(path[0]) && path[1] == ':';
    const char *const text = hasDrive ? path + 2 : path;
    if (HasForbiddenCharacter(text))
        return Fail(ERROR_INVALID_NAME);
    if (hasDrive)
        return DrivePathToHost(path[0], text, hostPath);
    if (IsSeparator(path[0]))
        return CurrentDrivePathToHost(path, hostPath);
    hostPath = Walk(".", text);
    return TRUE;
}

std::string DrivePath(std::string const &hostPath) {
    std::string rest;
    char const letter = DriveOf(hostPath, rest);
    if (!letter)
        return hostPath;
    std::replace(rest.begin(), rest.end(), '/', '\\');
    return std::string{letter, ':'} + (rest.empty() ? "\\" : rest);
}

} // namespace platform
