// Answers about protected files, as text and as JSON.
#pragma once

#include "answer/protected_files.h"
#include "output/json.h"
#include "output/screen.h"

#include <vector>

namespace qvlink {

// What is known of one path that was asked about.
struct PathProtection {
    std::string shown; // as the user is told it
    std::string path;  // in the database's form; empty if it has none
    std::string error; // why it couldn't be asked about; empty if it could
    bool isProtected = false;
    std::string line;      // of the list; empty if none names the path
    std::size_t below = 0; // protected files below it

    // The list names it, and the library doesn't know.
    bool IsLost() const { return !isProtected && !line.empty(); }
};

// The list that answers, in words; empty if there is none.
std::string ListText(OwnList const &list);

void PrintProtection(Screen &screen, OwnList const &list, std::vector<PathProtection> const &paths,
                     bool verbose);
Json JsonOfProtection(OwnList const &list, std::vector<PathProtection> const &paths);

} // namespace qvlink
