// Scanning: brings the graph in line with what lies on the disk and in the registry.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "linkdb.h"

namespace qvlink {

class Registry;

struct ScanOptions {
    // Files and folders as the host writes them. Symbolic links in them are followed; one
    // at the end of a path is scanned itself, and what it leads to as well. A path that is
    // no more, but in the graph, is taken out of it.
    std::vector<std::string> paths;
    // The database's own folder, if there is one: its files are left out of the graph.
    std::string databaseFolder;
    // Keys, "HKLM\\Software", their roots by short or long names in any case. One that is no
    // more, but in the graph, is taken out of it. They are scanned after the paths.
    std::vector<std::string> keys;
    Registry *registry = nullptr; // where the keys are; not null if there are any
};

// What a scan saw and did. A symbolic link, a folder and a special file count as what
// they are and not as a file as well.
struct ScanSummary {
    std::uint64_t folders = 0;
    std::uint64_t files = 0; // regular files
    std::uint64_t symlinks = 0;
    std::uint64_t specials = 0; // devices, sockets, pipes
    std::uint64_t elf = 0;      // files that are ELF programs or libraries, read now or before
    std::uint64_t pe = 0;
    std::uint64_t located = 0; // libraries outside the paths that programs led to
    std::uint64_t needs = 0;   // needs of all these programs
    std::uint64_t missing = 0; // those of them that the loader's search did not find

    std::uint64_t keys = 0;
    std::uint64_t values = 0;
    std::uint64_t references = 0; // files of the graph that values name, each once for a value

    std::uint64_t added = 0;     // objects of the trees
    std::uint64_t changed = 0;   // objects with other size, time, attributes, data or spelling
    std::uint64_t unchanged = 0; // objects as they were
    std::uint64_t removed = 0;   // objects that are no more
    std::uint64_t read = 0;      // files opened in this scan

    std::uint64_t unreadable = 0;      // files, folders and keys that couldn't be read
    std::uint64_t malformed = 0;       // programs whose tables make no sense
    std::uint64_t unrepresentable = 0; // names and paths that the database can't hold

    std::uint64_t objects = 0; // in the graph afterwards, the root included
    std::uint64_t links = 0;   // in the graph afterwards
    bool saved = false;        // the file was written; false if nothing had changed
    double seconds = 0;
};

enum class ScanProblem { unreadable, malformed, unrepresentable };

// Is told what goes on. Called from the thread that scans.
class ScanObserver {
public:
    virtual ~ScanObserver() = default;
    // A folder or key was done. `soFar` has what was seen up to now.
    virtual void Progress(std::string const &folder, ScanSummary const &soFar) = 0;
    // Something was passed over; `path` is the host's, or a key's; `why` a short text.
    virtual void Problem(ScanProblem problem, std::string const &path, std::string const &why) = 0;
};

// A scan that can't be done or didn't come to its end: what() says what was wrong and
// what to do. The stored graph is as it was.
struct ScanError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Ctrl-C, or its like.
struct ScanInterrupted : ScanError {
    using ScanError::ScanError;
};

// Scans into the database in `directory`, which is made if it isn't there: takes the
// writer's lock, attaches, scans, saves if anything changed, looks whether the file was
// really written, and releases. The process must have no database attached. Throws
// ScanError.
ScanSummary ScanInto(std::string const &directory, ScanOptions const &options,
                     ScanObserver &observer);

// The middle of that: scans into an attached database and changes it in memory only;
// `changed` tells whether it did. After a throw the graph is somewhere between old and
// new, and must not be saved.
ScanSummary Scan(CQVUDatabase &database, ScanOptions const &options, ScanObserver &observer,
                 bool &changed);

} // namespace qvlink
