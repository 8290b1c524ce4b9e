// Folders and files of the host, as a scan needs them. Symbolic links are never followed
// except where a function says so.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "linkdb.h"
#include "readers/program.h"

namespace qvlink {

struct Entry {
    std::string name;
    FileData data{};      // as model.h tells it
    bool lossless = true; // false: the database's 8-bit texts can't hold the name
};

// How a file of the host stands to a path that was asked for.
enum class Presence { present, absent, unknown };

// An open folder of the host.
class Folder {
public:
    // Null, and `why` says what was wrong.
    static std::unique_ptr<Folder> Open(std::string const &path, std::string &why);
    ~Folder();
    Folder(Folder const &) = delete;
    Folder &operator=(Folder const &) = delete;

    // All entries in no order, without "." and "..". False, and `why` says what was wrong;
    // `entries` then has those that were read. A file system that isn't on any disk (the
    // kernel's own, as below /proc) has none.
    bool List(std::vector<Entry> &entries, std::string &why) const;
    // One entry; absent too if the folder has lost it.
    Presence Look(std::string const &name, Entry &entry) const;
    // Reads a regular file for what it needs. False, and `why` says what was wrong.
    bool ReadProgram(std::string const &name, Program &program, std::string &why) const;
    // What a symbolic link says, or nothing.
    std::optional<std::string> ReadLink(std::string const &name) const;

private:
    struct State;
    explicit Folder(std::unique_ptr<State> state);
    std::unique_ptr<State> m_state;
};

// Order and equality of names in one folder: below 0, 0, above 0.
int CompareNames(const char *a, const char *b);

// The path with all links followed. Nothing if there is no such file, or it can't be
// reached; `presence` tells which.
std::optional<std::string> CanonicalPath(std::string const &path, Presence &presence);
// The folder and the last name of an absolute path; a root has no name.
struct SplitPath {
    std::string folder;
    std::string name;
};
SplitPath SplitLastName(std::string const &path);
std::string JoinPath(std::string const &folder, std::string const &name);
// Whether a path, as links say them, starts at a root.
bool IsAbsolutePath(std::string const &path);

} // namespace qvlink
