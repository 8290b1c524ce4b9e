// A check of linkdb.dat, byte by byte, without the library.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qvlink {

struct Finding {
    std::string check; // which rule: "length", "entries", ...
    std::string text;
};

struct FileCheck {
    std::uint64_t bytes = 0;
    std::uint64_t objects = 0; // read from the file
    std::uint64_t links = 0;
    std::uint64_t droppedObjects = 0; // that another process leaves out when it loads the file
    std::uint64_t droppedLinks = 0;
    std::vector<Finding> problems; // what a writer never writes
    std::vector<Finding> notes;    // allowed, and good to know
};

// Checks the bytes of a whole file.
FileCheck CheckFile(std::string_view bytes);

// What the first bytes of a file and its size say: empty if a reader accepts it, else
// why it would start with an empty graph. `head` has the first 28 bytes, or all.
std::string WhyUnusable(std::string_view head, std::uint64_t size);
constexpr std::size_t FileHeadSize = 28;

} // namespace qvlink
