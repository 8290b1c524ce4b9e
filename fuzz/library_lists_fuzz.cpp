// Any bytes as a library that holds lists, and the lists found as stored ones.
#include "lists/library_lists.h"
#include "stored_list.h"

#include <cstdlib>

namespace {

constexpr int mostUnpacked = 4; // each may tell of a text of 64 MiB

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    std::string_view const bytes(reinterpret_cast<const char *>(data), size);
    qvlink::LibraryLists const found = qvlink::FindLists(bytes);
    qvlink::LibraryList const *before = nullptr;
    int unpacked = 0;
    for (qvlink::LibraryList const &list : found.lists) {
        bool const isWithin =
            list.stored.data() >= bytes.data() &&
            list.stored.data() + list.stored.size() <= bytes.data() + bytes.size();
        bool const isBehind = !before || before->kind < list.kind ||
                              (before->kind == list.kind && before->id < list.id);
        if (!isWithin || !isBehind) {
            std::abort();
        }
        before = &list;
        try {
            if (unpacked++ < mostUnpacked) {
                lists::Unpack(list.stored);
            }
        } catch (lists::ListError const &) {
            // Most are none.
        }
    }
    return 0;
}
