// One call of the tool, as its arguments tell it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace qvlink {

constexpr int ExitAnswered = 0;
constexpr int ExitNothing = 1; // the question is fine, and its answer is empty
constexpr int ExitFailure = 2; // bad use, or something failed

enum class Command {
    scan,
    deps,
    refs,
    find,
    show,
    missing,
    why,
    stats,
    verify,
    exportGraph,
    protectedPaths,
    listsCapture,
    listsPack,
    listsUnpack,
    listsCheck,
    listsDiff,
    regImport,
    regExport
};

struct Request {
    Command command = Command::stats;
    std::vector<std::string> paths; // the command's PATHs or FILEs, or A and B
    std::vector<std::string> keys;  // scan --registry
    std::string pattern;            // find PATTERN
    std::string type;               // find --type
    std::string format;             // export --format
    std::string output;             // --output; empty: standard output
    std::size_t top = 10;           // stats --top
    bool direct = false;
    bool tree = false;
    bool onlyProtected = false;       // find --protected
    std::string listKind;             // lists capture files|keys
    std::string from;                 // lists capture --from
    std::vector<std::string> without; // lists capture --without
    std::optional<std::uint32_t> id;  // lists --id
    std::string key;                  // reg export KEY; its FILE is `output`
    std::string form = "5";           // reg export --form
    std::string into;                 // reg import --into
    unsigned codePage = 0;            // reg --code-page; 0: the one in use

    std::string databaseDirectory; // --db; empty: the user's own
    bool databasePaths = false;    // --db-paths
    bool json = false;
    bool verbose = false;
};

} // namespace qvlink
