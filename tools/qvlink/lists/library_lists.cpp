#include "lists/library_lists.h"

#include "lists/found_lists.h"

#include <algorithm>
#include <tuple>

namespace qvlink {
namespace {

constexpr std::string_view PE_MAGIC = "MZ";
constexpr std::string_view ELF_MAGIC = "\x7f"
                                       "ELF";

bool StartsWith(std::string_view bytes, std::string_view magic) {
    return bytes.substr(0, magic.size()) == magic;
}

bool Before(LibraryList const &a, LibraryList const &b) {
    return std::tie(a.kind, a.id) < std::tie(b.kind, b.id);
}

bool SameList(LibraryList const &a, LibraryList const &b) {
    return a.kind == b.kind && a.id == b.id;
}

} // namespace

const char *ResourceType(lists::Kind kind) {
    return kind == lists::Kind::files ? "WIN_FILES" : "WIN_REGS";
}

std::optional<lists::Kind> KindOfResource(std::string_view type) {
    std::string upper(type);
    for (char &c : upper) {
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    }
    for (lists::Kind const kind : {lists::Kind::files, lists::Kind::keys}) {
        if (upper == ResourceType(kind)) {
            return kind;
        }
    }
    return std::nullopt;
}

bool IsLibrary(std::string_view bytes) {
    return StartsWith(bytes, PE_MAGIC) || StartsWith(bytes, ELF_MAGIC);
}

LibraryLists FindLists(std::string_view bytes) {
    LibraryLists result;
    MemorySource source(bytes);
    try {
        if (StartsWith(bytes, PE_MAGIC)) {
            FindPeLists(source, bytes, result.lists);
        } else if (StartsWith(bytes, ELF_MAGIC)) {
            FindElfLists(source, bytes, result.lists);
        } else {
            throw Malformed{"it is no library"};
        }
    } catch (Malformed const &fault) {
        result.malformed = fault.what;
    }
    auto &lists = result.lists;
    std::stable_sort(lists.begin(), lists.end(), Before);
    lists.erase(std::unique(lists.begin(), lists.end(), SameList), lists.end());
    return result;
}

} // namespace qvlink
