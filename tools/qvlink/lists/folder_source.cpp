#include "lists/folder_source.h"

#include "lists/prefix_file.h"
#include "platform/list_source.h"
#include "platform/walk.h"
#include "platform/whole_file.h"

#include <stdexcept>

namespace qvlink {
namespace {

std::string Canonical(std::string const &folder) {
    Presence presence = Presence::absent;
    auto const path = CanonicalPath(folder, presence);
    if (!path) {
        throw std::runtime_error(folder + ": there is no such folder, or it can't be reached");
    }
    return *path;
}

bool IsPrefix(std::string const &folder) {
    return FindBelow(folder, {"drive_c"}) || FindBelow(folder, {"dosdevices"}) ||
           FindBelow(folder, {"system.reg"});
}

std::optional<std::string> WindowsIn(std::string const &folder) {
    if (!IsPrefix(folder)) {
        auto windows = FindWindows(folder);
        return windows || !FindSystem(folder) ? windows : folder;
    }
    auto drive = FindBelow(folder, {"dosdevices", "c:"});
    if (!drive) {
        drive = FindBelow(folder, {"drive_c"});
    }
    return drive ? FindWindows(*drive) : std::nullopt;
}

std::string NeedWindowsIn(std::string const &folder) {
    auto const windows = WindowsIn(folder);
    if (!windows) {
        throw std::runtime_error(folder + (IsPrefix(folder)
                                               ? ": this prefix has no Windows folder on its drive "
                                                 "C:; let wineboot make it"
                                               : ": neither a Wine prefix nor the top of a Windows "
                                                 "disk; name a folder that has drive_c, Windows or "
                                                 "WINNT in it"));
    }
    return *windows;
}

// Keys of one of a prefix's files, to be found below `root`.
bool ReadPrefixKeys(std::string const &folder, const char *name, Key &root,
                    std::vector<std::string> &skipped) {
    auto const path = FindBelow(folder, {name});
    if (!path) {
        skipped.push_back(JoinPath(folder, name) + ": there is no such file");
        return false;
    }
    std::string why;
    auto const text = ReadWholeFile(*path, why);
    PrefixFile const file = text ? ReadPrefixFile(*text) : PrefixFile{};
    if (!file.isOne) {
        skipped.push_back(*path + ": " +
                          (text ? "not a registry file of Wine's second form" : why));
        return false;
    }
    for (PrefixFault const &fault : file.faults) {
        skipped.push_back(*path + ':' + std::to_string(fault.line) + ": " + fault.message);
    }
    for (PrefixKey const &found : file.keys) {
        Key *const key = KeyTree::Make(root, found.path);
        if (!key) {
            skipped.push_back(*path + ": a key deeper than any system has them");
        } else if (!found.target.empty()) {
            key->link = LineOfSystemPath(found.target, file.root).value_or(found.target);
        }
    }
    return true;
}

} // namespace

SystemFolders SystemFoldersIn(std::string const &folder) {
    std::string const windows = NeedWindowsIn(Canonical(folder));
    auto const system = FindSystem(windows);
    if (!system) {
        throw std::runtime_error(windows + ": this Windows folder has no system32 or system");
    }
    return {windows, *system};
}

void ReadKeysIn(std::string const &folder, KeyTree &tree, std::vector<std::string> &skipped) {
    std::string const path = Canonical(folder);
    if (!FindBelow(path, {"system.reg"})) {
        ReadKeyFiles(NeedWindowsIn(path), tree, skipped);
        return;
    }
    bool const machine = ReadPrefixKeys(path, "system.reg", tree.machine, skipped);
    bool const user = ReadPrefixKeys(path, "user.reg", tree.user, skipped);
    if (!machine && !user) {
        throw std::runtime_error(path + ": neither system.reg nor user.reg can be read as a "
                                        "registry file of Wine's second form");
    }
}

} // namespace qvlink
