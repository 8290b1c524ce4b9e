// Questions about the graph as a whole.
#pragma once

#include "answer/graph.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace qvlink {

// A bare name, and those who ask for it and get nothing.
struct MissingName {
    CQVUObject *name;
    std::vector<CQVUObject *> askers;    // in order of path
    std::vector<CQVUObject *> elsewhere; // files so named where the askers don't look
    bool isDelayed;                      // all of them ask at first use only
};
// In order of name. A PE file is taken as started from its own folder.
std::vector<MissingName> FindMissing(CQVUDatabase &database);

struct NeededFile {
    CQVUObject *file;
    std::size_t askers; // programs and libraries that ask for it themselves
};

struct Statistics {
    std::map<std::uint32_t, std::uint64_t> objects; // by object type
    std::map<std::uint32_t, std::uint64_t> links;   // by link type
    std::uint64_t folders = 0;                      // of the files
    std::uint64_t symlinks = 0;
    std::uint64_t elf = 0;
    std::uint64_t pe = 0;
    std::uint64_t bytes = 0;            // sizes of all files
    std::vector<NeededFile> mostNeeded; // the most needed first, then in order of path
};
Statistics FindStatistics(CQVUDatabase &database, std::size_t top);

} // namespace qvlink
