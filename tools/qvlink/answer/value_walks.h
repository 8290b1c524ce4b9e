// What registry values lead to: the files that they name, and what those come to need, each
// program started from its own folder.
#pragma once

#include "answer/referrers.h"
#include "answer/walks.h"

#include <vector>

namespace qvlink {

// Of a value, or of all values below a key or hive: each file once, with the value or file that
// was first to lead there, in order of path. `direct`: only the files that are named.
std::vector<Dependency> FindValueDependencies(CQVUDatabase &database, CQVUObject &start,
                                              bool direct);
// The files that a value names, and below each what it needs.
std::vector<TreeLine> ValueTree(CQVUDatabase &database, CQVUObject &value);
// A shortest chain of needs that begins with a file that the value names.
std::vector<Dependency> FindValueChain(CQVUDatabase &database, CQVUObject &value, CQVUObject &goal);

// The values that name one of these files, or a symbolic link to it; each once.
std::vector<Referrer> FindReferringValues(CQVUDatabase &database,
                                          std::vector<CQVUObject *> const &files);

} // namespace qvlink
