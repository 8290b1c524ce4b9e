// What the library says of files and keys: whether they belong to the operating system.
#pragma once

#include "linkdb.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace qvlink {

// A path that the library can be asked about is shorter: a longer one ends the process.
constexpr std::size_t ProtectedPathRoom = 260;

// The same text for all spellings of a path that are one to the library: without regard to
// the case of ASCII letters, and to how many backslashes stand together or at the ends.
std::string PathKey(std::string_view databasePath);

// Asks the library, once for each path: a question about a folder that only leads to
// protected files changes the answer to the next one.
class Protection {
public:
    using Question = int (*)(const char *path);
    explicit Protection(Question ask = IsProtectedPath) : m_ask(ask) {}

    // Nothing for a path that is too long to be asked about.
    std::optional<bool> Of(std::string const &databasePath);
    // The same with another way to ask, which is taken if the path wasn't asked about before.
    std::optional<bool> Of(std::string const &databasePath, std::function<bool()> const &ask);

private:
    Question m_ask;
    std::unordered_map<std::string, bool> m_answers;
};

} // namespace qvlink
