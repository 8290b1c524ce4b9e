// What objects need, seen from the place where a program starts.
#pragma once

#include "answer/graph.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace qvlink {

// Why a need leads where it leads.
enum class Rule {
    rpath,         // ELF: in a folder of the file's DT_RPATH
    runpath,       // ELF: in a folder of its DT_RUNPATH
    cache,         // ELF: in the loader's cache
    defaultFolder, // ELF: in a default folder of the loader
    byPath,        // ELF: asked for by a path
    interpreter,   // ELF: the loader that the program names
    startFolder,   // PE: in the folder of the program that starts
    systemFolder,  // PE: in a folder of the system
    loaded,        // ELF: under this name another file of the program has loaded it before
    symlink,       // the target of a symbolic link
    value,         // a registry value names it
    linked,        // linked by a client of the database that told no rule
    missing,       // nothing provides it
};

// One need of an object.
struct Need {
    CQVUObject *asked; // what the link names: a file, or a bare name
    CQVUObject *found; // the file that it comes to; null if nothing provides it
    std::uint32_t linkType;
    Rule rule;
};

// Answers for one folder to start from: bare names are looked for there first.
class Needs {
public:
    Needs(CQVUDatabase &database, std::string startFolder)
        : m_database(database), m_startFolder(std::move(startFolder)) {}

    // The direct needs of an object, each target once, in the order of its links. A symbolic
    // link needs what it names.
    std::vector<Need> Of(CQVUObject const &object);
    // The file that a bare name comes to, or null.
    CQVUObject *Resolve(CQVUObject &name);

private:
    Need Located(Edge const &edge, std::unordered_map<std::uint32_t, std::uint32_t> const &rules);
    Need ByName(Edge const &edge);

    CQVUDatabase &m_database;
    std::string m_startFolder;
    std::unordered_map<std::uint32_t, CQVUObject *> m_resolved;
};

// Whether a walk goes on from what a need found. Where a bare name comes to an
// OBJ_PINNED, it ends there, as the library's own expansion does.
bool GoesOn(Need const &need);

// Sorts by the database's path of `object(item)`, those without a path by name at the end.
class PathOrder {
public:
    explicit PathOrder(CQVUDatabase &database) : m_database(database) {}
    bool operator()(CQVUObject *a, CQVUObject *b) { return KeyOf(a) < KeyOf(b); }

private:
    using Key = std::tuple<bool, std::string, std::uint32_t>;
    Key const &KeyOf(CQVUObject *object);

    CQVUDatabase &m_database;
    std::unordered_map<std::uint32_t, Key> m_keys;
};

} // namespace qvlink
