// The keys of the text files in which a Wine prefix keeps its registry.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace qvlink {

struct PrefixKey {
    std::string path;   // below the file's root, names separated by backslashes, in UTF-8
    std::string target; // of a key that is a link: the system's path, in UTF-8; else empty
};

struct PrefixFault {
    std::size_t line; // from 1
    std::string message;
};

struct PrefixFile {
    bool isOne = false; // false: the text is no such file, and nothing was read
    std::string root;   // the system's name of the root: Machine, or User\ and the user's
    std::vector<PrefixKey> keys;
    std::vector<PrefixFault> faults; // keys that were passed over
};

// Any text will do.
PrefixFile ReadPrefixFile(std::string_view text);

} // namespace qvlink
