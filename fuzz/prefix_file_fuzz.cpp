// Any bytes as one of a Wine prefix's registry files, and the list of what was read.
#include "lists/key_tree.h"
#include "lists/prefix_file.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    using namespace qvlink;
    PrefixFile const file = ReadPrefixFile({reinterpret_cast<const char *>(data), size});
    KeyTree tree;
    std::size_t total = 0;
    for (PrefixKey const &found : file.keys) {
        total += found.path.size();
        if (Key *const key = KeyTree::Make(tree.machine, found.path)) {
            key->link = LineOfSystemPath(found.target, file.root).value_or(found.target);
        }
    }
    // A byte is at most two of UTF-8, and every fault takes a line.
    if (total > 2 * size || file.faults.size() > size || (!file.isOne && !file.keys.empty())) {
        std::abort();
    }
    std::vector<std::string> skipped;
    // Links multiply lines, so that few are let in.
    if (size < 1024) {
        for (std::string const &line : LinesOf(tree, LineFilter({"*\\left*out"}), skipped)) {
            if (IsTooLong(line) || line.find('\n') != std::string::npos) {
                std::abort();
            }
        }
    }
    return 0;
}
