// Walks the host's folders and brings the file tree of the graph in line with them.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "model.h"
#include "platform/walk.h"
#include "scan/program_links.h"
#include "scan/session.h"

namespace qvlink {

class Walker {
public:
    // Entries of `ownFolder`, a canonical path or empty, that are the database's own files
    // are left out, and the folder's time isn't stored: writing the database changes it.
    Walker(Session &session, ProgramLinks &programs, std::string ownFolder);

    // A file, folder or symbolic link by its canonical path, with all that is below it.
    void Scan(std::string const &path);
    // A path that is no more: takes it out of the graph. False if it isn't there either.
    bool Forget(std::string const &path);

    // The object of a file that a program needs, made and read if need be, and with it
    // what it leads to if it is a symbolic link. Null if it is gone or can't be held.
    CQVUObject *Locate(std::string const &path);
    // Gives each symbolic link that was seen its link, if the graph has its target.
    void LinkSymlinks(std::vector<std::uint32_t> &lost);
    // Of these objects, takes out those that weren't seen in this scan, that nothing leads
    // to any more, and that are gone from the disk too. Uses up the list.
    void RemoveLost(std::vector<std::uint32_t> &lost);

private:
    // A folder whose object is there, and what the database's form of its path takes.
    struct Level {
        std::uint32_t id = 0;
        std::string path;
        std::size_t length = 0;
        std::size_t depth = 0;
    };
    struct Symlink {
        std::uint32_t id;
        std::string folder;
        std::string text;
    };

    void ScanFolder(Level const &level, std::vector<Level> &next);
    void Merge(Level const &level, Folder const &folder, std::vector<Entry> &entries, bool complete,
               std::vector<Level> &next);
    CQVUObject &Take(Level const &level, Folder const &folder, CQVUObject *known,
                     Entry const &entry);
    void Read(CQVUObject &object, Level const &level, Folder const &folder, Entry const &entry,
              bool isNew);
    void Count(FileKind kind);
    bool CanHold(Level const &level, Entry const &entry);
    bool IsOwn(Level const &level, Entry &entry) const;

    Level LevelOf(CQVUObject &object, std::string const &path, Place const &place) const;
    std::optional<Level> Descend(std::string const &path);
    std::optional<Level> DriveAt(std::string const &path);
    std::optional<std::string> CanonicalFolder(std::string const &path);
    std::string TargetPath(Symlink const &link);
    CQVUObject *Visit(Level const &level, std::string const &name);
    bool IsGone(std::string const &path) const;

    bool Visited(CQVUObject const &object) const;
    void MarkVisited(CQVUObject const &object);

    Session &m_session;
    ProgramLinks &m_programs;
    std::string m_ownFolder;
    std::unordered_map<std::string, std::string> m_drives; // by the host's directory
    std::unordered_map<std::string, std::optional<std::string>> m_canonical;
    std::unordered_map<std::string, CQVUObject *> m_located;
    std::vector<Symlink> m_symlinks;
    std::vector<bool> m_visited; // by id
    bool m_locating = false;     // what is seen now lies outside the paths that are scanned
};

} // namespace qvlink
