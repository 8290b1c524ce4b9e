#include "scan/walker.h"

#include <algorithm>

#include "model.h"
#include "platform/host.h"

namespace qvlink {
namespace {

constexpr std::size_t LONGEST_NAME = 250;
constexpr std::size_t LONGEST_PATH = 999;
constexpr std::size_t DEEPEST_PATH = 259; // names below a drive that a path may have
constexpr std::uint64_t SMALLEST_PROGRAM = 4;

std::uint64_t SizeOf(FileData const &data) {
    return std::uint64_t{data.dwSizeHigh} << 32 | data.dwSizeLow;
}

bool SameSizeAndTime(FileData const &a, FileData const &b) {
    return a.dwSizeLow == b.dwSizeLow && a.dwSizeHigh == b.dwSizeHigh &&
           a.dwTimeLow == b.dwTimeLow && a.dwTimeHigh == b.dwTimeHigh;
}

} // namespace

Walker::Walker(Session &session, ProgramLinks &programs, std::string ownFolder)
    : m_session(session), m_programs(programs), m_ownFolder(std::move(ownFolder)) {
    for (char letter = 'A'; letter <= 'Z'; ++letter) {
        std::string const drive{letter, ':'};
        m_drives.emplace(HostPath({drive, {}}), drive);
    }
}

bool Walker::Visited(CQVUObject const &object) const {
    return object.dwID < m_visited.size() && m_visited[object.dwID];
}

void Walker::MarkVisited(CQVUObject const &object) {
    if (object.dwID >= m_visited.size()) {
        m_visited.resize(object.dwID + std::size_t{1000});
    }
    m_visited[object.dwID] = true;
}

void Walker::Scan(std::string const &path) {
    std::vector<Level> pending;
    if (auto const drive = DriveAt(path)) {
        pending.push_back(*drive);
    } else {
        SplitPath const parts = SplitLastName(path);
        auto const level = Descend(parts.folder);
        CQVUObject *const object = level ? Visit(*level, parts.name) : nullptr;
        if (object && KindOf(object) == FileKind::folder) {
            pending.push_back(LevelOf(*object, path, *PlaceOfHostPath(path)));
        }
    }
    while (!pending.empty()) {
        Level const level = std::move(pending.back());
        pending.pop_back();
        std::vector<Level> next;
        ScanFolder(level, next);
        std::move(next.rbegin(), next.rend(), std::back_inserter(pending));
    }
}

void Walker::ScanFolder(Level const &level, std::vector<Level> &next) {
    Session::StopIfAsked();
    std::string why;
    auto const folder = Folder::Open(level.path, why);
    std::vector<Entry> entries;
    bool const complete = folder && folder->List(entries, why);
    if (!complete) {
        m_session.Problem(ScanProblem::unreadable, level.path, why);
    }
    if (folder) {
        Merge(level, *folder, entries, complete, next);
    }
    m_session.observer.Progress(level.path, m_session.summary);
}

// Both sides are in order of names, so that one pass tells what came, stayed and went.
void Walker::Merge(Level const &level, Folder const &folder, std::vector<Entry> &entries,
                   bool complete, std::vector<Level> &next) {
    std::sort(entries.begin(), entries.end(), [](Entry const &a, Entry const &b) {
        return CompareNames(a.name.c_str(), b.name.c_str()) < 0;
    });
    auto &object = *static_cast<CQVUObject *>(m_session.database.LookupObject(level.id));
    std::vector<CQVUObject *> const known = m_session.tree.Children(object);
    std::vector<CQVUObject *> gone;
    auto at = known.begin();
    for (Entry &entry : entries) {
        if (!CanHold(level, entry) || IsOwn(level, entry)) {
            continue;
        }
        std::string path = JoinPath(level.path, entry.name);
        bool const isFolder = KindOf(entry.data) == FileKind::folder;
        if (auto drive = isFolder ? DriveAt(path) : std::nullopt) {
            next.push_back(std::move(*drive));
            continue;
        }
        int order = 1;
        while (at != known.end() &&
               (order = CompareNames((*at)->pszName, entry.name.c_str())) < 0) {
            gone.push_back(*at++);
        }
        bool const isKnown = at != known.end() && order == 0;
        CQVUObject &taken = Take(level, folder, isKnown ? *at : nullptr, entry);
        at += isKnown ? 1 : 0;
        if (isFolder) {
            next.push_back({taken.dwID, std::move(path), level.length + 1 + entry.name.size(),
                            level.depth + 1});
        }
    }
    if (complete) {
        gone.insert(gone.end(), at, known.end());
        m_session.summary.removed += m_session.tree.Remove(object, gone);
    }
}

CQVUObject &Walker::Take(Level const &level, Folder const &folder, CQVUObject *known,
                         Entry const &entry) {
    Session::StopIfAsked();
    auto &parent = *static_cast<CQVUObject *>(m_session.database.LookupObject(level.id));
    FileKind const kind = KindOf(entry.data);
    FileData before{};
    if (known && known->GetFileData(&before) && KindOf(before) != kind) {
        m_session.summary.removed += m_session.tree.Remove(parent, {known});
        known = nullptr;
    }
    bool isNew = !known;
    if (isNew) {
        known = &m_session.tree.Add(parent, entry.name, entry.data);
        ++m_session.summary.added;
    } else if (m_session.tree.Update(*known, entry.name, entry.data)) {
        ++m_session.summary.changed;
        isNew = !SameSizeAndTime(before, entry.data);
    } else {
        ++m_session.summary.unchanged;
    }
    MarkVisited(*known);
    if (kind == FileKind::file) {
        Read(*known, level, folder, entry, isNew);
    } else if (kind == FileKind::symlink) {
        m_symlinks.push_back({known->dwID, level.path, folder.ReadLink(entry.name).value_or("")});
    }
    Count(kind);
    return *known;
}

void Walker::Read(CQVUObject &object, Level const &level, Folder const &folder, Entry const &entry,
                  bool isNew) {
    auto const before = static_cast<std::uint32_t>(object.GetFlags());
    std::uint32_t flags = before;
    if (isNew || (before & FLAG_UNREADABLE)) {
        Program program;
        std::string why;
        bool const isLarge = SizeOf(entry.data) >= SMALLEST_PROGRAM;
        if (isLarge && !folder.ReadProgram(entry.name, program, why)) {
            m_session.Problem(ScanProblem::unreadable, JoinPath(level.path, entry.name), why);
            program.flags = FLAG_UNREADABLE;
        }
        m_session.summary.read += isLarge ? 1 : 0;
        flags = program.flags;
        m_session.tree.SetFlags(object, flags);
        if (flags & FLAG_MALFORMED) {
            m_session.Problem(ScanProblem::malformed, JoinPath(level.path, entry.name),
                              program.malformed);
        }
        if ((flags | before) & FLAG_PROGRAM_MASK) {
            m_programs.Read(object, std::move(program));
        }
    } else if (flags & FLAG_PROGRAM_MASK) {
        m_programs.Known(object);
        if (flags & FLAG_MALFORMED) {
            m_session.Problem(ScanProblem::malformed, JoinPath(level.path, entry.name),
                              "as it was when it was read");
        }
    }
    m_session.summary.elf += flags & FLAG_ELF ? 1 : 0;
    m_session.summary.pe += flags & FLAG_PE ? 1 : 0;
}

void Walker::Count(FileKind kind) {
    ScanSummary &summary = m_session.summary;
    if (m_locating) {
        ++summary.located;
        return;
    }
    summary.folders += kind == FileKind::folder ? 1 : 0;
    summary.files += kind == FileKind::file ? 1 : 0;
    summary.symlinks += kind == FileKind::symlink ? 1 : 0;
    summary.specials += kind == FileKind::special ? 1 : 0;
}

bool Walker::CanHold(Level const &level, Entry const &entry) {
    const char *why = nullptr;
    if (!entry.lossless) {
        why = "the name has characters that the database's texts don't know";
    } else if (entry.name.size() > LONGEST_NAME) {
        why = "the name is longer than 250 bytes";
    } else if (entry.name.find('\\') != std::string::npos) {
        why = "the name has a backslash, which separates names in the database";
    } else if (level.length + 1 + entry.name.size() > LONGEST_PATH ||
               level.depth + 1 > DEEPEST_PATH) {
        why = "the path is longer or deeper than the database can tell";
    }
    if (why) {
        m_session.Problem(ScanProblem::unrepresentable, JoinPath(level.path, entry.name), why);
    }
    return !why;
}

bool Walker::IsOwn(Level const &level, Entry &entry) const {
    if (m_ownFolder.empty()) {
        return false;
    }
    if (level.path == m_ownFolder) {
        return entry.name == "linkdb.dat" || entry.name == "linkdb.dat.tmp" ||
               entry.name == "linkdb.lock";
    }
    if (JoinPath(level.path, entry.name) == m_ownFolder) {
        entry.data.dwTimeLow = 0;
        entry.data.dwTimeHigh = 0;
    }
    return false;
}

} // namespace qvlink
