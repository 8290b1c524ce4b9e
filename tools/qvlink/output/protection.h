// Answers about protected files and keys, as text and as JSON.
#pragma once

#include "answer/protected_files.h"
#include "output/json.h"
#include "output/screen.h"

#include <optional>
#include <vector>

namespace qvlink {

// What is known of one path that was asked about.
struct PathProtection {
    std::string shown; // as the user is told it
    std::string path;  // in the database's form; empty if it has none
    std::string error; // why it couldn't be asked about; empty if it could
    bool isProtected = false;
    std::string line;      // of the list; empty if none names the path
    std::size_t below = 0; // protected files, or keys, below it
    bool isKey = false;

    // The list names it, and the library doesn't know.
    bool IsLost() const { return !isProtected && !line.empty(); }
};

// The lists that answer; nothing where none of the paths asks for one.
struct OwnLists {
    std::optional<OwnList> files;
    std::optional<OwnList> keys;

    OwnList const &Of(PathProtection const &path) const { return path.isKey ? *keys : *files; }
};

// A list in words; empty if there is none for the system's family.
std::string ListText(OwnList const &list);

void PrintProtection(Screen &screen, OwnLists const &lists,
                     std::vector<PathProtection> const &paths, bool verbose);
Json JsonOfProtection(OwnLists const &lists, std::vector<PathProtection> const &paths);

} // namespace qvlink
