#include "platform/list_source.h"

#include "lists/folder_source.h"
#include "platform/host.h"
#include "platform/posix/hive.h"
#include "platform/settings.h"
#include "platform/walk.h"

#include <cstdlib>
#include <stdexcept>

namespace qvlink {
namespace {

std::string PrefixInUse() {
    const char *const named = std::getenv("QVPREFIX");
    return named && *named ? named : DefaultDatabaseDirectory();
}

// A folder of the system, by its path in the prefix.
std::string FolderInUse(std::string const &path, std::map<char, std::string> const &drives) {
    auto const place = ParseDatabasePath(path);
    auto const drive = place ? drives.find(place->drive.front()) : drives.end();
    auto const folder =
        drive == drives.end() ? std::nullopt : FindBelow(drive->second, place->names);
    if (!folder) {
        throw std::runtime_error(PrefixInUse() + ": this prefix has no " + path +
                                 "; name the folder to capture from");
    }
    return *folder;
}

class HiveSet {
public:
    HiveSet(KeyTree &tree, std::vector<std::string> &skipped) : m_tree(tree), m_skipped(skipped) {}

    // Whether the hive could be opened.
    bool Read(std::string const &folder, std::vector<std::string> const &names, Key &to,
              std::string const &line);
    bool ReadUser(std::string const &disk, std::string const &config);

private:
    void LinkCurrent(Hive const &hive);

    KeyTree &m_tree;
    std::vector<std::string> &m_skipped;
};

bool HiveSet::Read(std::string const &folder, std::vector<std::string> const &names, Key &to,
                   std::string const &line) {
    auto const path = FindBelow(folder, names);
    if (!path) {
        m_skipped.push_back(line + ": there is no " + names.back() + " in " + folder);
        return false;
    }
    std::string why;
    auto const hive = Hive::Open(*path, why);
    if (!hive) {
        m_skipped.push_back(line + ": " + *path + ": " + why);
        return false;
    }
    hive->Read(to, line, m_skipped);
    if (line == "HKLM\\SYSTEM") {
        LinkCurrent(*hive);
    }
    return true;
}

// A Windows that runs has this key; its file has only the number.
void HiveSet::LinkCurrent(Hive const &hive) {
    auto const current = hive.Number("Select", "Current");
    if (!current || *current > 999) {
        m_skipped.emplace_back("HKLM\\SYSTEM\\CurrentControlSet: the hive doesn't say which it is");
        return;
    }
    std::string const digits = "00" + std::to_string(*current);
    Key &key = m_tree.machine.At("SYSTEM").At("CurrentControlSet");
    key.link = "HKLM\\SYSTEM\\ControlSet" + digits.substr(digits.size() - 3);
}

// The user that new ones are made after.
bool HiveSet::ReadUser(std::string const &disk, std::string const &config) {
    for (auto const &names : {std::vector<std::string>{"Users", "Default", "NTUSER.DAT"},
                              {"Documents and Settings", "Default User", "NTUSER.DAT"}}) {
        if (FindBelow(disk, names)) {
            return Read(disk, names, m_tree.user, "HKCU");
        }
    }
    return Read(config, {"DEFAULT"}, m_tree.user, "HKCU");
}

} // namespace

SystemFolders SystemFoldersInUse() {
    platform::Settings const settings = platform::CurrentSettings();
    return {FolderInUse(settings.windowsDirectory, settings.drives),
            FolderInUse(settings.systemDirectory, settings.drives)};
}

void ReadKeysInUse(KeyTree &tree, std::vector<std::string> &skipped) {
    std::string const prefix = PrefixInUse();
    if (FindBelow(prefix, {"system.reg"})) {
        ReadKeysIn(prefix, tree, skipped);
    } else {
        ReadKeyFiles(SystemFoldersInUse().windows, tree, skipped);
    }
}

void ReadKeyFiles(std::string const &windows, KeyTree &tree, std::vector<std::string> &skipped) {
    auto const config = FindBelow(windows, {"system32", "config"});
    if (!config) {
        throw std::runtime_error(
            windows + ": its registry isn't in system32/config, so it can't be read from here; "
                      "capture the keys on that Windows itself");
    }
    HiveSet hives(tree, skipped);
    bool any = false;
    for (const char *const name : {"SAM", "SECURITY", "SOFTWARE", "SYSTEM"}) {
        any |= hives.Read(*config, {name}, tree.machine.At(name), std::string("HKLM\\") + name);
    }
    any |= hives.ReadUser(SplitLastName(windows).folder, *config);
    if (!any) {
        throw std::runtime_error(*config + ": none of the registry's files there can be read");
    }
}

} // namespace qvlink
