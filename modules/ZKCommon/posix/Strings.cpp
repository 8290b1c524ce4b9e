// Strings are in the notes of a module; see StringTable.h.
#include "modules/ZKCommon/Strings.h"

#include "modules/ZKCommon/posix/StringTable.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <link.h>
#include <string_view>
#include <unistd.h>

namespace ZK {
namespace {

struct Search {
    std::uintptr_t module; // 0 is the program
    unsigned id;
    std::string_view found;
};

// Modules are named by the page that they begin at.
std::uintptr_t BaseOf(dl_phdr_info const &info) {
    auto const page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    for (int i = 0; i < info.dlpi_phnum; ++i)
        if (info.dlpi_phdr[i].p_type == PT_LOAD)
            return (info.dlpi_addr + info.dlpi_phdr[i].p_vaddr) & ~(page - 1);
    return 0;
}

bool FindInTable(std::string_view table, Search &search) {
    while (!table.empty()) {
        std::string_view const entry = table.substr(0, table.find('\0'));
        unsigned id = 0;
        auto const number = std::from_chars(entry.data(), entry.data() + entry.size(), id);
        auto const digits = static_cast<std::size_t>(number.ptr - entry.data());
        if (number.ec == std::errc() && id == search.id && entry.substr(digits, 1) == "=") {
            search.found = entry.substr(digits + 1);
            return true;
        }
        table.remove_prefix(std::min(entry.size() + 1, table.size()));
    }
    return false;
}

constexpr std::size_t Aligned(std::size_t size) { return (size + 3) & ~std::size_t{3}; }

// The notes of a segment lie one behind the other.
bool FindInNotes(std::string_view notes, Search &search) {
    ElfW(Nhdr) header{};
    while (notes.size() >= sizeof header) {
        std::memcpy(&header, notes.data(), sizeof header);
        notes.remove_prefix(sizeof header);
        std::size_t const text = Aligned(header.n_namesz);
        std::size_t const end = text + Aligned(header.n_descsz);
        std::string_view const name(stringNoteName, sizeof stringNoteName);
        if (end > notes.size())
            return false;
        if (header.n_type == stringNoteType && notes.substr(0, header.n_namesz) == name &&
            FindInTable(notes.substr(text, header.n_descsz), search))
            return true;
        notes.remove_prefix(end);
    }
    return false;
}

int FindInModule(dl_phdr_info *info, std::size_t, void *argument) {
    auto &search = *static_cast<Search *>(argument);
    if (search.module != 0 && search.module != BaseOf(*info))
        return 0;
    for (int i = 0; i < info->dlpi_phnum; ++i) {
        ElfW(Phdr) const &part = info->dlpi_phdr[i];
        auto const *const start = reinterpret_cast<const char *>(info->dlpi_addr + part.p_vaddr);
        if (part.p_type == PT_NOTE && FindInNotes({start, part.p_memsz}, search))
            break;
    }
    return 1; // the program is the first of all modules
}

} // namespace

int CopyString(HINSTANCE instance, unsigned id, char *buffer, int capacity) {
    Search search{reinterpret_cast<std::uintptr_t>(instance), id, {}};
    dl_iterate_phdr(FindInModule, &search);
    std::size_t const length =
        std::min(search.found.size(), static_cast<std::size_t>(capacity) - 1);
    std::copy_n(search.found.data(), length, buffer);
    buffer[length] = '\0';
    return static_cast<int>(length);
}

} // namespace ZK
