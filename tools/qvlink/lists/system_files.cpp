#include "lists/system_files.h"

#include "answer/place.h"
#include "list_text.h"
#include "model.h"
#include "platform/walk.h"

#include <algorithm>

namespace qvlink {
namespace {

constexpr const char *kernel = "kernel32.dll";

bool Is(Entry const &entry, std::uint32_t attribute) {
    return (entry.data.dwAttributes & attribute) != 0;
}

// One name below a folder. The exact spelling wins.
std::optional<std::string> FindName(std::string const &folder, std::string const &name) {
    std::string why;
    auto const open = Folder::Open(folder, why);
    std::vector<Entry> entries;
    if (!open) {
        return std::nullopt;
    }
    open->List(entries, why);
    const Entry *found = nullptr;
    for (Entry const &entry : entries) {
        bool const isBetter = !found || entry.name == name || entry.name < found->name;
        if (EqualNames(entry.name, name) && isBetter && (!found || found->name != name)) {
            found = &entry;
        }
    }
    Presence presence = Presence::absent;
    return found ? CanonicalPath(JoinPath(folder, found->name), presence) : std::nullopt;
}

class FileLister {
public:
    FileLister(SystemFolders const &folders, LineFilter const &filter,
               std::vector<std::string> &skipped)
        : m_folders(folders), m_filter(filter), m_skipped(skipped) {}

    void Walk(std::string const &folder, std::string_view tag);

    std::vector<std::string> lines;

private:
    struct Level {
        std::string path;
        std::string line; // its start, with a backslash at its end
    };

    void List(Level const &level);
    void Take(Level const &level, Entry const &entry);
    void TakeLink(std::string const &path, std::string const &line, Entry const &entry);
    bool CanHold(std::string const &path, std::string const &line, Entry const &entry);
    void Skip(std::string const &path, std::string const &why) {
        m_skipped.push_back(path + ": " + why);
    }

    SystemFolders const &m_folders;
    LineFilter const &m_filter;
    std::vector<std::string> &m_skipped;
    std::vector<Level> m_pending;
};

void FileLister::Walk(std::string const &folder, std::string_view tag) {
    m_pending.push_back({folder, std::string(tag)});
    while (!m_pending.empty()) {
        Level const level = std::move(m_pending.back());
        m_pending.pop_back();
        List(level);
    }
}

void FileLister::List(Level const &level) {
    std::string why;
    auto const folder = Folder::Open(level.path, why);
    std::vector<Entry> entries;
    if (!folder || !folder->List(entries, why)) {
        Skip(level.path, why);
    }
    for (Entry const &entry : entries) {
        Take(level, entry);
    }
}

void FileLister::Take(Level const &level, Entry const &entry) {
    std::string const path = JoinPath(level.path, entry.name);
    std::string const line = level.line + entry.name;
    // The system folder has a tag of its own.
    if (path == m_folders.system || m_filter.Matches(line) || !CanHold(path, line, entry)) {
        return;
    }
    if (Is(entry, ATTRIBUTE_REPARSE_POINT)) {
        TakeLink(path, line, entry);
    } else if (Is(entry, ATTRIBUTE_DIRECTORY)) {
        m_pending.push_back({path, line + '\\'});
    } else if (Is(entry, ATTRIBUTE_DEVICE)) {
        Skip(path, "neither a file nor a folder");
    } else if (EndsBlank(entry.name)) {
        Skip(path, "its name ends with a blank, which the library takes off a line");
    } else {
        lines.push_back(line);
    }
}

// A file by this name too, whatever its own is.
void FileLister::TakeLink(std::string const &path, std::string const &line, Entry const &entry) {
    Presence presence = Presence::absent;
    auto const target = CanonicalPath(path, presence);
    SplitPath const parts = target ? SplitLastName(*target) : SplitPath{};
    std::string why;
    auto const folder = target ? Folder::Open(parts.folder, why) : nullptr;
    Entry end;
    if (!folder || folder->Look(parts.name, end) != Presence::present) {
        Skip(path, "a link to nothing that can be read");
    } else if (Is(entry, ATTRIBUTE_DIRECTORY) || Is(end, ATTRIBUTE_DIRECTORY)) {
        Skip(path, "a link to a folder, which isn't followed");
    } else if (Is(end, ATTRIBUTE_DEVICE)) {
        Skip(path, "a link to what is neither a file nor a folder");
    } else {
        lines.push_back(line);
    }
}

bool FileLister::CanHold(std::string const &path, std::string const &line, Entry const &entry) {
    const char *problem = NameProblem(entry.name);
    if (!entry.lossless) {
        problem = "its name has characters that the code page doesn't know";
    } else if (!problem && IsTooLong(line)) {
        problem = tooLong;
    }
    if (problem) {
        Skip(path, problem);
    }
    return !problem;
}

// In order; of names that differ by case only the first stays.
void Sort(std::vector<std::string> &lines, std::vector<std::string> &skipped) {
    auto const isBefore = [](std::string const &a, std::string const &b) {
        return lists::EntryBefore(a, b) || (!lists::EntryBefore(b, a) && a < b);
    };
    std::sort(lines.begin(), lines.end(), isBefore);
    auto const isSame = [&](std::string const &a, std::string const &b) {
        bool const same = !lists::EntryBefore(a, b);
        if (same) {
            skipped.push_back(b + ": the same but for case as " + a);
        }
        return same;
    };
    lines.erase(std::unique(lines.begin(), lines.end(), isSame), lines.end());
}

bool HasKernel(std::string const &folder) { return FindBelow(folder, {kernel}).has_value(); }

} // namespace

std::optional<std::string> FindBelow(std::string const &folder,
                                     std::vector<std::string> const &names) {
    std::optional<std::string> path = folder;
    for (auto name = names.begin(); path && name != names.end(); ++name) {
        path = FindName(*path, *name);
    }
    return path;
}

std::optional<std::string> FindWindows(std::string const &disk) {
    std::optional<std::string> first;
    for (const char *const name : {"Windows", "WINNT"}) {
        auto const windows = FindBelow(disk, {name});
        auto const system = windows ? FindSystem(*windows) : std::nullopt;
        if (system && HasKernel(*system)) {
            return windows;
        }
        if (system && !first) {
            first = windows;
        }
    }
    return first;
}

std::optional<std::string> FindSystem(std::string const &windows) {
    // Windows 95 and those that came from it call it System, and may have both.
    auto const later = FindBelow(windows, {"system32"});
    auto const early = FindBelow(windows, {"system"});
    if (later && (!early || HasKernel(*later) || !HasKernel(*early))) {
        return later;
    }
    return early;
}

std::vector<std::string> LinesOf(SystemFolders const &folders, LineFilter const &filter,
                                 std::vector<std::string> &skipped) {
    FileLister lister(folders, filter, skipped);
    lister.Walk(folders.system, lists::systemTag);
    lister.Walk(folders.windows, lists::windowsTag);
    Sort(lister.lines, skipped);
    return std::move(lister.lines);
}

} // namespace qvlink
