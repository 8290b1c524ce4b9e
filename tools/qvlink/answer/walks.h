// What an object depends on, who depends on it, and a chain between two.
#pragma once

#include "answer/needs.h"

#include <optional>
#include <unordered_set>
#include <vector>

namespace qvlink {

// A need on the way from the start, and the object that has it.
struct Dependency {
    CQVUObject *requester;
    Need need;
};

// All that `start` needs, each file (or name that nothing provides) once with the first
// requester that was met, in order of path. Files are told as they are found; where that
// is a symbolic link, the walk goes on from its target. A start that is a symbolic link
// stands for its target, in its own folder. What was started isn't told.
std::vector<Dependency> FindDependencies(CQVUDatabase &database, CQVUObject &start, bool direct);

// A line of the tree of needs. A file whose needs were told before comes as `isRepeated`
// and without them.
struct TreeLine {
    std::size_t depth; // 0 for what the program needs itself
    Dependency dependency;
    bool isRepeated;
};
std::vector<TreeLine> DependencyTree(CQVUDatabase &database, CQVUObject &start);

// All files below a folder, in no order.
std::vector<CQVUObject *> FilesBelow(CQVUDatabase &database, CQVUObject &folder);
// What the programs below a folder need, each seen from its own folder, without what
// lies below the folder itself.
std::vector<Dependency> FindFolderDependencies(CQVUDatabase &database, CQVUObject &folder,
                                               bool direct);

// The shortest chain of needs from `start` to `goal`, a file or a name that is asked for
// on the way; empty if there is none. The last step leads to the goal. From an object to
// itself it leads round a circle.
std::vector<Dependency> FindChain(CQVUDatabase &database, CQVUObject &start, CQVUObject &goal);

} // namespace qvlink
